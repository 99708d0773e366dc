#pragma once

#include "base/Date.h"

#include <optional>
#include <string>

namespace ondavia {

/// One programme of the guide.
struct EPGProgram final {
    /// Whether the programme is on air at `now`: its start is inclusive, its stop exclusive.
    [[nodiscard]] bool isLive(Date now = currentDate()) const { return now >= start && stop > now; }

    std::string id;
    /// The guide's channel id, which `Channel::epgChannelId` holds too.
    std::string channelId;
    std::string title;
    std::optional<std::string> desc;
    Date start{};
    Date stop{};
    std::optional<std::string> category;

    bool operator==(const EPGProgram&) const = default;
};

} // namespace ondavia
