#include "store/StoreSamples.h"
#include "support/FullDisk.h"

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

using ::testing::HasSubstr;

TEST(StoreWithoutRoom, AReplacementPastTheBoundKeepsTheOldRows) {
    const TemporaryFolder folder;
    const auto store = LibraryStore::open(folder.path(), {.maximumDownloadBytes = 4 << 20});
    replaceAll(*store, makeChannels(1, 100, "old"));
    try {
        auto replacement = store->beginReplacement<Channel>();
        for (int chunk = 0; chunk < 100; ++chunk) {
            replacement.append(0, makeChannels(chunk * 1000, 1000, "new"));
        }
        replacement.commit();
        FAIL() << "the bound should have been reached";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.failure(), StoreFailure::Full);
        EXPECT_THAT(error.what(), HasSubstr("no room is left"));
    }
    EXPECT_EQ(store->mainContext().distinct(&Channel::groupTitle), std::vector<std::string>{"old"});
    replaceAll(*store, makeChannels(1, 200, "newer"));
    EXPECT_EQ(store->mainContext().count<Channel>(), 200);
}

TEST(StoreWithoutRoom, DeletingAllDownloadedRowsMakesTheRoomThatItNeeds) {
    const SmallFilesystem disk(std::size_t{4} << 20);
    if (!disk.isMounted()) {
        GTEST_SKIP() << SmallFilesystem::whyNotMounted;
    }
    const auto store = LibraryStore::open(disk.path() / "store");
    replaceAll(*store, makeChannels(1, 1000, "old"));
    StoreContext& rows = store->mainContext();
    ASSERT_EQ(rows.count<Channel>(), 1000);
    int told = 0;
    QObject::connect(store.get(), &LibraryStore::changed, store.get(), [&told] { ++told; });
    disk.fill();
    rows.removeAll<Channel>();
    rows.save();
    EXPECT_EQ(rows.count<Channel>(), 0);
    EXPECT_EQ(told, 1);
    replaceAll(*store, makeChannels(1, 100, "new"));
    EXPECT_EQ(rows.count<Channel>(), 100);
}

TEST(StoreWithoutRoom, AReplacementThatTheSystemStopsKeepsTheOldRows) {
    const TemporaryFolder folder;
    const auto store = LibraryStore::open(folder.path());
    replaceAll(*store, makeChannels(1, 100, "old"));
    {
        const FileSizeLimit limit(4 << 20);
        auto replacement = store->beginReplacement<Channel>();
        EXPECT_THROW(
            {
                for (int chunk = 0; chunk < 100; ++chunk) {
                    replacement.append(0, makeChannels(chunk * 1000, 1000, "new"));
                }
                replacement.commit();
            },
            StoreError);
    }
    EXPECT_EQ(store->mainContext().distinct(&Channel::groupTitle), std::vector<std::string>{"old"});
    replaceAll(*store, makeChannels(1, 200, "newer"));
    EXPECT_EQ(store->mainContext().count<Channel>(), 200);
}

TEST(StoreWithoutRoom, AFailedSaveOfTheUsersRowsKeepsTheOldOnes) {
    const TemporaryFolder folder;
    const auto store = LibraryStore::open(folder.path());
    StoreContext& context = store->mainContext();
    insertAndSave(context, std::vector{Favorite("main", "old")});
    {
        const FileSizeLimit limit(64 << 10);
        for (int number = 0; number < 5000; ++number) {
            context.insert(Favorite("main", "new " + std::to_string(number)));
        }
        EXPECT_THROW(context.save(), StoreError);
    }
    EXPECT_EQ(context.distinct(&Favorite::channelId), std::vector<std::string>{"old"});
    insertAndSave(context, std::vector{Favorite("main", "later")});
    EXPECT_EQ(LibraryStore::open(folder.path())->mainContext().count<Favorite>(), 2);
}

class StoreOnAFullDisk : public ::testing::Test {
protected:
    void SetUp() override {
        if (!disk.isMounted()) {
            GTEST_SKIP() << SmallFilesystem::whyNotMounted;
        }
        const auto store = LibraryStore::open(folder);
        insertAndSave(store->mainContext(), std::vector{Favorite("main", "old")});
        replaceAll(*store, makeChannels(1, 100));
    }

    /// Reads work, writes say what is wrong, and both once there is room again.
    void expectReadable(const std::filesystem::path& path) {
        {
            const auto store = LibraryStore::open(path);
            StoreContext& context = store->mainContext();
            EXPECT_EQ(context.count<Favorite>(), 1);
            EXPECT_EQ(context.count<Channel>(), 100);
            EXPECT_EQ(store->makeContext()->count<Favorite>(), 1) << "beside the other context";
            EXPECT_THAT(log.text(), HasSubstr("the disk is full"));
            context.insert(Favorite("main", "new"));
            try {
                context.save();
                FAIL() << "there is no room";
            } catch (const StoreError& error) {
                EXPECT_EQ(error.failure(), StoreFailure::Full);
            }
            EXPECT_THROW(replaceAll(*store, makeChannels(1, 100)), StoreError);
        }
        disk.makeRoom();
        const auto store = LibraryStore::open(path);
        EXPECT_FALSE(store->openReport().isUserFileRestored);
        EXPECT_THAT(store->openReport().rebuiltFiles, ::testing::IsEmpty());
        insertAndSave(store->mainContext(), std::vector{Favorite("main", "new")});
        EXPECT_EQ(store->mainContext().count<Favorite>(), 2);
    }

    SmallFilesystem disk{std::size_t{16} << 20};
    std::filesystem::path folder = disk.path() / "store";
    LogCapture log;
};

TEST_F(StoreOnAFullDisk, CanBeReadAfterAGoodEnd) {
    disk.fill();
    expectReadable(folder);
}

TEST_F(StoreOnAFullDisk, CanBeReadAfterACrash) {
    const std::filesystem::path crashed = disk.path() / "crashed";
    {
        const auto store = LibraryStore::open(folder);
        store->mainContext().remove<Favorite>("main_old");
        store->mainContext().insert(Favorite("main", "in the log"));
        store->mainContext().save();
        copyStore(folder, crashed);
    }
    for (const auto& index : filesWithPrefix(crashed, "user.db-shm")) {
        std::filesystem::remove(crashed / index);
    }
    disk.fill();
    expectReadable(crashed);
}

TEST_F(StoreOnAFullDisk, AFirstStartSaysThatThereIsNoRoom) {
    disk.fill();
    try {
        (void)LibraryStore::open(disk.path() / "another");
        FAIL() << "there is no room";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.failure(), StoreFailure::Full) << error.what();
    }
}

TEST(StoreWithoutRoom, AFolderOfADiskWithTooManyFilesIsFull) {
    for (const std::size_t files : {1U, 2U, 3U}) {
        SCOPED_TRACE(files);
        const SmallFilesystem disk(std::size_t{16} << 20, files);
        if (!disk.isMounted()) {
            GTEST_SKIP() << SmallFilesystem::whyNotMounted;
        }
        try {
            (void)LibraryStore::open(disk.path() / "store");
            FAIL() << "there is no room";
        } catch (const StoreError& error) {
            EXPECT_EQ(error.failure(), StoreFailure::Full) << error.what();
        }
    }
}

} // namespace
} // namespace ondavia::testing
