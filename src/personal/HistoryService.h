#pragma once

#include "entities/WatchHistory.h"
#include "personal/Profile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

class StoreContext;

/// What was watched, as the screens ask for it: what is in progress, where a film was left, which episode of
/// a series comes next. Cheap: made where it is needed. Rows are written by `saveHistoryItem`.
///
/// On the context's thread. Nothing is raised: what cannot be read is absent.
class HistoryService final {
public:
    /// `modelContext` outlives the object.
    HistoryService(StoreContext& modelContext, std::string profileId);

    /// A deletion that cannot be written goes along with the context's next save.
    void removeHistoryItem(const std::string& channelId);
    /// Where a film can be resumed: absent when it was seen to its end, or for ten seconds or less.
    [[nodiscard]] std::optional<WatchHistory> lastWatchedForMovieId(const std::string& movieId);
    /// The episode of the series that was watched last; absent when that one was seen to its end, whatever
    /// stands of the others.
    [[nodiscard]] std::optional<WatchHistory> lastWatchedForSeriesId(std::int64_t seriesId);
    /// Films not seen to their end, the latest first.
    [[nodiscard]] std::vector<WatchHistory> moviesInProgress(std::int64_t limit);
    /// Of each series the latest episode not seen to its end, the latest first; rows without a series stand
    /// each for itself. At least one, if there is one.
    [[nodiscard]] std::vector<WatchHistory> seriesInProgressGrouped(std::int64_t limit);
    /// Deletes the rows of one type, with failures as above.
    void clearHistory(const std::string& type);

private:
    StoreContext& m_modelContext;
    std::string m_profileId;
};

} // namespace ondavia
