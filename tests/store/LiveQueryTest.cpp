#include "store/LiveQuery.h"

#include "store/StoreSamples.h"

#include <gmock/gmock.h>

#include <thread>

namespace ondavia::testing {
namespace {

class LiveQueryTest : public ::testing::Test {
protected:
    TemporaryFolder m_folder;
    std::unique_ptr<LibraryStore> m_store = LibraryStore::open(m_folder.path());
    StoreContext& m_context = m_store->mainContext();
    int m_runs = 0;
};

TEST_F(LiveQueryTest, HasItsFirstResultWhenMade) {
    insertAndSave(m_context, std::vector{Favorite("main", "a")});
    const LiveQuery<Favorite> query(*m_store, {}, [this] { ++m_runs; });
    EXPECT_EQ(query.results().size(), 1U);
    drainEvents();
    EXPECT_EQ(m_runs, 0);
}

TEST_F(LiveQueryTest, RunsAgainAfterAChangeOfItsKindOnly) {
    const LiveQuery<Favorite> query(*m_store, {}, [this] { ++m_runs; });
    insertAndSave(m_context, std::vector{WatchHistory("main", "a", 1, 2, "movie")});
    drainEvents();
    EXPECT_EQ(m_runs, 0);
    insertAndSave(m_context, std::vector{Favorite("main", "a")});
    EXPECT_EQ(query.results().size(), 0U);
    drainEvents();
    EXPECT_EQ(m_runs, 1);
    EXPECT_EQ(query.results().size(), 1U);
}

TEST_F(LiveQueryTest, RunsOnceForSeveralChangesOfOneTurn) {
    const LiveQuery<Favorite> query(*m_store, {}, [this] { ++m_runs; });
    for (int number = 0; number < 5; ++number) {
        insertAndSave(m_context, std::vector{Favorite("main", std::to_string(number))});
    }
    drainEvents();
    EXPECT_EQ(m_runs, 1);
    EXPECT_EQ(query.results().size(), 5U);
}

TEST_F(LiveQueryTest, FollowsSavesOfOtherThreadsAndReplacements) {
    const LiveQuery<Channel> query(*m_store, {.sort = {ascending(&Channel::num)}}, [this] { ++m_runs; });
    std::thread([this] { insertAndSave(*m_store->makeContext(), makeChannels(1, 2)); }).join();
    ASSERT_TRUE(waitUntil([&] { return query.results().size() == 2; }));
    std::thread([this] { replaceAll(*m_store, makeChannels(1, 7)); }).join();
    ASSERT_TRUE(waitUntil([&] { return query.results().size() == 7; }));
    EXPECT_EQ(m_runs, 2);
}

TEST_F(LiveQueryTest, TakesAnotherQuery) {
    insertAndSave(m_context, makeChannels(1, 5));
    LiveQuery<Channel> query(*m_store, {}, [this] { ++m_runs; });
    query.setQuery({.where = field(&Channel::num) <= 2});
    drainEvents();
    EXPECT_EQ(query.results().size(), 2U);
    EXPECT_EQ(m_runs, 1);
}

TEST_F(LiveQueryTest, MayGoWhileARunIsDue) {
    {
        const LiveQuery<Favorite> query(*m_store, {}, [this] { ++m_runs; });
        insertAndSave(m_context, std::vector{Favorite("main", "a")});
    }
    drainEvents();
    EXPECT_EQ(m_runs, 0);
}

TEST_F(LiveQueryTest, AFailedRunIsLoggedAndKeepsTheResult) {
    insertAndSave(m_context, std::vector{Favorite("main", "a")});
    const LiveQuery<Favorite> query(*m_store, {}, [this] { ++m_runs; });
    const LogCapture log;
    executeRaw(m_folder.path() / "user.db", "DROP TABLE favorite");
    m_store->announce({EntityKind::Favorite});
    drainEvents();
    EXPECT_EQ(query.results().size(), 1U);
    EXPECT_EQ(log.messages(LogCategory::general, LogLevel::Error).size(), 1U);
}

} // namespace
} // namespace ondavia::testing
