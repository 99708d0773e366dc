#pragma once

#include "base/Date.h"

#include <string>

namespace ondavia {

/// A mark on one catalogue item. The item is referred to by value: it may have left the catalogue.
struct Favorite final {
    Favorite() = default;
    /// A favourite added now, with the id that profile and item share.
    Favorite(std::string profile, std::string channel);

    /// Profile id, "_", channel id.
    std::string id;
    std::string profileId;
    /// A `Channel::id`.
    std::string channelId;
    Date addedAt{};

    bool operator==(const Favorite&) const = default;
};

} // namespace ondavia
