#include "personal/HistoryRecording.h"

#include "personal/HistoryService.h"
#include "store/StoreSamples.h"

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

class HistoryRecordingTest : public ::testing::Test {
protected:
    static Channel episode() {
        Channel channel = makeChannel(1, "series");
        channel.id = "main_series_77_ep_5012";
        channel.name = "Maré Baixa - Ep. 3";
        channel.logo = "http://pictures.test/still.jpg";
        channel.seriesId = 77;
        return channel;
    }
    void record(const Channel& channel, double position, double duration) {
        saveHistoryItem(m_context, WatchedItem(channel), position, duration);
    }
    /// The one row that there is.
    WatchHistory row() {
        const auto rows = m_context.fetch<WatchHistory>();
        EXPECT_EQ(rows.size(), 1U);
        return rows.empty() ? WatchHistory() : rows.front();
    }
    void execute(const std::string& sql) { executeRaw(m_folder.path() / "user.db", sql); }

    TemporaryFolder m_folder;
    std::unique_ptr<LibraryStore> m_store = LibraryStore::open(m_folder.path());
    StoreContext& m_context = m_store->mainContext();
};

TEST_F(HistoryRecordingTest, TheFirstRecordingMakesTheRow) {
    const Date before = currentDate();
    record(episode(), 12.5, 1000);
    const WatchHistory made = row();
    EXPECT_EQ(made.id, "main_main_series_77_ep_5012");
    EXPECT_EQ(made.profileId, "main");
    EXPECT_EQ(made.channelId, episode().id);
    EXPECT_EQ(made.position, 12.5);
    EXPECT_EQ(made.duration, 1000);
    EXPECT_EQ(made.type, "series");
    EXPECT_GE(made.lastWatchedAt, before);
    EXPECT_LE(made.lastWatchedAt, currentDate());
    EXPECT_EQ(made.title, episode().name);
    EXPECT_EQ(made.thumbnailURL, episode().logo);
    EXPECT_EQ(made.seriesId, 77);
    EXPECT_FALSE(made.isComplete);
}

TEST_F(HistoryRecordingTest, NothingIsWrittenAfterASignOutElsewhere) {
    record(episode(), 12, 1000);
    {
        const auto other = LibraryStore::open(m_folder.path());
        other->setOwner(LibraryStore::nobody);
        other->mainContext().removeAll<WatchHistory>();
        other->mainContext().save();
    }
    record(episode(), 400, 1000);
    EXPECT_EQ(m_context.count<WatchHistory>(), 0);
    m_store->setOwner("ana");
    record(episode(), 400, 1000);
    EXPECT_EQ(row().position, 400);
}

TEST_F(HistoryRecordingTest, ALaterOneMovesTheRowOn) {
    record(episode(), 12, 1000);
    WatchHistory earlier = row();
    earlier.lastWatchedAt = sampleDate;
    insertAndSave(m_context, std::vector{earlier});
    record(episode(), 400, 1001);
    const WatchHistory later = row();
    EXPECT_EQ(later.position, 400);
    EXPECT_EQ(later.duration, 1001);
    EXPECT_GT(later.lastWatchedAt, sampleDate);
}

TEST_F(HistoryRecordingTest, WhatAnEarlierOneKnewOfTheItemStaysAndTheRestIsAdded) {
    WatchHistory known("main", episode().id, 12, 1000, "movie");
    known.title = "Título de antes";
    insertAndSave(m_context, std::vector{known});
    record(episode(), 20, 1000);
    EXPECT_EQ(row().title, "Título de antes");
    EXPECT_EQ(row().thumbnailURL, std::nullopt);
    EXPECT_EQ(row().type, "movie");
    EXPECT_EQ(row().seriesId, 77);
    known.title.clear();
    known.seriesId = 5;
    insertAndSave(m_context, std::vector{known});
    record(episode(), 20, 1000);
    EXPECT_EQ(row().title, episode().name);
    EXPECT_EQ(row().thumbnailURL, episode().logo);
    EXPECT_EQ(row().seriesId, 5);
}

TEST_F(HistoryRecordingTest, IsCompleteFromNinetyFiveHundredthsOnAndNotAgainBefore) {
    HistoryService service(m_context, mainProfileId);
    const Channel film = makeChannel(1);
    for (const double position : {949.0, 949.9}) {
        record(film, position, 1000);
        EXPECT_FALSE(row().isComplete) << position;
    }
    EXPECT_EQ(service.moviesInProgress(15).size(), 1U);
    record(film, 950, 1000);
    EXPECT_TRUE(row().isComplete);
    EXPECT_TRUE(service.moviesInProgress(15).empty());
    EXPECT_FALSE(service.lastWatchedForMovieId(film.id));
    record(film, 20, 1000);
    EXPECT_FALSE(row().isComplete) << "seen from the start again";
    EXPECT_TRUE(service.lastWatchedForMovieId(film.id));
}

TEST_F(HistoryRecordingTest, IsCompleteAtOnceWhenTheEndIsTheFirstThatIsRecorded) {
    record(makeChannel(1), 990, 1000);
    EXPECT_TRUE(row().isComplete);
}

TEST_F(HistoryRecordingTest, AStoreThatCanBeNeitherReadNorWrittenIsNoFault) {
    record(makeChannel(1), 500, 1000);
    execute("ALTER TABLE watch_history RENAME TO elsewhere");
    record(makeChannel(1), 600, 1000);
    EXPECT_EQ(savedPosition(m_context, "main_1"), 0);
    execute("ALTER TABLE elsewhere RENAME TO watch_history");
    EXPECT_EQ(savedPosition(m_context, "main_1"), 500);
}

TEST_F(HistoryRecordingTest, WhatCannotBeWrittenIsLostAndTheNextOneIsNot) {
    execute("CREATE TRIGGER refuse BEFORE INSERT ON watch_history BEGIN SELECT RAISE(ABORT, 'no'); END");
    record(makeChannel(1), 500, 1000);
    EXPECT_EQ(m_context.count<WatchHistory>(), 0);
    execute("DROP TRIGGER refuse");
    m_context.save();
    EXPECT_EQ(m_context.count<WatchHistory>(), 0);
    record(makeChannel(1), 600, 1000);
    EXPECT_EQ(row().position, 600);
}

TEST_F(HistoryRecordingTest, TheSavedPositionIsThatOfTheRowSeenToItsEndOrNot) {
    EXPECT_EQ(savedPosition(m_context, "main_1"), 0);
    record(makeChannel(1), 3.5, 1000);
    EXPECT_EQ(savedPosition(m_context, "main_1"), 3.5);
    record(makeChannel(1), 990, 1000);
    EXPECT_EQ(savedPosition(m_context, "main_1"), 990);
    EXPECT_EQ(savedPosition(m_context, "main_2"), 0);
}

} // namespace
} // namespace ondavia::testing
