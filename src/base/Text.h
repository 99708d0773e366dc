#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ondavia {

/// `text` without the white space and line ends (all of Unicode's) at both ends.
[[nodiscard]] std::string_view trimmedWhitespaceAndNewlines(std::string_view text);

/// A decimal integer with an optional leading "+" or "-" and nothing else around it; absent when the
/// text does not parse or overflows 64 bits.
[[nodiscard]] std::optional<std::int64_t> parseDecimalInteger(std::string_view text);

/// `utf8` cut to its first `count` grapheme clusters; absent when it has fewer.
[[nodiscard]] std::optional<std::string_view> firstCharacters(std::string_view utf8, int count);

/// `text` with its "A" to "Z" as "a" to "z", and all else as it is.
[[nodiscard]] std::string asciiLowercase(std::string text);

/// A code point's UTF-8. A lone surrogate comes to nothing that a text holds.
[[nodiscard]] std::string utf8Of(unsigned codePoint);

/// Whether `bytes` are well-formed UTF-8.
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

} // namespace ondavia
