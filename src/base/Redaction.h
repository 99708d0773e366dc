#pragma once

#include <string>
#include <string_view>

namespace ondavia {

/// What stands in a text where a secret was.
inline constexpr std::string_view maskedText = "<redacted>";

/// Makes a text fit to leave the process:
/// - of every URL with an authority, only scheme, host and port stay: media and API URLs carry the
///   account in their path and query, and after a redirect under names that nobody can foresee;
/// - the two parts after `/live/`, `/movie/`, `/series/` and `/timeshift/` of a path without a host;
/// - the values of `username=` and `password=`;
/// - every text given to `registerSecret`, wherever it stands.
///
/// Pure but for the registered secrets; may be called from any thread.
[[nodiscard]] std::string maskSecrets(std::string_view text);

/// Has `secret` masked from now on, in its raw and its percent-encoded form. Texts of fewer than four
/// bytes are ignored: masking each "1" would leave no line readable. Any thread.
void registerSecret(std::string_view secret);

} // namespace ondavia
