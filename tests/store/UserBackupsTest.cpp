#include "store/UserBackups.h"

#include "store/MemoryImage.h"
#include "store/StoreSamples.h"
#include "support/FullDisk.h"

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

WatchHistory historyAt(double position, int second) {
    WatchHistory row("main", "main_1", position, 7200, "movie");
    row.lastWatchedAt = sampleDate + std::chrono::seconds(second);
    return row;
}

class UserBackupsTest : public ::testing::Test {
protected:
    std::unique_ptr<LibraryStore> open() { return LibraryStore::open(m_folder.path()); }
    fs::path file(const std::string& name) const { return m_folder.path() / name; }

    /// Has the store hold `rows`, and the backup of today too.
    template<class T> void fillWithBackup(const std::vector<T>& rows) {
        insertAndSave(open()->mainContext(), rows);
        fs::remove(m_backups.fileOfToday());
        m_backups.make();
    }
    void ageBackup() { fs::rename(m_backups.fileOfToday(), file("user.db.backup-20200101")); }
    void destroyUserFile() { scribble(file("user.db"), 0, fs::file_size(file("user.db"))); }

    TemporaryFolder m_folder;
    UserBackups m_backups{m_folder.path()};
    LogCapture m_log;
};

TEST_F(UserBackupsTest, AreMadeOnceADayAndTheLastThreeAreKept) {
    for (const char* day : {"20240229", "20231231", "20200102", "20240301"}) {
        std::ofstream(file(std::string("user.db.backup-") + day)) << day;
    }
    open();
    const fs::path today = m_backups.fileOfToday();
    EXPECT_THAT(m_backups.files(),
                ElementsAre(today, file("user.db.backup-20240301"), file("user.db.backup-20240229")));
    const auto time = fs::last_write_time(today);
    insertAndSave(open()->mainContext(), std::vector{Favorite("main", "later")});
    EXPECT_EQ(fs::last_write_time(today), time);
}

TEST_F(UserBackupsTest, ARunningStoreMakesThemToo) {
    const auto store = open();
    insertAndSave(store->mainContext(), std::vector{Favorite("main", "a")});
    EXPECT_TRUE(waitUntil([&] { return !m_backups.files().empty(); }, std::chrono::minutes(1)));
}

TEST_F(UserBackupsTest, HoldWhatIsOnlyInTheLogYet) {
    const auto store = open();
    ASSERT_TRUE(waitUntil([&] { return !m_backups.files().empty(); }, std::chrono::minutes(1)));
    insertAndSave(store->mainContext(), std::vector{Favorite("main", "a")});
    fs::remove(m_backups.fileOfToday());
    m_backups.make();
    const auto content = m_backups.readNewest();
    ASSERT_TRUE(content);
    EXPECT_EQ(content->rows.size(), 1);
}

TEST_F(UserBackupsTest, ADamagedFileIsNotBackedUp) {
    fillWithBackup(std::vector{Favorite("main", "a")});
    ageBackup();
    destroyUserFile();
    EXPECT_THROW(m_backups.make(), StoreError);
    EXPECT_THAT(m_backups.files(), ElementsAre(file("user.db.backup-20200101")));
}

TEST_F(UserBackupsTest, ADestroyedFileComesBackFromTheNewestSoundOne) {
    fillWithBackup(std::vector{Favorite("main", "a"), Favorite("main", "b")});
    ageBackup();
    std::ofstream(file("user.db.backup-20210101")) << "no database";
    std::ofstream(m_backups.fileOfToday(), std::ios::trunc) << std::string(8192, 'x');
    destroyUserFile();
    const auto store = open();
    EXPECT_EQ(store->mainContext().count<Favorite>(), 2);
    const OpenReport& report = store->openReport();
    EXPECT_TRUE(report.isUserFileRestored);
    EXPECT_EQ(report.salvagedRows, 0);
    EXPECT_EQ(report.backupRows, 2);
    EXPECT_EQ(report.backup, file("user.db.backup-20200101"));
    EXPECT_THAT(m_log.text(),
                HasSubstr("0 rows were saved from it, and 2 more from user.db.backup-20200101"));
    EXPECT_THAT(m_log.text(), HasSubstr("user.db.backup-20210101 cannot be used"));
}

