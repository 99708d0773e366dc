#include "store/Schema.h"

#include "store/StoreSamples.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace ondavia::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class StoreOpeningTest : public ::testing::Test {
protected:
    std::unique_ptr<LibraryStore> open() { return LibraryStore::open(m_folder.path()); }
    fs::path file(const std::string& name) const { return m_folder.path() / name; }

    /// A store with rows of every worth, closed again.
    void fill(std::int64_t favorites = 3) {
        const auto store = open();
        for (std::int64_t number = 0; number < favorites; ++number) {
            store->mainContext().insert(Favorite("main", "main_" + std::to_string(number)));
        }
        store->mainContext().save();
        replaceAll(*store, makeChannels(1, 500));
        replaceAll(*store, std::vector{makeProgram("c", 0)});
    }

    TemporaryFolder m_folder;
    LogCapture m_log;
};

int modeOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return static_cast<int>(status.st_mode & 07777);
}

TEST_F(StoreOpeningTest, OnlyTheOwnerCanReadFolderAndFiles) {
    const fs::path folder = m_folder.path() / "a" / "b";
    // Ends with the backup of the day, which would come and go among the files that are looked at.
    (void)LibraryStore::open(folder);
    const auto store = LibraryStore::open(folder);
    insertAndSave(store->mainContext(), std::vector{Favorite("main", "a")});
    replaceAll(*store, makeChannels(1, 10));
    insertAndSave(store->mainContext(), makeChannels(11, 1));
    EXPECT_EQ(modeOf(folder), 0700);
    int files = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        EXPECT_EQ(modeOf(entry.path()), 0600) << entry.path();
        ++files;
    }
    EXPECT_GE(files, 7);
}

TEST_F(StoreOpeningTest, TightensTheModeOfAnOldUsersFile) {
    fill();
    fs::permissions(file("user.db"), fs::perms(0644));
    const auto store = open();
    EXPECT_EQ(modeOf(file("user.db")), 0600);
}

TEST_F(StoreOpeningTest, KeepsEverythingOverAReopening) {
    fill();
    const auto store = open();
    EXPECT_EQ(store->mainContext().count<Favorite>(), 3);
    EXPECT_EQ(store->mainContext().count<Channel>(), 500);
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), 1);
    EXPECT_FALSE(store->openReport().isUserFileRestored);
    EXPECT_THAT(store->openReport().rebuiltFiles, IsEmpty());
    EXPECT_EQ(m_log.text(), "");
}

TEST_F(StoreOpeningTest, AFolderThatCannotBeMadeIsAnError) {
    std::ofstream(file("plain")) << "text";
    try {
        (void)LibraryStore::open(file("plain") / "store");
        FAIL() << "the store should not have opened";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.failure(), StoreFailure::Inaccessible);
        EXPECT_THAT(error.what(), HasSubstr("cannot be made"));
    }
}

class LaterSchemaTest : public StoreOpeningTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(LaterSchemaTest, IsRefusedAndLeftAlone) {
    fill();
    const fs::path later = fs::canonical(file(GetParam()));
    executeRaw(later, "PRAGMA user_version = 1000");
    try {
        (void)open();
        FAIL() << "the store should not have opened";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.failure(), StoreFailure::NewerSchema);
        EXPECT_THAT(error.what(), HasSubstr(GetParam()));
        EXPECT_THAT(error.what(), HasSubstr("later version"));
    }
    executeRaw(later, "PRAGMA user_version = 1");
    const auto store = open();
    EXPECT_EQ(store->mainContext().count<Favorite>(), 3);
    EXPECT_EQ(store->mainContext().count<Channel>(), 500);
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), 1);
}

INSTANTIATE_TEST_SUITE_P(Files, LaterSchemaTest, ::testing::Values("user.db", "catalogue.db", "guide.db"));

TEST_F(StoreOpeningTest, MigrationsRunInOrderFromTheFilesVersion) {
    executeRaw(file("old.db"), "CREATE TABLE t(a); INSERT INTO t VALUES(1); PRAGMA user_version = 2");
    const FileSchema schema{"old",
                            4,
                            "not run",
                            "",
                            {"SELECT a, b, c FROM t"},
                            {{2, "not run"},
                             {3, "ALTER TABLE t ADD COLUMN b; UPDATE t SET b = a + 1"},
                             {4, "ALTER TABLE t ADD COLUMN c; UPDATE t SET c = b + 1"}}};
    SQLite::Database database(file("old.db"), SQLite::OPEN_READWRITE);
    migrate(database, schema);
    EXPECT_EQ(database.execAndGet("SELECT a * 100 + b * 10 + c FROM t").getInt(), 123);
    EXPECT_EQ(database.execAndGet("PRAGMA user_version").getInt(), 4);
}

