#include "personal/HistoryService.h"

#include "personal/QuietStore.h"

#include <set>

namespace ondavia {
namespace {

constexpr double shortestResume = 10.0;

using Rows = Query<WatchHistory>;

Predicate<WatchHistory> isOfProfile(const std::string& profileId) {
    return field(&WatchHistory::profileId) == profileId;
}

Predicate<WatchHistory> isInProgress(const std::string& type) {
    return field(&WatchHistory::type) == type && field(&WatchHistory::isComplete) == false;
}

} // namespace

HistoryService::HistoryService(StoreContext& modelContext, std::string profileId)
    : m_modelContext(modelContext)
    , m_profileId(std::move(profileId)) {}

void HistoryService::removeHistoryItem(const std::string& channelId) {
    const auto row =
        fetchFirstQuietly(m_modelContext, Rows{.where = isOfProfile(m_profileId) &&
                                                        field(&WatchHistory::channelId) == channelId});
    if (row) {
        m_modelContext.remove<WatchHistory>(row->id);
        saveQuietly(m_modelContext);
    }
}

std::optional<WatchHistory> HistoryService::lastWatchedForMovieId(const std::string& movieId) {
    auto row = fetchFirstQuietly(m_modelContext, Rows{.where = isOfProfile(m_profileId) &&
                                                               field(&WatchHistory::channelId) == movieId &&
                                                               field(&WatchHistory::type) == "movie"});
    return row && !row->isComplete && row->position > shortestResume ? row : std::nullopt;
}

std::optional<WatchHistory> HistoryService::lastWatchedForSeriesId(std::int64_t seriesId) {
    auto row = fetchFirstQuietly(m_modelContext, Rows{.where = isOfProfile(m_profileId) &&
                                                               field(&WatchHistory::type) == "series" &&
                                                               field(&WatchHistory::seriesId) == seriesId,
                                                      .sort = {descending(&WatchHistory::lastWatchedAt)}});
    return row && !row->isComplete ? row : std::nullopt;
}

std::vector<WatchHistory> HistoryService::moviesInProgress(std::int64_t limit) {
    return fetchQuietly(m_modelContext, Rows{.where = isOfProfile(m_profileId) && isInProgress("movie"),
                                             .sort = {descending(&WatchHistory::lastWatchedAt)},
                                             .limit = limit});
}

std::vector<WatchHistory> HistoryService::seriesInProgressGrouped(std::int64_t limit) {
    std::vector<WatchHistory> kept;
    std::set<std::int64_t> seen;
    for (WatchHistory& row :
         fetchQuietly(m_modelContext, Rows{.where = isOfProfile(m_profileId) && isInProgress("series"),
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
    saveQuietly(m_modelContext);
}

} // namespace ondavia