TEST_F(UserBackupsTest, RowsOfFileAndBackupComeTogether) {
    fillWithBackup(std::vector{Favorite("main", "in_both"), Favorite("main", "deleted_since")});
    {
        const auto store = open();
        store->mainContext().remove<Favorite>("main_deleted_since");
        store->mainContext().insert(Favorite("main", "added_since"));
        store->mainContext().save();
    }
    scribble(file("user.db"), 0, 200);
    const auto store = open();
    EXPECT_THAT(store->mainContext().distinct(&Favorite::channelId),
                ElementsAre("added_since", "deleted_since", "in_both"));
    EXPECT_EQ(store->openReport().salvagedRows, 2);
    EXPECT_EQ(store->openReport().backupRows, 1);
}

TEST_F(UserBackupsTest, OfTwoRowsOfOneItemTheLaterIsKept) {
    fillWithBackup(std::vector{historyAt(100, 1)});
    insertAndSave(open()->mainContext(), std::vector{historyAt(200, 2)});
    scribble(file("user.db"), 0, 200);
    EXPECT_EQ(open()->mainContext().fetchFirst<WatchHistory>()->position, 200);
    // A file that lost its last writes.
    fs::remove(m_backups.fileOfToday());
    m_backups.make();
    insertAndSave(open()->mainContext(), std::vector{historyAt(50, 0)});
    scribble(file("user.db"), 0, 200);
    EXPECT_EQ(open()->mainContext().fetchFirst<WatchHistory>()->position, 200);
}

TEST_F(UserBackupsTest, AFileThatIsGoneIsALossAndNoFirstStart) {
    EXPECT_FALSE(open()->openReport().isUserFileRestored);
    fillWithBackup(std::vector{Favorite("main", "a")});
    for (const bool leavesEmptyFile : {false, true}) {
        fs::remove(file("user.db"));
        if (leavesEmptyFile) {
            std::ofstream(file("user.db")).flush();
        }
        const auto store = open();
        EXPECT_TRUE(store->openReport().isUserFileRestored);
        EXPECT_EQ(store->openReport().backupRows, 1);
        EXPECT_EQ(store->mainContext().count<Favorite>(), 1);
    }
    EXPECT_THAT(m_log.text(), HasSubstr("user.db was gone; 0 rows were saved from it, and 1 more from"));
}

TEST_F(UserBackupsTest, ARestorationThatWasKilledIsTakenUpAgain) {
    insertAndSave(open()->mainContext(), std::vector{Favorite("main", "a")});
    // The moment between the two renamings.
    fs::rename(file("user.db"), file("user.db.damaged-1700000000000000"));
    for (const auto& backup : m_backups.files()) {
        fs::remove(backup);
    }
    const auto store = open();
    EXPECT_TRUE(store->openReport().isUserFileRestored);
    EXPECT_EQ(store->mainContext().count<Favorite>(), 1);
}

TEST_F(UserBackupsTest, TheLogOfAFileThatIsGoneIsReadAndNotTakenForThatOfTheNewFile) {
    const auto elsewhere = m_folder.path() / "elsewhere";
    {
        const auto store = open();
        insertAndSave(store->mainContext(), std::vector{Favorite("main", "a"), Favorite("main", "b")});
        copyStore(m_folder.path(), elsewhere);
    }
    for (const std::string& other : filesWithPrefix(elsewhere, "")) {
        if (other != "user.db-wal") {
            fs::remove(elsewhere / other);
        }
    }
    const auto store = LibraryStore::open(elsewhere);
    EXPECT_TRUE(store->openReport().isUserFileRestored);
    EXPECT_EQ(store->mainContext().count<Favorite>(), 2);
    EXPECT_THAT(filesWithPrefix(elsewhere, "user.db.damaged-"), SizeIs(1)) << "the log";
}

