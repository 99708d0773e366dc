#include "platform/linux/DataFolders.h"
#include "platform/linux/JsonUserDefaults.h"
#include "support/FullDisk.h"
#include "support/TestSupport.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ondavia {
namespace {

class SettingsTest : public ::testing::Test {
protected:
    testing::TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "settings.json";
};

TEST_F(SettingsTest, keepsEveryTypeForTheNextStart) {
    const Date date(std::chrono::microseconds(1'772'399'100'123'456));
    {
        JsonUserDefaults defaults(file);
        defaults.setString("text", "olá");
        defaults.setDouble("number", 3600.5);
        defaults.setDate("date", date);
        defaults.setStringArray("list", {"Notícias", "", "Notícias"});
        defaults.setStringArray("empty", {});
    }
    const JsonUserDefaults defaults(file);
    EXPECT_EQ(defaults.stringForKey("text"), "olá");
    EXPECT_EQ(defaults.doubleForKey("number"), 3600.5);
    EXPECT_EQ(defaults.dateForKey("date"), date);
    EXPECT_EQ(defaults.stringArrayForKey("list"), (std::vector<std::string>{"Notícias", "", "Notícias"}));
    EXPECT_EQ(defaults.stringArrayForKey("empty"), std::vector<std::string>());
}

TEST_F(SettingsTest, readsNothingThatIsNoFileOrHasNoEnd) {
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    {
        const testing::LogCapture log;
        JsonUserDefaults defaults(file);
        EXPECT_FALSE(defaults.stringForKey("text"));
        defaults.setString("text", "new");
        EXPECT_NE(log.text().find("settings: cannot be read: this is no file"), std::string::npos);
    }
    EXPECT_TRUE(std::filesystem::is_fifo(file));
    std::filesystem::remove(file);
    std::ofstream(file) << R"({"text":"kept"})";
    std::filesystem::resize_file(file, std::uintmax_t{1} << 40);
    JsonUserDefaults defaults(file);
    EXPECT_FALSE(defaults.stringForKey("text"));
    EXPECT_EQ(std::filesystem::file_size(file.string() + ".damaged"), std::uintmax_t{1} << 40);
}

TEST_F(SettingsTest, countsAValueOfAnotherTypeAsMissing) {
    JsonUserDefaults defaults(file);
    defaults.setString("key", "text");
    EXPECT_EQ(defaults.doubleForKey("key"), 0);
    EXPECT_EQ(defaults.dateForKey("key"), std::nullopt);
    EXPECT_EQ(defaults.stringArrayForKey("key"), std::nullopt);
    defaults.setDouble("key", 1);
    EXPECT_EQ(defaults.stringForKey("key"), std::nullopt);
    EXPECT_EQ(defaults.stringForKey("other"), std::nullopt);
}

TEST_F(SettingsTest, removesAKey) {
    JsonUserDefaults defaults(file);
    defaults.setString("key", "text");
    defaults.removeObjectForKey("key");
    EXPECT_EQ(JsonUserDefaults(file).stringForKey("key"), std::nullopt);
}

/// Takes the right to read `file` away from this thread as long as it lives, also from the administrator's.
class Unreadable final {
public:
    explicit Unreadable(const std::filesystem::path& file)
        : m_file(file) {
        namespace fs = std::filesystem;
        fs::permissions(file, fs::perms::none);
        if (::geteuid() == 0) {
            constexpr uid_t nobody = 65534;
            fs::permissions(file.parent_path(), fs::perms::all);
            ::setfsuid(nobody);
        }
    }
    ~Unreadable() {
        ::setfsuid(::geteuid());
        std::filesystem::permissions(m_file, std::filesystem::perms::owner_all);
    }
    Unreadable(const Unreadable&) = delete;
    Unreadable& operator=(const Unreadable&) = delete;

private:
    std::filesystem::path m_file;
};

TEST_F(SettingsTest, neverWritesOverAFileThatItCannotRead) {
    JsonUserDefaults(file).setString("old", "kept");
    testing::LogCapture log;
    {
        const Unreadable unreadable(file);
        JsonUserDefaults defaults(file);
        defaults.setString("new", "for this run");
        EXPECT_EQ(defaults.stringForKey("new"), "for this run");
    }
    EXPECT_EQ(JsonUserDefaults(file).stringForKey("old"), "kept");
    EXPECT_EQ(log.records().size(), 2U) << "what could not be read, and what could not be written";
}

TEST_F(SettingsTest, isReadableByItsOwnerOnly) {
    JsonUserDefaults(file).setString("key", "text");
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(SettingsTest, seesAndKeepsWhatAnotherProcessWrites) {
    JsonUserDefaults ours(file);
    JsonUserDefaults theirs(file);
    ours.setString("a", "1");
    theirs.setString("b", "2");
    EXPECT_EQ(ours.stringForKey("b"), "2");
    ours.setString("c", "3");
    EXPECT_EQ(theirs.stringForKey("a"), "1");
    EXPECT_EQ(theirs.stringForKey("c"), "3");
}

TEST_F(SettingsTest, keepsADamagedFileAside) {
    std::ofstream(file) << "{\"half\": ";
    const testing::LogCapture log;
    JsonUserDefaults defaults(file);
    EXPECT_EQ(defaults.stringForKey("half"), std::nullopt);
    EXPECT_TRUE(std::filesystem::exists(file.string() + ".damaged"));
    EXPECT_EQ(log.messages(LogCategory::general, LogLevel::Error).size(), 1U);
    defaults.setString("key", "text");
    EXPECT_EQ(JsonUserDefaults(file).stringForKey("key"), "text");
}

TEST_F(SettingsTest, refusesADateThatNoCalendarHolds) {
    std::ofstream(file) << R"({"date": {"date": 1e300}})";
    EXPECT_EQ(JsonUserDefaults(file).dateForKey("date"), std::nullopt);
}

TEST_F(SettingsTest, reportsThatItCannotWrite) {
    const testing::LogCapture log;
    JsonUserDefaults(folder.path() / "missing" / "settings.json").setString("key", "text");
    EXPECT_FALSE(log.messages(LogCategory::general, LogLevel::Error).empty());
}

TEST(SettingsOnAFullDisk, keepsTheOldFileAndSaysThatThereIsNoRoom) {
    testing::SmallFilesystem disk;
    if (!disk.isMounted()) {
        GTEST_SKIP() << testing::SmallFilesystem::whyNotMounted;
    }
    const auto file = disk.path() / "settings.json";
    JsonUserDefaults defaults(file);
    defaults.setString("old", "kept");
    disk.fill();
    const testing::LogCapture log;
    // Less than a stream would buffer, so that only the end of the write finds the disk full.
    defaults.setString("new", "text");
    EXPECT_EQ(defaults.stringForKey("new"), "text") << "it holds for this run";
    EXPECT_EQ(JsonUserDefaults(file).stringForKey("old"), "kept");
    EXPECT_EQ(log.messages(LogCategory::general, LogLevel::Error),
              std::vector<std::string>{"settings: settings.json cannot be written: No space left on device"});
    disk.makeRoom();
    defaults.setString("later", "written");
    EXPECT_EQ(JsonUserDefaults(file).stringForKey("later"), "written");
    EXPECT_EQ(JsonUserDefaults(file).stringForKey("new"), "text");
}

TEST_F(SettingsTest, oneFolderHoldsEverythingWhenAskedFor) {
    qputenv("ONDAVIA_DATA_DIR", QByteArray::fromStdString((folder.path() / "all").string()));
    const DataFolders folders = DataFolders::fromEnvironment();
    qunsetenv("ONDAVIA_DATA_DIR");
    for (const auto& each : {folders.store, folders.settings, folders.cache, folders.vault}) {
        EXPECT_EQ(each.parent_path(), folder.path() / "all");
        struct stat status {};
        ASSERT_EQ(::stat(each.c_str(), &status), 0) << each;
        EXPECT_EQ(status.st_mode & 0777, 0700U);
    }
}

TEST_F(SettingsTest, theUsersOwnFoldersAreUsedOtherwise) {
    const DataFolders folders = DataFolders::fromEnvironment();
    const std::filesystem::path home = qgetenv("HOME").toStdString();
    EXPECT_EQ(folders.store, home / ".local/share/ondavia/store");
    EXPECT_EQ(folders.settings, home / ".config/ondavia");
    EXPECT_EQ(folders.cache, home / ".cache/ondavia");
}

} // namespace
} // namespace ondavia
