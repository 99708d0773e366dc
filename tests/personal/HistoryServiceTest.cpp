#include "personal/HistoryService.h"

#include "store/StoreSamples.h"

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HistoryServiceTest : public ::testing::Test {
protected:
    /// A row watched `minutesAgo`.
    static WatchHistory row(const std::string& channelId, const std::string& type, int minutesAgo,
                            std::optional<std::int64_t> seriesId = {}) {
        WatchHistory history("main", channelId, 100, 1000, type);
        history.lastWatchedAt = sampleDate - std::chrono::minutes(minutesAgo);
        history.seriesId = seriesId;
        return history;
    }
    static WatchHistory complete(WatchHistory history) {
        history.isComplete = true;
        return history;
    }

    void insert(const std::vector<WatchHistory>& rows) { insertAndSave(m_context, rows); }

    /// Lets nobody read the history, and no save succeed.
    void breakRows() {
        executeRaw(m_folder.path() / "user.db", "ALTER TABLE watch_history RENAME TO elsewhere");
    }
    void refuseDeletions() {
        executeRaw(m_folder.path() / "user.db", "CREATE TRIGGER refuse BEFORE DELETE ON watch_history "
                                                "BEGIN SELECT RAISE(ABORT, 'no'); END");
    }
    void allowDeletions() { executeRaw(m_folder.path() / "user.db", "DROP TRIGGER refuse"); }

    static std::vector<std::string> channels(const std::vector<WatchHistory>& rows) {
        std::vector<std::string> ids;
        for (const auto& history : rows) {
            ids.push_back(history.channelId);
        }
        return ids;
    }
    std::vector<std::string> all() { return m_context.distinct(&WatchHistory::channelId); }

    TemporaryFolder m_folder;
    std::unique_ptr<LibraryStore> m_store = LibraryStore::open(m_folder.path());
    StoreContext& m_context = m_store->mainContext();
    HistoryService m_service{m_context, "main"};
};

TEST_F(HistoryServiceTest, AFilmIsResumedFromAfterItsFirstTenSeconds) {
    auto film = row("main_1", "movie", 0);
    film.position = 10.0;
    insert({film});
    EXPECT_FALSE(m_service.lastWatchedForMovieId("main_1"));
    film.position = 10.001;
    insert({film});
    EXPECT_EQ(m_service.lastWatchedForMovieId("main_1"), film);
    EXPECT_FALSE(m_service.lastWatchedForMovieId("main_2"));
}

TEST_F(HistoryServiceTest, AFilmSeenToItsEndIsNotResumed) {
    insert({complete(row("main_1", "movie", 0))});
    EXPECT_FALSE(m_service.lastWatchedForMovieId("main_1"));
}

TEST_F(HistoryServiceTest, OnlyAFilmIsResumedAsAFilm) {
    insert({row("main_1", "series", 0), row("main_2", "live", 0)});
    EXPECT_FALSE(m_service.lastWatchedForMovieId("main_1"));
    EXPECT_FALSE(m_service.lastWatchedForMovieId("main_2"));
}

TEST_F(HistoryServiceTest, ASeriesIsAnsweredByItsLatestEpisodeHoweverLittleOfItWasSeen) {
    auto latest = row("s_ep_2", "series", 1, 77);
    latest.position = 3;
    insert({row("s_ep_1", "series", 2, 77), latest, row("s_ep_3", "series", 3, 77),
            row("other", "series", 0, 78), row("film", "movie", 0, 77), row("none", "series", 0)});
    EXPECT_EQ(m_service.lastWatchedForSeriesId(77), latest);
    EXPECT_FALSE(m_service.lastWatchedForSeriesId(79));
}

TEST_F(HistoryServiceTest, ALatestEpisodeSeenToItsEndHidesTheOlderOnesFromTheSeriesAndNotFromTheList) {
    insert({row("s_ep_1", "series", 2, 77), complete(row("s_ep_2", "series", 1, 77))});
    EXPECT_FALSE(m_service.lastWatchedForSeriesId(77));
    EXPECT_THAT(channels(m_service.seriesInProgressGrouped(15)), ElementsAre("s_ep_1"));
}

TEST_F(HistoryServiceTest, FilmsInProgressComeLatestFirstAndNoMoreThanAsked) {
    insert({row("b", "movie", 2), row("c", "movie", 3), row("a", "movie", 1),
            complete(row("done", "movie", 0)), row("episode", "series", 0), row("channel", "live", 0)});
    EXPECT_THAT(channels(m_service.moviesInProgress(15)), ElementsAre("a", "b", "c"));
    EXPECT_THAT(channels(m_service.moviesInProgress(2)), ElementsAre("a", "b"));
}

TEST_F(HistoryServiceTest, AFilmInProgressMayStandAtItsVeryBeginning) {
    auto film = row("a", "movie", 1);
    film.position = 2;
    insert({film});
    EXPECT_THAT(channels(m_service.moviesInProgress(15)), ElementsAre("a"));
}

