#include "entities/Favorite.h"

namespace ondavia {

Favorite::Favorite(std::string profile, std::string channel)
    : id(profile + "_" + channel)
    , profileId(std::move(profile))
    , channelId(std::move(channel))
    , addedAt(currentDate()) {}

} // namespace ondavia
