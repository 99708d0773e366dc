#pragma once

#include <optional>
#include <string>
#include <vector>

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

/// One external subtitle file, parsed. An immutable value; may be handed between threads.
struct SubtitleTrack final {
    /// "srt-" and a hash of the URL: unique within one run, worth nothing in the next.
    std::string id;
    /// The language token of the file's name.
    std::optional<std::string> language;
    std::string displayName;
    /// Absolute text of the URL that the file came from.
    std::string url;
    /// Sorted by `start`.
    std::vector<SubtitleCue> cues;

    bool operator==(const SubtitleTrack&) const = default;
};

} // namespace ondavia
