#include "app/Services.h"
#include "cli/Arguments.h"
#include "cli/Output.h"
#include "personal/HistoryService.h"

namespace ondavia::cli {
namespace {

/// The rows that one operation is about. What the service cannot do it does not say: these are counted.
using Rows = Predicate<WatchHistory>;

Rows rowsOfItem(const std::string& id) {
    return field(&WatchHistory::profileId) == mainProfileId && field(&WatchHistory::channelId) == id;
}

Rows rowsOfType(const std::string& type) {
    return field(&WatchHistory::profileId) == mainProfileId && field(&WatchHistory::type) == type;
}

void requireNone(StoreContext& rows, const Rows& deleted) {
    if (rows.count(deleted) > 0) {
        throw CommandError("the history cannot be written: it still has what was to go");
    }
}

} // namespace

QCoro::Task<void> listHistory(CommandContext context) {
    StoreContext& rows = context.services.store->mainContext();
    Output::Table table(context.output, {"channelId", "lastWatchedAt", "progress", "isComplete", "title"});
    rows.forEach<WatchHistory>({.where = field(&WatchHistory::profileId) == mainProfileId,
                                .sort = {descending(&WatchHistory::lastWatchedAt)}},
                               [&table](const WatchHistory& row) {
                                   Record record = recordOf(row);
                                   record.push_back({"progress", row.progress()});
                                   table.add(record);
                               });
    table.finish();
    co_return;
}

QCoro::Task<void> removeFromHistory(CommandContext context) {
    StoreContext& rows = context.services.store->mainContext();
    const std::string& id = context.arguments.id;
    if (rows.count(rowsOfItem(id)) == 0) {
        throw CommandError("the history has no item with the id " + id);
    }
    HistoryService(rows, mainProfileId).removeHistoryItem(id);
    requireNone(rows, rowsOfItem(id));
    co_return;
}

QCoro::Task<void> clearHistory(CommandContext context) {
    StoreContext& rows = context.services.store->mainContext();
    const std::string& type = context.arguments.type;
    HistoryService(rows, mainProfileId).clearHistory(type);
    requireNone(rows, rowsOfType(type));
    co_return;
}

} // namespace ondavia::cli
