#pragma once

#include <string>
#include <string_view>

namespace ondavia {

/// What stands in a text where a secret was.
inline constexpr std::string_view maskedText = "<redacted>";

/// Whether a text is all there is, or went on where it was cut off: then its end may be half a secret.
enum class TextEnd { Whole, Cut };

/// Makes a text fit to leave the process. By the form of the text, whatever the account is called:
/// - of every URL with an authority, only scheme, host and port stay: media and API URLs carry the
///   account in their path and query, and after a redirect under names that nobody can foresee;
/// - the two parts after `/live/`, `/movie/`, `/series/` and `/timeshift/` of a path without a host;
/// - the values of `username=` and `password=`, and of such members of a JSON object.
/// The slashes and quotation marks of these forms may have the backslash that JSON allows them.
/// In what is left, every text given to `registerSecret` where it stands (`standsIn`).
///
/// Pure but for the registered secrets; may be called from any thread.
[[nodiscard]] std::string maskSecrets(std::string_view text, TextEnd end = TextEnd::Whole);

/// Has `secret` masked from now on. Any thread.
void registerSecret(std::string_view secret);

/// Whether `secret` stands in `text`, as it is, percent-encoded or with the escapes of JSON. One of eight
/// bytes or more is found anywhere, a shorter one as a word of its own: "pass" stands in "pass/1.ts", not in
/// "password". One of fewer than four bytes must stand between quotation marks, slashes or the like, or be
/// the whole text: masking every "a" would leave no line readable, and tell the secret by what is missing.
[[nodiscard]] bool standsIn(std::string_view text, std::string_view secret);

} // namespace ondavia
