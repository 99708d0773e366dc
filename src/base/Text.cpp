#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace ondavia {
namespace {

/// White space as text trimming means it: space separators, tab, and every line or paragraph end.
bool isTrimmed(UChar32 character) {
    return (character >= 0x09 && character <= 0x0D) || character == 0x85 ||
           u_charType(character) == U_SPACE_SEPARATOR || u_charType(character) == U_LINE_SEPARATOR ||
           u_charType(character) == U_PARAGRAPH_SEPARATOR;
}

} // namespace

std::string_view trimmedWhitespaceAndNewlines(std::string_view text) {
    const char* bytes = text.data();
    std::int32_t begin = 0;
    auto end = static_cast<std::int32_t>(text.size());
    while (begin < end) {
        std::int32_t next = begin;
        UChar32 character = 0;
        U8_NEXT(bytes, next, end, character);
        if (character < 0 || !isTrimmed(character)) {
            break;
        }
        begin = next;
    }
    while (end > begin) {
        std::int32_t previous = end;
        UChar32 character = 0;
        U8_PREV(bytes, begin, previous, character);
        if (character < 0 || !isTrimmed(character)) {
            break;
        }
        end = previous;
    }
    return text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
}

std::optional<std::int64_t> parseDecimalInteger(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

std::optional<std::string_view> firstCharacters(std::string_view utf8, int count) {
    UErrorCode status = U_ZERO_ERROR;
    thread_local const std::unique_ptr<icu::BreakIterator> clusters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText text = UTEXT_INITIALIZER;
    utext_openUTF8(&text, utf8.data(), static_cast<std::int64_t>(utf8.size()), &status);
    if (U_FAILURE(status) || clusters == nullptr) {
        return std::nullopt;
    }
    clusters->setText(&text, status);
    const std::int32_t end = clusters->next(count);
    utext_close(&text);
    if (U_FAILURE(status) || end == icu::BreakIterator::DONE) {
        return std::nullopt;
    }
    return utf8.substr(0, static_cast<std::size_t>(end));
}

std::string asciiLowercase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

std::string utf8Of(unsigned codePoint) {
    const auto byte = [](unsigned bits) { return static_cast<char>(bits); };
    if (codePoint < 0x80) {
        return {byte(codePoint)};
    }
    if (codePoint < 0x800) {
        return {byte(0xC0U | codePoint >> 6U), byte(0x80U | (codePoint & 0x3FU))};
    }
    const char middle = byte(0x80U | (codePoint >> 6U & 0x3FU));
    const char last = byte(0x80U | (codePoint & 0x3FU));
    if (codePoint < 0x10000) {
        return {byte(0xE0U | codePoint >> 12U), middle, last};
    }
    return {byte(0xF0U | codePoint >> 18U), byte(0x80U | (codePoint >> 12U & 0x3FU)), middle, last};
}

bool isValidUtf8(std::string_view bytes) {
    std::int32_t at = 0;
    const auto size = static_cast<std::int32_t>(bytes.size());
    while (at < size) {
        UChar32 character = 0;
        U8_NEXT(bytes.data(), at, size, character);
        if (character < 0) {
            return false;
        }
    }
    return true;
}

} // namespace ondavia
