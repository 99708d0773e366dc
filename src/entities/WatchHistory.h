#pragma once

#include "base/Date.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ondavia {

/// How far one profile has watched one movie or episode: one row a profile and item.
struct WatchHistory final {
    WatchHistory() = default;
    /// A row watched now. Title, thumbnail, series and completion are set afterwards by the recorder.
    WatchHistory(std::string profile, std::string channel, double positionSeconds, double durationSeconds,
                 std::string kind);

    /// How much has been watched, from 0 to 100; 0 while the duration is not known.
    [[nodiscard]] double progress() const;

    /// Profile id, "_", channel id.
    std::string id;
    std::string profileId;
    /// A `Channel::id`, of the movie or of the episode.
    std::string channelId;
    /// Seconds.
    double position = 0;
    /// Seconds.
    double duration = 0;
    /// "movie" or "series".
    std::string type;
    Date lastWatchedAt{};
    std::string title;
    std::optional<std::string> thumbnailURL;
    /// The series of an episode.
    std::optional<std::int64_t> seriesId;
    /// Each writer of a position sets this to whether `progress()` is at least 95.
    bool isComplete = false;

    bool operator==(const WatchHistory&) const = default;
};

} // namespace ondavia
