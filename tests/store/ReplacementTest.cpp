#include "store/StoreSamples.h"

#include <gmock/gmock.h>

#include <thread>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

class ReplacementTest : public ::testing::Test {
protected:
    std::string groups() {
        std::string text;
        for (const auto& [group, count] : m_context.countsBy(&Channel::groupTitle)) {
            text += group + ":" + std::to_string(count) + " ";
        }
        return text;
    }

    TemporaryFolder m_folder;
    std::unique_ptr<LibraryStore> m_store = LibraryStore::open(m_folder.path());
    StoreContext& m_context = m_store->mainContext();
};

TEST_F(ReplacementTest, PutsTheNewRowsInPlaceOfTheOld) {
    replaceAll(*m_store, makeChannels(1, 100, "old"));
    replaceAll(*m_store, makeChannels(50, 200, "new"));
    EXPECT_EQ(groups(), "new:200 ");
    const auto channel = m_context.fetchFirst<Channel>({.where = field(&Channel::id) == "main_60"});
    EXPECT_EQ(channel, makeChannel(60, "movie", "new"));
}

TEST_F(ReplacementTest, KeepsEveryField) {
    replaceAll(*m_store, std::vector{makeFullChannel()});
    EXPECT_EQ(m_context.fetch<Channel>(), std::vector{makeFullChannel()});
}

TEST_F(ReplacementTest, ReadersSeeTheOldRowsUntilTheCommit) {
    replaceAll(*m_store, makeChannels(1, 100, "old"));
    auto replacement = m_store->beginReplacement<Channel>();
    EXPECT_EQ(groups(), "old:100 ");
    const auto rows = makeChannels(1, 5000, "new");
    replacement.append(0, rows);
    EXPECT_EQ(groups(), "old:100 ");
    EXPECT_EQ(LibraryStore::open(m_folder.path())->mainContext().count<Channel>(), 100);
    replacement.commit();
    EXPECT_EQ(groups(), "new:5000 ");
}

TEST_F(ReplacementTest, WritersOfSingleRowsAreNotHeldUp) {
    replaceAll(*m_store, makeChannels(1, 100, "old"));
    auto replacement = m_store->beginReplacement<Channel>();
    const auto rows = makeChannels(1, 5000, "new");
    replacement.append(0, rows);
    Channel opened = makeChannel(1, "movie", "opened");
    insertAndSave(m_context, std::vector{opened});
    EXPECT_EQ(groups(), "old:99 opened:1 ");
    replacement.commit();
    EXPECT_EQ(groups(), "new:5000 ");
    insertAndSave(m_context, std::vector{opened});
    EXPECT_EQ(groups(), "new:4999 opened:1 ");
}

TEST_F(ReplacementTest, OfAnIdWithinASectionTheLastRowSurvives) {
    auto rows = makeChannels(1, 3, "first");
    rows.push_back(makeChannel(2, "movie", "second"));
    rows.push_back(makeChannel(2, "movie", "third"));
    replaceAll(*m_store, rows);
    EXPECT_EQ(groups(), "first:2 third:1 ");
}

TEST_F(ReplacementTest, OfAnIdInTwoSectionsTheRowOfTheHigherSurvivesWhicheverCameFirst) {
    auto replacement = m_store->beginReplacement<Channel>();
    replacement.append(1, makeChannels(1, 10, "movies"));
    replacement.append(0, makeChannels(5, 10, "live"));
    EXPECT_EQ(replacement.rowCount(0), 10);
    replacement.commit();
    EXPECT_EQ(groups(), "live:4 movies:10 ");
}

TEST_F(ReplacementTest, ADiscardedSectionStartsAgain) {
    auto replacement = m_store->beginReplacement<Channel>();
    replacement.append(0, makeChannels(1, 10, "live"));
    replacement.append(1, makeChannels(5, 30, "broken"));
    replacement.append(0, makeChannels(11, 10, "live"));
    replacement.append(1, makeChannels(35, 30, "broken"));
    EXPECT_EQ(replacement.rowCount(1), 60);
    replacement.discard(1);
    EXPECT_EQ(replacement.rowCount(1), 0);
    EXPECT_EQ(replacement.rowCount(0), 20);
    replacement.append(1, makeChannels(100, 7, "movies"));
    EXPECT_EQ(replacement.rowCount(1), 7);
    replacement.commit();
    EXPECT_EQ(groups(), "live:20 movies:7 ");
}