TEST_F(HistoryServiceTest, OfEachSeriesInProgressTheLatestEpisodeStandsForIt) {
    insert({row("s1_old", "series", 5, 1), row("s1_new", "series", 2, 1), row("s2_old", "series", 4, 2),
            row("s2_new", "series", 1, 2), complete(row("s3", "series", 0, 3)), row("film", "movie", 0, 4),
            row("channel", "live", 0, 5)});
    EXPECT_THAT(channels(m_service.seriesInProgressGrouped(15)), ElementsAre("s2_new", "s1_new"));
}

TEST_F(HistoryServiceTest, RowsWithoutASeriesAreListedEach) {
    insert({row("a", "series", 1), row("b", "series", 2), row("c", "series", 3, 7), row("d", "series", 4)});
    EXPECT_THAT(channels(m_service.seriesInProgressGrouped(15)), ElementsAre("a", "b", "c", "d"));
}

TEST_F(HistoryServiceTest, TheBoundCountsSeriesAndAZeroStillGivesOne) {
    insert({row("s1_new", "series", 1, 1), row("s1_old", "series", 2, 1), row("s2", "series", 3, 2),
            row("s3", "series", 4, 3)});
    EXPECT_THAT(channels(m_service.seriesInProgressGrouped(2)), ElementsAre("s1_new", "s2"));
    EXPECT_THAT(channels(m_service.seriesInProgressGrouped(0)), ElementsAre("s1_new"));
}

TEST_F(HistoryServiceTest, AnswersForItsProfileOnly) {
    WatchHistory film("child", "film", 100, 1000, "movie");
    WatchHistory episode("child", "episode", 100, 1000, "series");
    episode.seriesId = 7;
    insert({film, episode});
    EXPECT_FALSE(m_service.lastWatchedForMovieId("film"));
    EXPECT_FALSE(m_service.lastWatchedForSeriesId(7));
    EXPECT_THAT(m_service.moviesInProgress(15), IsEmpty());
    EXPECT_THAT(m_service.seriesInProgressGrouped(15), IsEmpty());
    m_service.removeHistoryItem("film");
    m_service.clearHistory("series");
    EXPECT_THAT(all(), ElementsAre("episode", "film"));
    EXPECT_TRUE(HistoryService(m_context, "child").lastWatchedForMovieId("film"));
}

TEST_F(HistoryServiceTest, RemovesTheRowOfAnItemAndNothingForAnUnknownOne) {
    insert({row("a", "movie", 1), row("b", "series", 2)});
    m_service.removeHistoryItem("nobody");
    m_service.removeHistoryItem("b");
    EXPECT_THAT(all(), ElementsAre("a"));
}

TEST_F(HistoryServiceTest, OfSeveralRowsOfAnItemOneIsRemoved) {
    auto second = row("a", "movie", 1);
    second.id = "from elsewhere";
    insert({row("a", "movie", 1), second});
    m_service.removeHistoryItem("a");
    EXPECT_EQ(m_context.count<WatchHistory>(), 1);
}

TEST_F(HistoryServiceTest, ClearsOneTypeAndLeavesTheOthers) {
    insert({row("a", "movie", 1), complete(row("b", "movie", 2)), row("c", "series", 3)});
    int told = 0;
    QObject::connect(m_store.get(), &LibraryStore::changed, m_store.get(), [&told] { ++told; });
    m_service.clearHistory("movie");
    EXPECT_THAT(all(), ElementsAre("c"));
    EXPECT_EQ(told, 1) << "one save";
}

TEST_F(HistoryServiceTest, WhatCannotBeReadIsAbsent) {
    insert({row("a", "movie", 1), row("b", "series", 1, 7)});
    breakRows();
    EXPECT_FALSE(m_service.lastWatchedForMovieId("a"));
    EXPECT_FALSE(m_service.lastWatchedForSeriesId(7));
    EXPECT_THAT(m_service.moviesInProgress(15), IsEmpty());
    EXPECT_THAT(m_service.seriesInProgressGrouped(15), IsEmpty());
    m_service.removeHistoryItem("a");
    m_service.clearHistory("movie");
}

TEST_F(HistoryServiceTest, ADeletionThatCannotBeWrittenGoesAlongWithALaterSave) {
    insert({row("a", "movie", 1), row("b", "movie", 2), row("c", "series", 3)});
    refuseDeletions();
    m_service.removeHistoryItem("c");
    m_service.clearHistory("movie");
    EXPECT_THAT(all(), ElementsAre("a", "b", "c"));
    allowDeletions();
    insert({row("later", "movie", 0)});
    EXPECT_THAT(all(), ElementsAre("later"));
}

} // namespace
} // namespace ondavia::testing
