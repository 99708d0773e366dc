#include "subtitles/SubtitleText.h"

#include "base/Text.h"

namespace ondavia {
namespace {

std::string fromLatin1(const std::string& bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80) {
            text += character;
        } else {
            text += static_cast<char>(0xC0U | (byte >> 6U));
            text += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return text;
}

} // namespace

std::string decodeSubtitleText(std::string bytes) {
    return isValidUtf8(bytes) ? std::move(bytes) : fromLatin1(bytes);
}

} // namespace ondavia
