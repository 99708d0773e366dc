#include "store/StoreSamples.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace ondavia::testing {
namespace {

class StoreConcurrencyTest : public ::testing::Test {
protected:
    TemporaryFolder m_folder;
    std::unique_ptr<LibraryStore> m_store = LibraryStore::open(m_folder.path());
};

TEST_F(StoreConcurrencyTest, ContextsOfSeveralThreadsWriteOneFile) {
    constexpr int rowsPerThread = 50;
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([this, number] {
            const auto context = m_store->makeContext();
            for (int row = 0; row < rowsPerThread; ++row) {
                const std::string id = std::to_string(number) + "-" + std::to_string(row);
                insertAndSave(*context, std::vector{Favorite("main", id)});
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(m_store->mainContext().count<Favorite>(), 4 * rowsPerThread);
}

TEST_F(StoreConcurrencyTest, AReaderSeesOneGenerationWhileOthersAreWritten) {
    constexpr int rows = 400;
    replaceAll(*m_store, makeChannels(1, rows, "0"));
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        for (int generation = 1; generation <= 60; ++generation) {
            replaceAll(*m_store, makeChannels(1, rows, std::to_string(generation)));
        }
        isDone = true;
    });
    StoreContext& context = m_store->mainContext();
    int reads = 0;
    std::int64_t latest = 0;
    while (!isDone) {
        const auto counts = context.countsBy(&Channel::groupTitle);
        ASSERT_EQ(counts.size(), 1U);
        ASSERT_EQ(counts[0].second, rows);
        ASSERT_GE(std::stoll(counts[0].first), latest);
        latest = std::stoll(counts[0].first);
        ++reads;
    }
    writer.join();
    EXPECT_GT(reads, 10);
    EXPECT_EQ(context.distinct(&Channel::groupTitle), std::vector<std::string>{"60"});
}

TEST_F(StoreConcurrencyTest, SingleWritesAndReplacementsOfTwoStoresLiveSideBySide) {
    const auto other = LibraryStore::open(m_folder.path());
    std::thread writer([&] {
        for (int generation = 0; generation < 30; ++generation) {
            replaceAll(*other, makeChannels(1, 200, std::to_string(generation)));
        }
    });
    StoreContext& context = m_store->mainContext();
    for (int round = 0; round < 100; ++round) {
        Channel opened = makeChannel(1'000'000, "live", "opened");
        insertAndSave(context, std::vector{opened});
    }
    writer.join();
    insertAndSave(context, std::vector{makeChannel(1'000'001, "live", "last")});
    EXPECT_EQ(other->mainContext().count(field(&Channel::groupTitle) == "29"), 200);
    EXPECT_EQ(other->mainContext().count(field(&Channel::groupTitle) == "last"), 1);
    EXPECT_EQ(other->mainContext().count(field(&Channel::groupTitle) == "28"), 0);
}

TEST_F(StoreConcurrencyTest, AnotherStoreSeesSavesAtOnce) {
    const auto other = LibraryStore::open(m_folder.path());
    EXPECT_EQ(other->mainContext().count<Favorite>(), 0);
    insertAndSave(m_store->mainContext(), std::vector{Favorite("main", "a")});
    EXPECT_EQ(other->mainContext().count<Favorite>(), 1);
    m_store->mainContext().removeAll<Favorite>();
    insertAndSave(m_store->mainContext(), makeChannels(1, 2));
    EXPECT_EQ(other->mainContext().count<Favorite>(), 0);
    EXPECT_EQ(other->mainContext().count<Channel>(), 2);
}

} // namespace
} // namespace ondavia::testing
