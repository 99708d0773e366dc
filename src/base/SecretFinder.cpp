#include "base/SecretFinder.h"

#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

namespace ondavia {
namespace {

constexpr std::size_t longSecret = 8;
constexpr std::size_t shortSecret = 4;

bool isWordByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           static_cast<unsigned char>(byte) >= 0x80;
}

std::optional<unsigned> hexadecimal(std::string_view digits, std::size_t count) {
    unsigned number = 0;
    if (digits.size() < count ||
        std::from_chars(digits.data(), digits.data() + count, number, 16).ptr != digits.data() + count) {
        return std::nullopt;
    }
    return number;
}

/// What an escape at the beginning of a text stands for, and its own length.
struct Escape final {
    std::string bytes;
    std::size_t length = 0;
};

constexpr std::size_t percentLength = 3;
constexpr std::size_t unicodeLength = 6;
constexpr std::size_t pairLength = 2 * unicodeLength;

/// The four digits of an escape at the beginning of a text.
std::optional<unsigned> unicodeEscape(std::string_view text) {
    return text.starts_with("\\u") ? hexadecimal(text.substr(2), 4) : std::nullopt;
}

bool isHighSurrogate(unsigned unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLowSurrogate(unsigned unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

std::optional<Escape> escapeAt(std::string_view text) {
    if (text.starts_with('%')) {
        const auto byte = hexadecimal(text.substr(1), 2);
        return byte ? std::optional(Escape{{static_cast<char>(*byte)}, percentLength}) : std::nullopt;
    }
    if (const auto unit = unicodeEscape(text)) {
        const auto next = isHighSurrogate(*unit) ? unicodeEscape(text.substr(unicodeLength)) : std::nullopt;
        if (next && isLowSurrogate(*next)) {
            return Escape{utf8Of(0x10000U + ((*unit - 0xD800U) << 10U) + (*next - 0xDC00U)), pairLength};
        }
        return Escape{utf8Of(*unit), unicodeLength};
    }
    const bool isQuoted =
        text.size() > 1 && text[0] == '\\' && (text[1] == '/' || text[1] == '"' || text[1] == '\\');
    return isQuoted ? std::optional(Escape{{text[1]}, 2}) : std::nullopt;
}

/// Whether a text that was cut off ends within the escape that it begins with.
bool isCutEscape(std::string_view text) {
    const auto unit = unicodeEscape(text);
    return (text.starts_with('%') && text.size() < percentLength) ||
           (text.starts_with('\\') &&
            text.size() < (unit && isHighSurrogate(*unit) ? pairLength : unicodeLength));
}

/// Where `secret` ends that begins at `at`; absent where it does not.
std::optional<std::size_t> endOfSecret(std::string_view text, std::size_t at, std::string_view secret,
                                       TextEnd end) {
    for (; !secret.empty(); ++at, secret.remove_prefix(1)) {
        const auto rest = text.substr(at);
        const auto escape = escapeAt(rest);
        if (escape && secret.starts_with(escape->bytes)) {
            const auto found =
                endOfSecret(text, at + escape->length, secret.substr(escape->bytes.size()), end);
            if (found) {
                return found;
            }
        }
        if (end == TextEnd::Cut && (rest.empty() || isCutEscape(rest))) {
            return text.size();
        }
        const bool isSame = !rest.empty() && (rest.front() == secret.front() ||
                                              (rest.front() == '+' && secret.front() == ' '));
        if (!isSame) {
            return std::nullopt;
        }
    }
    return at;
}

/// Whether the byte before `at` belongs to an escape, and to no word.
bool followsEscape(std::string_view text, std::size_t at) {
    const auto precedes = [&](std::size_t length) {
        const auto escape = at >= length ? escapeAt(text.substr(at - length)) : std::nullopt;
        return escape && escape->length == length;
    };
    const bool isControl = at >= 2 && text[at - 2] == '\\' &&
                           std::string_view("bfnrt").find(text[at - 1]) != std::string_view::npos;
    return isControl || precedes(percentLength) || precedes(unicodeLength);
}

bool isDelimiter(char byte) {
    return std::string_view("\"'`/\\=&:@?<>;").find(byte) != std::string_view::npos;
}

/// By the length of the secret: see `standsIn`.
bool standsAlone(std::string_view text, std::size_t begin, std::size_t end, std::size_t secretSize) {
    if (secretSize >= longSecret) {
        return true;
    }
    const bool startsText = begin == 0 || followsEscape(text, begin);
    const bool endsText = end == text.size() || escapeAt(text.substr(end));
    if (secretSize < shortSecret) {
        return (startsText || isDelimiter(text[begin - 1])) && (endsText || isDelimiter(text[end]));
    }
    const bool startsWord = startsText || !isWordByte(text[begin - 1]) || !isWordByte(text[begin]);
    const bool endsWord = endsText || !isWordByte(text[end]) || !isWordByte(text[end - 1]);
    return startsWord && endsWord;
}

} // namespace

bool markSecret(std::string_view text, std::string_view secret, TextEnd end, std::vector<bool>& marks) {
    // Nothing but punctuation is the form of a text rather than a secret.
    if (secret.empty() || (secret.size() < shortSecret && std::ranges::none_of(secret, isWordByte))) {
        return false;
    }
    bool isThere = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto secretEnd = endOfSecret(text, at, secret, end);
        if (secretEnd && standsAlone(text, at, *secretEnd, secret.size())) {
            std::fill(marks.begin() + static_cast<std::ptrdiff_t>(at),
                      marks.begin() + static_cast<std::ptrdiff_t>(*secretEnd), true);
            isThere = true;
        }
    }
    return isThere;
}

} // namespace ondavia
