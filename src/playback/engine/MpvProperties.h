#pragma once

#include "playback/engine/TrackList.h"

#include <cstdint>
#include <optional>
#include <string>

struct mpv_event_property;

namespace ondavia::engine {

class MpvHandle;

/// What mpv reported last. Times in seconds.
struct MpvState final {
    bool paused = false;
    bool seeking = false;
    bool pausedForCache = false;
    bool endReached = false;
    /// The read-ahead has all that it wants.
    bool cacheFull = false;
    /// What is read ahead.
    double cachedSeconds = 0;
    /// The greater of what the container says and what was read so far; 0 when there is neither. Not
    /// observed, since it grows with every packet of a channel.
    double reportedDuration = 0;
    /// What the container said when it was opened, before anything else was read; 0 when it said nothing.
    /// Absent until it is open.
    std::optional<double> statedDuration;
    bool seekable = false;
    /// Seekable in what is read ahead, and only there.
    bool seekableInCache = false;
    /// Bytes; 0 when the server does not say.
    double fileSize = 0;
    /// FFmpeg's name of the container.
    std::string fileFormat;
    TrackList tracks;
};

/// Has every property of MpvState reported, under ids of the table's own.
void observeProperties(MpvHandle& handle);

/// Takes the report of the property with this id over into `state`; ids that the table did not give out
/// are left alone.
void applyProperty(MpvState& state, std::uint64_t id, const mpv_event_property& property);

} // namespace ondavia::engine
