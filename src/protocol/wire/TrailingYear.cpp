#include "protocol/wire/TrailingYear.h"

#include <cstdint>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace ondavia {
namespace {

constexpr UChar32 noCharacter = -1;
/// Bytes of the longest character in UTF-8.
constexpr std::size_t longestCharacter = 4;

bool isSpace(UChar32 character) {
    return u_isUWhiteSpace(character) != 0;
}
bool isSpaceOrTab(UChar32 character) {
    return character == '\t' || u_charType(character) == U_SPACE_SEPARATOR;
}
bool isDigit(UChar32 character) {
    return u_charType(character) == U_DECIMAL_DIGIT_NUMBER;
}

UChar32 lastCharacter(std::string_view text, std::size_t& bytes) {
    if (text.empty()) {
        return noCharacter;
    }
    const auto tail = text.substr(text.size() - std::min(text.size(), longestCharacter));
    auto at = static_cast<std::int32_t>(tail.size());
    UChar32 character = 0;
    U8_PREV(tail.data(), 0, at, character);
    bytes = tail.size() - static_cast<std::size_t>(at);
    return character;
}

UChar32 firstCharacter(std::string_view text, std::size_t& bytes) {
    if (text.empty()) {
        return noCharacter;
    }
    const auto head = text.substr(0, longestCharacter);
    std::int32_t at = 0;
    UChar32 character = 0;
    U8_NEXT(head.data(), at, static_cast<std::int32_t>(head.size()), character);
    bytes = static_cast<std::size_t>(at);
    return character;
}

template<class Predicate> std::string_view trimmedEnd(std::string_view text, Predicate isTrimmed) {
    std::size_t bytes = 0;
    for (auto last = lastCharacter(text, bytes); last >= 0 && isTrimmed(last);
         last = lastCharacter(text, bytes)) {
        text.remove_suffix(bytes);
    }
    return text;
}

template<class Predicate> std::string_view trimmedStart(std::string_view text, Predicate isTrimmed) {
    std::size_t bytes = 0;
    for (auto first = firstCharacter(text, bytes); first >= 0 && isTrimmed(first);
         first = firstCharacter(text, bytes)) {
        text.remove_prefix(bytes);
    }
    return text;
}

/// `text` without `(`, four digits and `)` at its end; absent when it doesn't end so.
std::optional<std::string_view> withoutBrackets(std::string_view text) {
    if (!text.ends_with(')')) {
        return std::nullopt;
    }
    text.remove_suffix(1);
    for (int digit = 0; digit < 4; ++digit) {
        std::size_t bytes = 0;
        const auto last = lastCharacter(text, bytes);
        if (last < 0 || !isDigit(last)) {
            return std::nullopt;
        }
        text.remove_suffix(bytes);
    }
    if (!text.ends_with('(')) {
        return std::nullopt;
    }
    text.remove_suffix(1);
    return text;
}

/// `text` without its first and last character. At the ends of a match only a carriage return with its
/// line feed is one character of two.
std::string_view withoutEnds(std::string_view text) {
    std::size_t bytes = 0;
    (void)firstCharacter(text, bytes);
    text.remove_prefix(text.starts_with("\r\n") ? 2 : bytes);
    (void)lastCharacter(text, bytes);
    text.remove_suffix(text.ends_with("\r\n") ? 2 : bytes);
    return text;
}

} // namespace

std::optional<TrailingYear> findTrailingYear(std::string_view title) {
    const auto body = withoutBrackets(trimmedEnd(title, isSpace));
    if (!body) {
        return std::nullopt;
    }
    const auto name = trimmedEnd(*body, isSpace);
    const auto match = title.substr(name.size());
    const auto bracketed = trimmedStart(trimmedEnd(match, isSpaceOrTab), isSpaceOrTab);
    return TrailingYear{name.size(), std::string(withoutEnds(bracketed))};
}

} // namespace ondavia