TEST_F(StoreOpeningTest, AFailedMigrationLeavesTheFileAsItWas) {
    executeRaw(file("old.db"), "CREATE TABLE t(a); PRAGMA user_version = 1");
    const FileSchema schema{
        "old", 3, "", "", {}, {{2, "ALTER TABLE t ADD COLUMN b"}, {3, "ALTER TABLE missing ADD COLUMN c"}}};
    SQLite::Database database(file("old.db"), SQLite::OPEN_READWRITE);
    EXPECT_THROW(migrate(database, schema), StoreError);
    EXPECT_EQ(database.execAndGet("PRAGMA user_version").getInt(), 1);
    EXPECT_EQ(database.execAndGet("SELECT count(*) FROM pragma_table_info('t')").getInt(), 1);
}

TEST_F(StoreOpeningTest, TablesThatAreNotThoseOfTheVersionAreDamage) {
    executeRaw(file("odd.db"), "CREATE TABLE t(a); PRAGMA user_version = 1");
    SQLite::Database database(file("odd.db"), SQLite::OPEN_READWRITE);
    try {
        migrate(database, {"odd", 1, "", "", {"SELECT a, b FROM t"}, {}});
        FAIL() << "a column is missing";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.failure(), StoreFailure::Damaged);
    }
}

/// Ways to break a downloaded file.
enum class Damage { NoDatabase, BrokenSchema, CutOff, Missing, MissingTable };
class DamagedDownloadTest : public StoreOpeningTest,
                            public ::testing::WithParamInterface<std::tuple<const char*, Damage>> {};

TEST_P(DamagedDownloadTest, StartsEmptyAndWorks) {
    fill();
    const auto [name, damage] = GetParam();
    const fs::path target = fs::canonical(file(name));
    switch (damage) {
    case Damage::NoDatabase:
        scribble(target, 0, 100);
        break;
    case Damage::BrokenSchema:
        scribble(target, 100, 2000);
        break;
    case Damage::CutOff:
        fs::resize_file(target, fs::file_size(target) / 2);
        break;
    case Damage::Missing:
        fs::remove(target);
        break;
    case Damage::MissingTable:
        executeRaw(target, "DROP TABLE IF EXISTS channel; DROP TABLE IF EXISTS epg_program");
        break;
    }
    const auto store = open();
    const bool catalogue = std::string(name) == "catalogue.db";
    EXPECT_THAT(store->openReport().rebuiltFiles,
                ElementsAre(catalogue ? StoreFile::Catalogue : StoreFile::Guide));
    EXPECT_EQ(store->mainContext().count<Channel>(), catalogue ? 0 : 500);
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), catalogue ? 1 : 0);
    EXPECT_EQ(store->mainContext().count<Favorite>(), 3);
    EXPECT_THAT(m_log.messages(LogCategory::general, LogLevel::Error),
                ElementsAre(std::string(name) + " was damaged and starts empty"));
    replaceAll(*store, makeChannels(1, 7));
    EXPECT_EQ(store->mainContext().count<Channel>(), 7);
}

INSTANTIATE_TEST_SUITE_P(Kinds, DamagedDownloadTest,
                         ::testing::Combine(::testing::Values("catalogue.db", "guide.db"),
                                            ::testing::Values(Damage::NoDatabase, Damage::BrokenSchema,
                                                              Damage::CutOff, Damage::Missing,
                                                              Damage::MissingTable)));

TEST_F(StoreOpeningTest, DamageFoundLaterIsMendedAtTheNextStart) {
    replaceAll(*open(), makeChannels(1, 5000));
    const fs::path target = fs::canonical(file("catalogue.db"));
    // Somewhere among the rows, where opening does not look.
    scribble(target, static_cast<std::int64_t>(fs::file_size(target) / 3), fs::file_size(target) / 3);
    {
        const auto store = open();
        EXPECT_THAT(store->openReport().rebuiltFiles, IsEmpty());
        try {
            (void)store->mainContext().fetch<Channel>();
            FAIL() << "the damage should have been found";
        } catch (const StoreError& error) {
            EXPECT_EQ(error.failure(), StoreFailure::Damaged);
        }
    }
    const auto store = open();
    EXPECT_THAT(store->openReport().rebuiltFiles, ElementsAre(StoreFile::Catalogue));
    EXPECT_EQ(store->mainContext().count<Channel>(), 0);
}