TEST_F(UserBackupsTest, WhatWasRestoredIsTakenWhenNothingElseIsLeft) {
    insertAndSave(open()->mainContext(), std::vector{Favorite("main", "a")});
    const fs::path elsewhere = file("elsewhere");
    fs::create_directory(elsewhere);
    fs::copy_file(file("user.db"), elsewhere / "user.db.restored");
    const auto store = LibraryStore::open(elsewhere);
    EXPECT_TRUE(store->openReport().isUserFileRestored);
    EXPECT_EQ(store->mainContext().count<Favorite>(), 1);
}

TEST_F(UserBackupsTest, AFileThatIsGoneFromBesideTheCatalogueIsALoss) {
    open();
    fs::remove(file("user.db"));
    fs::remove(m_backups.fileOfToday());
    EXPECT_TRUE(open()->openReport().isUserFileRestored);
    EXPECT_THAT(m_log.text(), HasSubstr("user.db was gone"));
}

TEST_F(UserBackupsTest, LogsWithoutTheirFilesDoNotGatherForEver) {
    insertAndSave(open()->mainContext(), std::vector{Favorite("main", "a")});
    for (const char* number : {"1", "2", "3", "4", "5"}) {
        std::ofstream(file(std::string("user.db.damaged-170000000000000") + number + "-wal")) << "log";
    }
    scribble(file("user.db"), 0, 200);
    open();
    EXPECT_THAT(filesWithPrefix(m_folder.path(), "user.db.damaged-"), SizeIs(3));
}

TEST_F(UserBackupsTest, NothingThatTheUserEmptiedStaysInAnyCopy) {
    const auto store = open();
    insertAndSave(store->mainContext(), std::vector{Favorite("main", "a")});
    for (const char* name : {"user.db.damaged-1700000000000000-wal", "user.db.restored", "user.db.working",
                             "user.db.backup-20200101", "user.db.backup-20200101.aBcDeF"}) {
        std::ofstream(file(name)) << "row";
    }
    store->mainContext().removeAll<Favorite>();
    store->mainContext().save();
    const std::vector<std::string> today{m_backups.fileOfToday().filename().string()};
    EXPECT_TRUE(waitUntil([&] { return filesWithPrefix(m_folder.path(), "user.db.") == today; },
                          std::chrono::minutes(1)));
    EXPECT_EQ(m_backups.readNewest()->rows.size(), 0);
}

TEST_F(UserBackupsTest, TheOldOnesStayUntilThereIsTheNewOne) {
    fillWithBackup(std::vector{Favorite("main", "a")});
    ageBackup();
    // In its place nothing can be written.
    fs::create_directory(m_backups.fileOfToday());
    {
        const auto store = open();
        store->mainContext().removeAll<WatchHistory>();
        store->mainContext().save();
    }
    EXPECT_TRUE(fs::exists(file("user.db.backup-20200101")));
    EXPECT_THAT(m_log.text(), HasSubstr("user.db was not backed up"));
}

TEST_F(UserBackupsTest, WhatWasEmptiedDoesNotComeBackThoughAnotherFileCouldNotBeSaved) {
    fillWithBackup(std::vector{Favorite("main", "a")});
    ageBackup();
    const auto store = open();
    fs::remove(file("catalogue.db"));
    fs::create_directory(file("catalogue.db"));
    store->mainContext().removeAll<Favorite>();
    store->mainContext().removeAll<Channel>();
    EXPECT_THROW(store->mainContext().save(), StoreError);
    EXPECT_TRUE(
        waitUntil([&] { return !fs::exists(file("user.db.backup-20200101")); }, std::chrono::minutes(1)));
}

