#pragma once

#include "entities/Channel.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ondavia {

class StoreContext;

/// What the history keeps of a film or an episode. A value: it outlives the player that shows the item.
struct WatchedItem final {
    explicit WatchedItem(const Channel& channel);

    std::string channelId;
    std::string name;
    std::optional<std::string> logo;
    std::optional<std::int64_t> seriesId;
    std::string type;
};

/// Writes how far the item has been watched, now, into its one row. Seconds. On the context's thread. What
/// cannot be written is lost without a word: there is another recording in a few seconds.
void saveHistoryItem(StoreContext& modelContext, const WatchedItem& item, double position, double duration);

/// Where the item was left, in seconds, seen to its end or not; 0 when nothing is known of it.
[[nodiscard]] double savedPosition(StoreContext& modelContext, const std::string& channelId);

} // namespace ondavia
