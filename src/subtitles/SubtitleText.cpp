#include "subtitles/SubtitleText.h"

#include "base/Text.h"

namespace ondavia {
namespace {

std::string fromLatin1(const std::string& bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        text += utf8Of(static_cast<unsigned char>(byte));
    }
    return text;
}

} // namespace

std::string decodeSubtitleText(std::string bytes) {
    return isValidUtf8(bytes) ? std::move(bytes) : fromLatin1(bytes);
}

} // namespace ondavia
