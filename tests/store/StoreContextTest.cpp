#include "store/StoreSamples.h"

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

class StoreContextTest : public ::testing::Test {
protected:
    TemporaryFolder m_folder;
    std::unique_ptr<LibraryStore> m_store = LibraryStore::open(m_folder.path());
    StoreContext& m_context = m_store->mainContext();

    /// Inserts, reads back here, in another context and in another store.
    template<class T> void expectRoundTrip(const T& row) {
        insertAndSave(m_context, std::vector{row});
        EXPECT_EQ(m_context.fetch<T>(), std::vector{row});
        EXPECT_EQ(m_store->makeContext()->fetch<T>(), std::vector{row});
        const auto other = LibraryStore::open(m_folder.path());
        EXPECT_EQ(other->mainContext().fetch<T>(), std::vector{row});
    }
};

TEST_F(StoreContextTest, KeepsEveryFieldOfAChannel) {
    expectRoundTrip(makeFullChannel());
}
TEST_F(StoreContextTest, KeepsAbsentFieldsOfAChannelAbsent) {
    expectRoundTrip(makeChannel(1));
}

TEST_F(StoreContextTest, KeepsEveryFieldOfAProgramme) {
    EPGProgram program = makeProgram("c", 1);
    program.desc = "Descrição";
    program.category = "";
    expectRoundTrip(program);
}
TEST_F(StoreContextTest, KeepsAbsentFieldsOfAProgrammeAbsent) {
    expectRoundTrip(makeProgram("c", 1));
}

TEST_F(StoreContextTest, KeepsEveryFieldOfAFavourite) {
    expectRoundTrip(Favorite("main", "main_1"));
}

TEST_F(StoreContextTest, KeepsEveryFieldOfHistory) {
    WatchHistory history("main", "main_1", 12.25, 1e9 / 3, "series");
    history.title = "Título";
    history.thumbnailURL = "http://images.test/t.png";
    history.seriesId = -5;
    history.isComplete = true;
    expectRoundTrip(history);
}
TEST_F(StoreContextTest, KeepsAbsentFieldsOfHistoryAbsent) {
    expectRoundTrip(WatchHistory("main", "main_1", 0, 0, "movie"));
}

TEST_F(StoreContextTest, KeepsEveryFieldOfThePlaylist) {
    expectRoundTrip(Playlist{.id = "main",
                             .name = "Principal",
                             .type = "xtream",
                             .enabled = true,
                             .profileId = "main",
                             .channelCount = 180'000,
                             .addedAt = sampleDate,
                             .lastUpdatedAt = sampleDate + std::chrono::microseconds(7)});
}

TEST_F(StoreContextTest, InsertOfAKnownIdReplacesTheRow) {
    insertAndSave(m_context, std::vector{makeFullChannel()});
    Channel changed = makeChannel(77);
    ASSERT_EQ(changed.id, makeFullChannel().id);
    insertAndSave(m_context, std::vector{changed});
    EXPECT_EQ(m_context.fetch<Channel>(), std::vector{changed});

    insertAndSave(m_context, std::vector{WatchHistory("main", "a", 1, 2, "movie")});
    const WatchHistory later("main", "a", 2, 2, "movie");
    insertAndSave(m_context, std::vector{later});
    EXPECT_EQ(m_context.fetch<WatchHistory>(), std::vector{later});
}

TEST_F(StoreContextTest, ReplacedRowKeepsItsKey) {
    insertAndSave(m_context, makeChannels(1, 3));
    const auto keys = m_context.fetchKeys<Channel>({.sort = {ascending(&Channel::num)}});
    Channel changed = makeChannel(1);
    changed.lastAccessedAt = sampleDate;
    insertAndSave(m_context, std::vector{changed});
    EXPECT_EQ(m_context.fetchByKey<Channel>(keys.at(0)), changed);
}

