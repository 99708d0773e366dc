#include "base/VisibleText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <unicode/utf8.h>

namespace ondavia {
namespace {

bool isPlain(char byte) {
    return byte >= 0x20 && byte < 0x7F;
}

/// Control characters, line and paragraph ends, and the marks, embeddings and isolates of direction.
bool steers(UChar32 character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x061C ||
           character == 0x200E || character == 0x200F || (character >= 0x2028 && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069);
}

std::string numbered(const char* format, unsigned number) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), format, number);
    return text.data();
}

std::string escapeForText(UChar32 character) {
    switch (character) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return numbered(character < 0x80 ? "\\x%02x" : "\\u%04x", static_cast<unsigned>(character));
    }
}

std::string escapeForJson(UChar32 character) {
    return numbered("\\u%04x", static_cast<unsigned>(character));
}

std::string escaped(std::string_view text, std::string (*escape)(UChar32)) {
    if (std::ranges::all_of(text, isPlain)) {
        return std::string(text);
    }
    std::string shown;
    shown.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = at;
        UChar32 character = 0;
        U8_NEXT(text.data(), at, text.size(), character);
        const std::string_view bytes = text.substr(begin, at - begin);
        if (character < 0) {
            for (const char byte : bytes) {
                shown += numbered("\\x%02x", static_cast<unsigned char>(byte));
            }
        } else if (steers(character)) {
            shown += escape(character);
        } else {
            shown += bytes;
        }
    }
    return shown;
}

} // namespace

std::string visibleText(std::string_view text) {
    return escaped(text, escapeForText);
}

std::string visibleJson(std::string_view json) {
    return escaped(json, escapeForJson);
}

void writeLine(std::FILE* stream, std::string_view text) {
    const std::string line = visibleText(text) + '\n';
    std::fwrite(line.data(), 1, line.size(), stream);
}

} // namespace ondavia