TEST_F(StoreOpeningTest, AReplacementMendsDamageToo) {
    fill();
    const auto store = open();
    scribble(fs::canonical(file("catalogue.db")), 0, 4096);
    replaceAll(*store, makeChannels(1, 9));
    EXPECT_EQ(store->mainContext().count<Channel>(), 9);
    EXPECT_THAT(open()->openReport().rebuiltFiles, IsEmpty());
}

TEST_F(StoreOpeningTest, ADamagedUsersFileIsKeptAside) {
    fill();
    scribble(file("user.db"), 0, 200);
    std::ifstream damagedStream(file("user.db"), std::ios::binary);
    const std::string damagedBytes{std::istreambuf_iterator<char>(damagedStream), {}};
    const auto store = open();
    ASSERT_TRUE(store->openReport().damagedUserFile);
    const fs::path kept = *store->openReport().damagedUserFile;
    EXPECT_THAT(kept.filename().string(), ::testing::StartsWith("user.db.damaged-"));
    std::ifstream keptStream(kept, std::ios::binary);
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(keptStream), {}}), damagedBytes);
    EXPECT_EQ(store->openReport().salvagedRows, 3);
    EXPECT_THAT(m_log.text(), HasSubstr("user.db was damaged and is kept as " + kept.filename().string() +
                                        "; 3 rows were saved from it"));
    EXPECT_EQ(store->mainContext().count<Favorite>(), 3);
    EXPECT_EQ(store->mainContext().count<Channel>(), 500);
    insertAndSave(store->mainContext(), std::vector{Favorite("main", "a")});
    EXPECT_EQ(store->mainContext().count<Favorite>(), 4);
}

TEST_F(StoreOpeningTest, FavouritesThatCanStillBeReadAreSaved) {
    fill(2000);
    const auto pages = static_cast<std::int64_t>(fs::file_size(file("user.db")) / 4096);
    ASSERT_GT(pages, 20);
    // One page of rows or index in the middle.
    scribble(file("user.db"), pages / 2 * 4096, 4096);
    const auto store = open();
    ASSERT_TRUE(store->openReport().damagedUserFile);
    EXPECT_EQ(store->mainContext().count<Favorite>(), 2000);
    EXPECT_EQ(store->openReport().salvagedRows, store->mainContext().count<Favorite>());
    EXPECT_FALSE(open()->openReport().damagedUserFile);
}

TEST_F(StoreOpeningTest, ADamagedUsersFileIsNotTakenFromAnotherProcess) {
    const auto other = open();
    scribble(file("user.db"), 0, 200);
    try {
        (void)open();
        FAIL() << "the store should not have opened";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.failure(), StoreFailure::Damaged);
    }
    EXPECT_THAT(filesWithPrefix(m_folder.path(), "user.db.damaged"), IsEmpty());
}

TEST_F(StoreOpeningTest, WhatKilledReplacementsLeftIsDeletedByWhoIsAlone) {
    fill();
    std::ofstream(file("catalogue-7-123.db")) << "half a replacement";
    std::ofstream(file("guide.link-9-9")) << "";
    {
        const auto store = open();
        EXPECT_FALSE(fs::exists(file("catalogue-7-123.db")));
        EXPECT_FALSE(fs::exists(file("guide.link-9-9")));
        auto running = store->beginReplacement<Channel>();
        running.append(0, makeChannels(1, 3));
        const auto beside = open();
        running.commit();
        EXPECT_EQ(beside->mainContext().count<Channel>(), 3);
    }
    EXPECT_EQ(open()->mainContext().count<Channel>(), 3);
}

TEST_F(StoreOpeningTest, APlainFileInThePlaceOfTheLinkIsTaken) {
    fill();
    const fs::path generation = fs::canonical(file("catalogue.db"));
    fs::remove(file("catalogue.db"));
    fs::rename(generation, file("catalogue.db"));
    EXPECT_EQ(open()->mainContext().count<Channel>(), 500);
    EXPECT_EQ(open()->mainContext().count<Channel>(), 500);
}

} // namespace
} // namespace ondavia::testing