TEST_F(ReplacementTest, AnAbandonedReplacementLeavesTheOldRowsAndNoFile) {
    replaceAll(*m_store, makeChannels(1, 10, "old"));
    {
        auto replacement = m_store->beginReplacement<Channel>();
        replacement.append(0, makeChannels(1, 1000, "new"));
    }
    EXPECT_EQ(groups(), "old:10 ");
    // The rows themselves, besides which SQLite keeps a log and its index.
    int databases = 0;
    for (const std::string& name : filesWithPrefix(m_folder.path(), "catalogue-")) {
        databases += name.ends_with(".db") ? 1 : 0;
    }
    EXPECT_EQ(databases, 1);
}

TEST_F(ReplacementTest, ReplacedRowsLeaveTheDisk) {
    for (int round = 0; round < 5; ++round) {
        replaceAll(*m_store, makeChannels(1, 10));
        EXPECT_EQ(m_context.count<Channel>(), 10);
    }
    int databases = 0;
    for (const std::string& name : filesWithPrefix(m_folder.path(), "catalogue-")) {
        databases += name.ends_with(".db") ? 1 : 0;
    }
    EXPECT_EQ(databases, 1);
}

TEST_F(ReplacementTest, AnEmptyReplacementLeavesNoRows) {
    replaceAll(*m_store, std::vector{makeProgram("c", 0)});
    m_store->beginReplacement<EPGProgram>().commit();
    EXPECT_EQ(m_context.count<EPGProgram>(), 0);
}

TEST_F(ReplacementTest, OneOfTwoSideBySideSurvivesWhole) {
    auto first = m_store->beginReplacement<Channel>();
    auto second = m_store->beginReplacement<Channel>();
    first.append(0, makeChannels(1, 100, "first"));
    second.append(0, makeChannels(1, 200, "second"));
    second.commit();
    EXPECT_EQ(groups(), "second:200 ");
    const auto keys = m_context.fetchKeys<Channel>();
    first.commit();
    EXPECT_EQ(groups(), "first:100 ");
    for (const std::int64_t key : keys) {
        EXPECT_FALSE(m_context.fetchByKey<Channel>(key)) << "a list of the other one shows nothing";
    }
}

TEST_F(ReplacementTest, BegunByWhoHearsOfASaveFindsNoneOpen) {
    bool isReplaced = false;
    QObject::connect(m_store.get(), &LibraryStore::changed, m_store.get(), [&](EntityKind kind) {
        if (kind == EntityKind::Favorite && !std::exchange(isReplaced, true)) {
            replaceAll(*m_store, makeChannels(1, 10, "replaced"));
        }
    });
    m_context.insert(Favorite("main", "main_1"));
    m_context.insert(makeChannels(500, 1, "single").front());
    m_context.save();
    EXPECT_EQ(groups(), "replaced:10 ");
    EXPECT_EQ(m_context.count<Favorite>(), 1);
}

TEST_F(ReplacementTest, LeavesTheUsersRowsAndTheOtherKindAlone) {
    insertAndSave(m_context, std::vector{Favorite("main", "main_1")});
    insertAndSave(m_context, std::vector{makeProgram("c", 0)});
    replaceAll(*m_store, makeChannels(1, 10));
    EXPECT_EQ(m_context.count<Favorite>(), 1);
    EXPECT_EQ(m_context.count<EPGProgram>(), 1);
}

TEST_F(ReplacementTest, TakesRowsFromSeveralThreads) {
    auto replacement = m_store->beginReplacement<Channel>();
    std::vector<std::thread> threads;
    for (int section = 0; section < 4; ++section) {
        threads.emplace_back([&replacement, section] {
            for (int chunk = 0; chunk < 20; ++chunk) {
                replacement.append(section, makeChannels(section * 10'000 + chunk * 50, 50,
                                                         "section " + std::to_string(section)));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    replacement.commit();
    EXPECT_EQ(groups(), "section 0:1000 section 1:1000 section 2:1000 section 3:1000 ");
}

TEST_F(ReplacementTest, TellsTheChangeOnTheMainThreadWhereverItIsCommitted) {
    std::vector<EntityKind> kinds;
    std::thread::id thread;
    QObject::connect(m_store.get(), &LibraryStore::changed, m_store.get(), [&](EntityKind kind) {
        kinds.push_back(kind);
        thread = std::this_thread::get_id();
    });
    std::thread([this] { replaceAll(*m_store, std::vector{makeProgram("c", 0)}); }).join();
    EXPECT_TRUE(kinds.empty());
    ASSERT_TRUE(waitUntil([&] { return !kinds.empty(); }));
    EXPECT_THAT(kinds, ElementsAre(EntityKind::EPGProgram));
    EXPECT_EQ(thread, std::this_thread::get_id());
}

} // namespace
} // namespace ondavia::testing