TEST_F(StoreContextTest, InsertOfAProgrammeReplacesTheOneOfTheSameIdAlsoAmongDownloadedRows) {
    replaceAll(*m_store, std::vector{makeProgram("c", 0, "c_x"), makeProgram("c", 30, "other")});
    EPGProgram moved = makeProgram("c", 60, "c_x");
    insertAndSave(m_context, std::vector{moved});
    EXPECT_EQ(m_context.fetch<EPGProgram>(
                  {.where = field(&EPGProgram::channelId) == "c", .sort = {ascending(&EPGProgram::start)}}),
              (std::vector{makeProgram("c", 30, "other"), moved}));
}

TEST_F(StoreContextTest, ChangesShowUpAtSaveAndNotBefore) {
    m_context.insert(Favorite("main", "a"));
    EXPECT_EQ(m_context.count<Favorite>(), 0);
    m_context.save();
    EXPECT_EQ(m_context.count<Favorite>(), 1);
}

TEST_F(StoreContextTest, AppliesChangesInTheirOrder) {
    m_context.insert(Favorite("main", "a"));
    m_context.remove<Favorite>("main_a");
    m_context.insert(Favorite("main", "b"));
    m_context.removeAll<Favorite>();
    m_context.insert(Favorite("main", "c"));
    m_context.insert(makeChannel(1));
    m_context.removeAll<Channel>();
    m_context.insert(makeChannel(2));
    m_context.insert(makeChannel(3));
    m_context.remove<Channel>("main_3");
    m_context.save();
    EXPECT_THAT(m_context.distinct(&Favorite::channelId), ElementsAre("c"));
    EXPECT_THAT(m_context.distinct(&Channel::id), ElementsAre("main_2"));
}

TEST_F(StoreContextTest, RemovesOneRowByItsIdAndIgnoresAnUnknownOne) {
    insertAndSave(m_context, std::vector{Favorite("main", "a"), Favorite("main", "b")});
    m_context.remove<Favorite>("main_a");
    m_context.remove<Favorite>("nobody");
    m_context.save();
    EXPECT_THAT(m_context.distinct(&Favorite::channelId), ElementsAre("b"));
}

TEST_F(StoreContextTest, RemovesTheRowsOfACondition) {
    insertAndSave(m_context, makeChannels(1, 10));
    m_context.remove(field(&Channel::num) > 3);
    m_context.save();
    EXPECT_EQ(m_context.count<Channel>(), 3);
}

TEST_F(StoreContextTest, RemovesAllOfAKindAndLeavesTheOthers) {
    insertAndSave(m_context, std::vector{Favorite("main", "a")});
    insertAndSave(m_context, std::vector{WatchHistory("main", "a", 1, 2, "movie")});
    insertAndSave(m_context, makeChannels(1, 5));
    insertAndSave(m_context, std::vector{makeProgram("c", 0)});
    m_context.removeAll<Favorite>();
    m_context.removeAll<Channel>();
    m_context.save();
    EXPECT_EQ(m_context.count<Favorite>(), 0);
    EXPECT_EQ(m_context.count<Channel>(), 0);
    EXPECT_EQ(m_context.count<WatchHistory>(), 1);
    EXPECT_EQ(m_context.count<EPGProgram>(), 1);
}

TEST_F(StoreContextTest, RemovedDownloadsLeaveTheDisk) {
    Channel channel = makeChannel(1);
    channel.url = "http://provider.test/movie/user/secretpassword/1.mp4";
    insertAndSave(m_context, std::vector{channel});
    m_context.removeAll<Channel>();
    m_context.save();
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.path())) {
        std::ifstream stream(entry.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        EXPECT_EQ(bytes.find("secretpassword"), std::string::npos) << entry.path();
    }
}

TEST_F(StoreContextTest, AReferenceMayDangle) {
    insertAndSave(m_context, makeChannels(1, 1));
    insertAndSave(m_context, std::vector{Favorite("main", "main_1")});
    m_context.removeAll<Channel>();
    m_context.save();
    EXPECT_EQ(m_context.count<Favorite>(), 1);
    replaceAll(*m_store, makeChannels(1, 1));
    const auto favorite = m_context.fetchFirst<Favorite>();
    ASSERT_TRUE(favorite);
    EXPECT_TRUE(m_context.fetchFirst<Channel>({.where = field(&Channel::id) == favorite->channelId}));
}

