#pragma once

#include "base/Date.h"

#include <cstdint>
#include <string>

namespace ondavia {

/// The provider's catalogue as a whole. There is one row in practice, with the id "main".
struct Playlist final {
    std::string id;
    std::string name;
    std::string type;
    bool enabled = true;
    std::string profileId;
    /// Items at the last synchronisation.
    std::int64_t channelCount = 0;
    Date addedAt{};
    Date lastUpdatedAt{};

    bool operator==(const Playlist&) const = default;
};

} // namespace ondavia
