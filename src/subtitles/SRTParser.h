#pragma once

#include "subtitles/SubtitleCue.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ondavia {

/// Reads SubRip files, and of WebVTT what looks like them: blocks of an optional number, a line with two
/// times and lines of text. A block that is anything else is left out, and the next one read. Pure; any
/// thread.
class SRTParser final {
public:
    /// The cues of a whole file, by `start`; those that start at one time in the order of the file. Raises
    /// nothing.
    [[nodiscard]] static std::vector<SubtitleCue> parse(std::string text);

private:
    /// `block` is its lines and the ends between them.
    [[nodiscard]] static std::optional<SubtitleCue> parseBlock(std::string_view block);
    /// Start and end in seconds, in whatever order they are.
    [[nodiscard]] static std::optional<std::pair<double, double>> parseTiming(std::string_view line);
    /// Seconds, of any size and sign.
    [[nodiscard]] static std::optional<double> parseTimestamp(std::string_view text);
    [[nodiscard]] static std::string stripHTMLTags(std::string_view text);
};

} // namespace ondavia
