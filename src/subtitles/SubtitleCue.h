#pragma once

#include <string>

namespace ondavia {

/// One text of a subtitle file and when it shows: from `start`, inclusive, to `end`, exclusive.
struct SubtitleCue final {
    /// Seconds from the start of the media.
    double start = 0;
    /// Seconds from the start of the media.
    double end = 0;
    /// Plain text, lines joined by a newline character.
    std::string text;

    bool operator==(const SubtitleCue&) const = default;
};

} // namespace ondavia
