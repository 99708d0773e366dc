#pragma once

#include "platform/FSPlayer.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct mpv_node;

namespace ondavia::engine {

/// One track as mpv lists it. Empty texts and zeros are what the container does not say.
struct Track final {
    /// mpv's number, counted apart for each type.
    std::int64_t id = 0;
    /// "video", "audio" or "sub".
    std::string type;
    std::int64_t fileIndex = -1;
    bool external = false;
    std::string externalAddress;
    bool selected = false;
    std::string codec;
    std::string codecProfile;
    std::string language;
    std::string title;
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t sampleRate = 0;
    std::int64_t bitrate = 0;

    bool operator==(const Track&) const = default;
};

using TrackList = std::vector<Track>;

/// The value of mpv's property "track-list"; what is no list of maps gives no tracks.
[[nodiscard]] TrackList parseTrackList(const mpv_node& node);

/// The index that names a track to the system. A stream of the file has the file's own index. External
/// files have negative ones, so that they cannot be taken for a stream of the file.
[[nodiscard]] std::int32_t streamIndex(const Track& track);

/// mpv's property that selects tracks of `type` ("video", "audio", "sub").
[[nodiscard]] std::string selectorOf(std::string_view type);

/// mpv's name for a stream type of the system ("video", "audio", "timedtext"); absent for other texts.
[[nodiscard]] std::optional<std::string> trackTypeOf(std::string_view streamType);

/// The track of `type` ("video", "audio", "sub") that plays.
[[nodiscard]] std::optional<Track> selectedTrack(const TrackList& tracks, std::string_view type);
[[nodiscard]] FSMonitor monitorOf(const TrackList& tracks);

} // namespace ondavia::engine
