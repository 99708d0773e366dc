#include "FuzzSupport.h"

#include "base/Text.h"
#include "guide/Base64.h"
#include "guide/ShortGuide.h"

namespace {

using namespace ondavia;

/// The usual way to write Base64, to hold the decoder against.
std::string encoded(std::string_view bytes) {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        std::uint32_t group = 0;
        for (std::size_t index = 0; index < 3; ++index) {
            group = group << 8U |
                    (at + index < bytes.size() ? static_cast<unsigned char>(bytes[at + index]) : 0U);
        }
        for (std::size_t index = 0; index < 4; ++index) {
            text += at + index > bytes.size() ? '=' : alphabet[group >> (18 - 6 * index) & 0x3FU];
        }
    }
    return text;
}

void checkBase64(const std::string& text) {
    fuzzing::require(decodeBase64(encoded(text)) == text, "what was encoded is decoded");
    if (const auto bytes = decodeBase64(text)) {
        const std::string again = encoded(*bytes);
        fuzzing::require(again.size() == text.size(), "a text that decodes has the length of its encoding");
        fuzzing::require(decodeBase64(again) == bytes, "bytes survive encoding and decoding");
    }
}

} // namespace

/// A reply of the provider as in `epg`; or, where it is none, one text for the decoder.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::prepareOnce();
    const std::string_view text = fuzzing::textOf(data, size);
    checkBase64(std::string(text));
    const auto reply = fuzzing::decoded<XtreamEPGResponse>(text);
    if (!reply || !reply->epgListings) {
        return 0;
    }
    const auto programs = programsFromListings(*reply->epgListings, "channel");
    fuzzing::require(programs.size() <= reply->epgListings->size(), "a listing makes one programme at most");
    for (const EPGProgram& program : programs) {
        fuzzing::require(!program.title.empty() && isValidUtf8(program.title), "a title is a text");
        fuzzing::require(program.id.starts_with("channel_"), "an id begins with its channel");
    }
    return 0;
}
