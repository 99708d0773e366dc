#include "personal/HistoryRecording.h"

#include "personal/Profile.h"
#include "personal/QuietStore.h"

namespace ondavia {
namespace {

constexpr double completePercentage = 95.0;

std::optional<WatchHistory> rowOf(StoreContext& modelContext, const std::string& channelId) {
    return fetchFirstQuietly(modelContext,
                             Query<WatchHistory>{.where = field(&WatchHistory::channelId) == channelId});
}

/// What an earlier recording knew stays.
void describe(WatchHistory& row, const WatchedItem& item) {
    if (row.title.empty()) {
        row.title = item.name;
        row.thumbnailURL = item.logo;
    }
    if (!row.seriesId) {
        row.seriesId = item.seriesId;
    }
}

} // namespace

WatchedItem::WatchedItem(const Channel& channel)
    : channelId(channel.id)
    , name(channel.name)
    , logo(channel.logo)
    , seriesId(channel.seriesId)
    , type(channel.type) {}

void saveHistoryItem(StoreContext& modelContext, const WatchedItem& item, double position, double duration) {
    WatchHistory row =
        rowOf(modelContext, item.channelId)
            .value_or(WatchHistory(mainProfileId, item.channelId, position, duration, item.type));
    row.position = position;
    row.duration = duration;
    row.lastWatchedAt = currentDate();
    row.isComplete = row.progress() >= completePercentage;
    describe(row, item);
    modelContext.insert(std::move(row));
    try {
        // After a sign-out, here or in another process, what still plays leaves no trace.
        modelContext.saveForSomebody();
    } catch (const StoreError& error) {
        AppLogger::general.error("history: %s", {error.what()});
    }
}

double savedPosition(StoreContext& modelContext, const std::string& channelId) {
    const auto row = rowOf(modelContext, channelId);
    return row ? row->position : 0;
}

} // namespace ondavia
