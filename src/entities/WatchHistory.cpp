#include "entities/WatchHistory.h"

#include <algorithm>

namespace ondavia {

WatchHistory::WatchHistory(std::string profile, std::string channel, double positionSeconds,
                           double durationSeconds, std::string kind)
    : id(profile + "_" + channel)
    , profileId(std::move(profile))
    , channelId(std::move(channel))
    , position(positionSeconds)
    , duration(durationSeconds)
    , type(std::move(kind))
    , lastWatchedAt(currentDate()) {}

double WatchHistory::progress() const {
    if (!(duration > 0)) {
        return 0.0;
    }
    return std::min(position / duration * 100.0, 100.0);
}

} // namespace ondavia
