#include "base/FileReplacement.h"

#include "support/FullDisk.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <system_error>

namespace ondavia {
namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::size_t countFiles(const fs::path& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

/// The number of the error that the replacement raises; 0 when it raises none.
int errorOfReplacing(const fs::path& file, const std::string& bytes) {
    try {
        replaceFile(file, bytes);
        return 0;
    } catch (const std::system_error& error) {
        return error.code().value();
    }
}

class FileReplacementTest : public ::testing::Test {
protected:
    testing::TemporaryFolder folder;
    fs::path file = folder.path() / "file";
};

TEST_F(FileReplacementTest, writesANewFileAndReplacesAnOldOne) {
    replaceFile(file, "first");
    EXPECT_EQ(contentOf(file), "first");
    const std::string bytes(3 << 20, '\0');
    replaceFile(file, bytes);
    EXPECT_EQ(contentOf(file), bytes);
    replaceFile(file, "");
    EXPECT_EQ(contentOf(file), "");
    EXPECT_EQ(countFiles(folder.path()), 1U);
}

TEST_F(FileReplacementTest, onlyTheOwnerCanReadTheFile) {
    std::ofstream(file) << "old";
    fs::permissions(file, fs::perms(0644));
    replaceFile(file, "new");
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST_F(FileReplacementTest, whoeverReadsTheOldFileKeepsIt) {
    replaceFile(file, "old");
    std::ifstream reader(file);
    replaceFile(file, "new");
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(reader), {}}), "old");
}

TEST_F(FileReplacementTest, replacesTheFileBehindALink) {
    fs::create_directory(folder.path() / "elsewhere");
    const fs::path target = folder.path() / "elsewhere" / "target";
    replaceFile(target, "old");
    fs::create_symlink("elsewhere/target", file);
    replaceFile(file, "new");
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(contentOf(target), "new");
}

TEST_F(FileReplacementTest, aFolderThatIsNotThereIsAnError) {
    EXPECT_EQ(errorOfReplacing(folder.path() / "missing" / "file", "new"), ENOENT);
}

TEST_F(FileReplacementTest, aNameThatIsTakenByAFolderIsAnErrorAndLeavesNothing) {
    fs::create_directory(file);
    EXPECT_EQ(errorOfReplacing(file, "new"), EISDIR);
    EXPECT_EQ(countFiles(folder.path()), 1U);
}

TEST_F(FileReplacementTest, aWriteThatTheSystemStopsKeepsTheOldFile) {
    replaceFile(file, "old");
    const testing::FileSizeLimit limit(64 << 10);
    EXPECT_EQ(errorOfReplacing(file, std::string(256 << 10, 'x')), EFBIG);
    EXPECT_EQ(contentOf(file), "old");
    EXPECT_EQ(countFiles(folder.path()), 1U);
}

TEST_F(FileReplacementTest, removesWhatOneThatWasKilledLeft) {
    const fs::path left = folder.path() / "file.aB3xYz";
    const fs::path goingOn = folder.path() / "file.cD4xYz";
    const fs::path anothers = folder.path() / "other.aB3xYz";
    for (const fs::path& path : {left, goingOn, anothers}) {
        std::ofstream(path) << "secret";
    }
    for (const fs::path& path : {left, anothers}) {
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
    }
    replaceFile(file, "new");
    EXPECT_FALSE(fs::exists(left));
    EXPECT_TRUE(fs::exists(goingOn)) << "of another process";
    EXPECT_TRUE(fs::exists(anothers));
    removeLeftovers(file, std::chrono::seconds(0));
    EXPECT_FALSE(fs::exists(goingOn));
    EXPECT_EQ(contentOf(file), "new");
}

class FileReplacementOnAFullDisk : public ::testing::TestWithParam<std::size_t> {};

TEST_P(FileReplacementOnAFullDisk, keepsTheOldFileAndSaysSo) {
    const testing::SmallFilesystem disk;
    if (!disk.isMounted()) {
        GTEST_SKIP() << testing::SmallFilesystem::whyNotMounted;
    }
    const fs::path file = disk.path() / "file";
    const std::string old(10'000, 'o');
    replaceFile(file, old);
    disk.fill(GetParam());
    const std::string bytes(500'000, 'n');
    EXPECT_EQ(errorOfReplacing(file, bytes), ENOSPC);
    EXPECT_EQ(contentOf(file), old);
    EXPECT_EQ(countFiles(disk.path()), 2U) << "the file, and what fills the disk";
    disk.makeRoom();
    replaceFile(file, bytes);
    EXPECT_EQ(contentOf(file), bytes);
}

INSTANTIATE_TEST_SUITE_P(RoomLeft, FileReplacementOnAFullDisk, ::testing::Values(0, 4096, 400'000));

} // namespace
} // namespace ondavia
