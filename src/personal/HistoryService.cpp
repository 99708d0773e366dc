#include "personal/HistoryService.h"

#include "base/AppLogger.h"
#include "store/StoreContext.h"

#include <set>

namespace ondavia {
namespace {

constexpr double shortestResume = 10.0;

using Rows = std::vector<WatchHistory>;

Predicate<WatchHistory> isOfProfile(const std::string& profileId) {
    return field(&WatchHistory::profileId) == profileId;
}

Predicate<WatchHistory> isInProgress(const std::string& type) {
    return field(&WatchHistory::type) == type && field(&WatchHistory::isComplete) == false;
}

/// Nothing where the store cannot be read: a row more or less is no reason to trouble anybody.
Rows fetched(StoreContext& context, const Query<WatchHistory>& query) {
    try {
        return context.fetch(query);
    } catch (const StoreError& error) {
        AppLogger::general.error("history: %s", {error.what()});
        return {};
    }
}

std::optional<WatchHistory> first(Rows rows) {
    return rows.empty() ? std::optional<WatchHistory>() : std::optional(std::move(rows.front()));
}

} // namespace

HistoryService::HistoryService(StoreContext& modelContext, std::string profileId)
    : m_modelContext(modelContext)
    , m_profileId(std::move(profileId)) {}

void HistoryService::removeHistoryItem(const std::string& channelId) {
    const auto row = first(fetched(
        m_modelContext,
        {.where = isOfProfile(m_profileId) && field(&WatchHistory::channelId) == channelId, .limit = 1}));
    if (row) {
        m_modelContext.remove<WatchHistory>(row->id);
        saveDeletion();
    }
}

std::optional<WatchHistory> HistoryService::lastWatchedForMovieId(const std::string& movieId) {
    auto row = first(fetched(m_modelContext, {.where = isOfProfile(m_profileId) &&
                                                       field(&WatchHistory::channelId) == movieId &&
                                                       field(&WatchHistory::type) == "movie",
                                              .limit = 1}));
    return row && !row->isComplete && row->position > shortestResume ? row : std::nullopt;
}

std::optional<WatchHistory> HistoryService::lastWatchedForSeriesId(std::int64_t seriesId) {
    auto row = first(fetched(m_modelContext,
                             {.where = isOfProfile(m_profileId) && field(&WatchHistory::type) == "series" &&
                                       field(&WatchHistory::seriesId) == seriesId,
                              .sort = {descending(&WatchHistory::lastWatchedAt)},
                              .limit = 1}));
    return row && !row->isComplete ? row : std::nullopt;
}

std::vector<WatchHistory> HistoryService::moviesInProgress(std::int64_t limit) {
    return fetched(m_modelContext, {.where = isOfProfile(m_profileId) && isInProgress("movie"),
                                    .sort = {descending(&WatchHistory::lastWatchedAt)},
                                    .limit = limit});
}

std::vector<WatchHistory> HistoryService::seriesInProgressGrouped(std::int64_t limit) {
    Rows kept;
    std::set<std::int64_t> seen;
    for (WatchHistory& row :
         fetched(m_modelContext, {.where = isOfProfile(m_profileId) && isInProgress("series"),
                                 .sort = {descending(&WatchHistory::lastWatchedAt)}})) {
        if (row.seriesId && !seen.insert(*row.seriesId).second) {
            continue;
        }
        kept.push_back(std::move(row));
        if (static_cast<std::int64_t>(kept.size()) >= limit) {
            break;
        }
    }
    return kept;
}

void HistoryService::clearHistory(const std::string& type) {
    m_modelContext.remove(isOfProfile(m_profileId) && field(&WatchHistory::type) == type);
    saveDeletion();
}

void HistoryService::saveDeletion() {
    try {
        m_modelContext.save(OnFailure::Keep);
    } catch (const StoreError& error) {
        // The user wants it gone as soon as that can be done, and can do nothing about it.
        AppLogger::general.error("history: %s", {error.what()});
    }
}

} // namespace ondavia
