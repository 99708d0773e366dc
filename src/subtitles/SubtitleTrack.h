#pragma once

#include "subtitles/SubtitleCue.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ondavia {

/// The cues of one file, which may be many: copies share them. An immutable value.
class SubtitleCues final {
public:
    SubtitleCues(std::vector<SubtitleCue> cues = {})
        : m_cues(std::make_shared<const std::vector<SubtitleCue>>(std::move(cues))) {}

    [[nodiscard]] std::size_t size() const { return m_cues->size(); }
    [[nodiscard]] bool empty() const { return m_cues->empty(); }
    [[nodiscard]] const SubtitleCue& operator[](std::size_t index) const { return (*m_cues)[index]; }
    [[nodiscard]] auto begin() const { return m_cues->begin(); }
    [[nodiscard]] auto end() const { return m_cues->end(); }
    bool operator==(const SubtitleCues& other) const {
        return m_cues == other.m_cues || *m_cues == *other.m_cues;
    }

private:
    std::shared_ptr<const std::vector<SubtitleCue>> m_cues;
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
    SubtitleCues cues;

    /// The track of a file's text; absent when that has no cue. Any thread.
    [[nodiscard]] static std::optional<SubtitleTrack> make(const std::string& url, std::string srtContent);

    /// A cue that shows at this time, in seconds; null for none. Lives as long as any copy of the track.
    /// Finds at most one, and where cues overlap may miss some.
    [[nodiscard]] const SubtitleCue* activeCue(double time) const;

    bool operator==(const SubtitleTrack&) const = default;
};

} // namespace ondavia
