#include "FuzzSupport.h"
#include "base/Text.h"
#include "subtitles/SRTParser.h"
#include "subtitles/SubtitleText.h"
#include "subtitles/SubtitleTrack.h"

#include <algorithm>
#include <compare>
#include <string>
#include <vector>

namespace {

using ondavia::SRTParser;
using ondavia::SubtitleCue;
using ondavia::SubtitleTrack;
using ondavia::fuzzing::require;

bool startsNoLater(const SubtitleCue& one, const SubtitleCue& other) {
    return std::weak_order(one.start, other.start) <= 0;
}

/// Also where a time is no number.
bool areSame(const SubtitleCue& one, const SubtitleCue& other) {
    return one.text == other.text && std::weak_order(one.start, other.start) == 0 &&
           std::weak_order(one.end, other.end) == 0;
}

void checkCues(const std::vector<SubtitleCue>& cues) {
    for (std::size_t index = 0; index < cues.size(); ++index) {
        const std::string& text = cues[index].text;
        require(!text.empty(), "a cue has text");
        require(text.find_first_of("<>\r") == std::string::npos, "no tags and no bare line ends are left");
        require(ondavia::trimmedWhitespaceAndNewlines(text) == text, "nothing is left to trim");
        require(index == 0 || startsNoLater(cues[index - 1], cues[index]), "cues are sorted");
    }
}

/// A file says the same whatever ends its lines.
void checkLineEnds(std::string text) {
    std::erase(text, '\r');
    std::string windows;
    for (const char character : text) {
        windows += character == '\n' ? "\r\n" : std::string(1, character);
    }
    require(std::ranges::equal(SRTParser::parse(text), SRTParser::parse(windows), areSame),
            "both kinds of line ends give the same cues");
}

void checkTrack(const std::string& text) {
    const auto track = SubtitleTrack::make("http://host/" + text, "0:0:1 --> 0:0:2\nx");
    require(track && !track->displayName.empty(), "every address has a name");
    if (const auto own = SubtitleTrack::make("http://host/a.srt", text)) {
        for (const auto& cue : own->cues) {
            const auto* const found = own->activeCue(cue.start);
            require(found == nullptr || (found->start <= cue.start && found->end > cue.start),
                    "a cue that is found shows at that time");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(ondavia::fuzzing::textOf(data, size));
    const std::string text = ondavia::decodeSubtitleText(bytes);
    require(ondavia::isValidUtf8(text), "decoding gives UTF-8");
    require(ondavia::decodeSubtitleText(text) == text, "and leaves it alone");
    checkCues(SRTParser::parse(text));
    checkCues(SRTParser::parse(bytes));
    checkLineEnds(text);
    checkTrack(bytes);
    return 0;
}