TEST_F(StoreContextTest, AFailedSaveKeepsNothingOfIt) {
    insertAndSave(m_context, std::vector{Favorite("main", "a")});
    executeRaw(m_folder.path() / "user.db",
               "CREATE TRIGGER refuse BEFORE INSERT ON favorite WHEN NEW.channel_id = 'bad' "
               "BEGIN SELECT RAISE(ABORT, 'http://provider.test/live/user/secretpassword/1'); END");
    m_context.insert(makeChannel(1));
    m_context.insert(Favorite("main", "b"));
    m_context.insert(Favorite("main", "bad"));
    m_context.insert(WatchHistory("main", "a", 1, 2, "movie"));
    try {
        m_context.save();
        FAIL() << "the save should have failed";
    } catch (const StoreError& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr("user.db"));
        EXPECT_THAT(error.what(), ::testing::Not(::testing::HasSubstr("secretpassword")));
    }
    m_context.save();
    EXPECT_THAT(m_context.distinct(&Favorite::channelId), ElementsAre("a"));
    EXPECT_EQ(m_context.count<Channel>(), 0);
    EXPECT_EQ(m_context.count<WatchHistory>(), 0);
    insertAndSave(m_context, std::vector{Favorite("main", "c")});
    EXPECT_EQ(m_context.count<Favorite>(), 2);
}

TEST_F(StoreContextTest, WhatIsToBeKeptOfFailedSavesIsWrittenByALaterOneOfItsFile) {
    insertAndSave(m_context, std::vector{Favorite("main", "a"), Favorite("main", "b")});
    executeRaw(m_folder.path() / "user.db", "CREATE TRIGGER refuse BEFORE DELETE ON favorite "
                                            "BEGIN SELECT RAISE(ABORT, 'no'); END");
    for (const char* id : {"main_a", "main_b"}) {
        m_context.remove<Favorite>(id);
        EXPECT_THROW(m_context.save(OnFailure::Keep), StoreError);
    }
    // Another file is not held up by it.
    insertAndSave(m_context, makeChannels(1, 1));
    m_context.insert(Favorite("main", "dropped"));
    EXPECT_THROW(m_context.save(), StoreError);
    EXPECT_EQ(m_context.count<Favorite>(), 2);
    executeRaw(m_folder.path() / "user.db", "DROP TRIGGER refuse");
    insertAndSave(m_context, std::vector{Favorite("main", "b"), Favorite("main", "c")});
    EXPECT_THAT(m_context.distinct(&Favorite::channelId), ElementsAre("b", "c"));
    m_context.remove<Favorite>("main_c");
    m_context.save();
    EXPECT_THAT(m_context.distinct(&Favorite::channelId), ElementsAre("b")) << "each is written once";
}

#ifndef NDEBUG
TEST_F(StoreContextTest, UseOnAnotherThreadIsAFault) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    (void)m_context.count<Favorite>();
    EXPECT_DEATH(std::thread([this] { (void)m_context.count<Favorite>(); }).join(), "another thread");
}
#endif

TEST_F(StoreContextTest, NotesOneMemberOfARowAndTellsNobody) {
    insertAndSave(m_context, makeChannels(1, 2));
    std::vector<EntityKind> told;
    QObject::connect(m_store.get(), &LibraryStore::changed, m_store.get(),
                     [&told](EntityKind kind) { told.push_back(kind); });
    m_context.note<Channel>(makeChannel(1).id, &Channel::lastAccessedAt, sampleDate);
    m_context.note<Channel>("gone", &Channel::lastAccessedAt, sampleDate);
    m_context.save();
    EXPECT_TRUE(told.empty());
    Channel noted = makeChannel(1);
    noted.lastAccessedAt = sampleDate;
    EXPECT_THAT(m_context.fetch<Channel>({.sort = {ascending(&Channel::num)}}),
                ElementsAre(noted, makeChannel(2)));
    m_context.note<Channel>(makeChannel(2).id, &Channel::lastAccessedAt, sampleDate);
    m_context.insert(makeChannel(3));
    m_context.save();
    EXPECT_THAT(told, ElementsAre(EntityKind::Channel)) << "somebody else's change in the same save";
}

} // namespace
} // namespace ondavia::testing