TEST_F(UserBackupsTest, ALossIsToldAlsoWhereTheNewFileFindsNoRoom) {
    const SmallFilesystem disk;
    if (!disk.isMounted()) {
        GTEST_SKIP() << SmallFilesystem::whyNotMounted;
    }
    insertAndSave(open()->mainContext(), std::vector{Favorite("main", "a")});
    scribble(file("user.db"), 0, 200);
    int failures = 0;
    for (std::size_t room = 0; room < std::size_t{256} << 10; room += 4096) {
        SCOPED_TRACE(room);
        const fs::path folder = disk.path() / std::to_string(room);
        fs::create_directory(folder);
        fs::copy_file(file("user.db"), folder / "user.db");
        disk.fill(room);
        const LogCapture log;
        try {
            const auto opened = LibraryStore::open(folder);
        } catch (const std::runtime_error&) {
            failures += damagedCopies(folder).empty() ? 0 : 1;
        }
        if (!damagedCopies(folder).empty()) {
            EXPECT_THAT(log.text(), HasSubstr("user.db was damaged and is kept as"));
        }
        disk.makeRoom();
        fs::remove_all(folder);
    }
    EXPECT_GT(failures, 0) << "no room was just enough for the file and too little for its check";
}

TEST_F(UserBackupsTest, AClockThatWasAheadKeepsNoLaterBackupOut) {
    fillWithBackup(std::vector{Favorite("main", "a")});
    const fs::path today = m_backups.fileOfToday();
    for (const char* day : {"99990101", "99990102", "99990103"}) {
        fs::copy_file(today, file(std::string("user.db.backup-") + day));
    }
    fs::remove(today);
    m_backups.make();
    EXPECT_THAT(m_backups.files(),
                ElementsAre(today, file("user.db.backup-99990103"), file("user.db.backup-99990102")));
    const auto newest = m_backups.readNewest();
    ASSERT_TRUE(newest);
    EXPECT_EQ(newest->file, today);
}

TEST_F(UserBackupsTest, DamagedCopiesDoNotGatherForEver) {
    insertAndSave(open()->mainContext(), std::vector{Favorite("main", "a")});
    for (int round = 0; round < 5; ++round) {
        scribble(file("user.db"), 0, 200);
        EXPECT_EQ(open()->mainContext().count<Favorite>(), 1);
    }
    EXPECT_THAT(damagedCopies(m_folder.path()), SizeIs(3));
    EXPECT_THAT(filesWithPrefix(m_folder.path(), "user.db.damaged-"), SizeIs(3));
}

TEST_F(UserBackupsTest, WhatTheUserEmptiesDoesNotComeBack) {
    fillWithBackup(std::vector{Favorite("main", "a")});
    scribble(file("user.db"), 0, 200);
    {
        const auto store = open();
        store->mainContext().insert(historyAt(1, 1));
        store->mainContext().save();
        ASSERT_THAT(damagedCopies(m_folder.path()), SizeIs(1));
        store->mainContext().removeAll<Favorite>();
        store->mainContext().save();
    }
    EXPECT_THAT(damagedCopies(m_folder.path()), IsEmpty());
    EXPECT_THAT(m_backups.files(), ElementsAre(m_backups.fileOfToday())) << "of what is left";
    destroyUserFile();
    const auto store = open();
    EXPECT_EQ(store->mainContext().count<Favorite>(), 0);
    EXPECT_EQ(store->mainContext().count<WatchHistory>(), 1);
}

TEST_F(UserBackupsTest, ABackupWithoutRoomLeavesNothingHalf) {
    const SmallFilesystem disk;
    if (!disk.isMounted()) {
        GTEST_SKIP() << SmallFilesystem::whyNotMounted;
    }
    const UserBackups backups(disk.path());
    insertAndSave(LibraryStore::open(disk.path())->mainContext(), std::vector{Favorite("main", "a")});
    fs::remove(backups.fileOfToday());
    disk.fill();
    EXPECT_THROW(backups.make(), std::runtime_error);
    EXPECT_THAT(filesWithPrefix(disk.path(), "user.db.backup"), IsEmpty());
}

} // namespace
} // namespace ondavia::testing
