#include "store/UserBackups.h"

#include "base/AppLogger.h"
#include "base/FileReplacement.h"
#include "store/Connection.h"
#include "store/FileCheck.h"
#include "store/MemoryImage.h"
#include "store/RowBinding.h"
#include "store/Schema.h"
#include "store/SqlText.h"
#include "store/StoreError.h"
#include "store/StoreFolder.h"

#include <cstdio>
#include <functional>
#include <set>

namespace ondavia {

namespace fs = std::filesystem;

namespace {

/// Of whatever holds rows of the user's file but itself and its log.
constexpr std::string_view copyPrefix = "user.db.";
constexpr std::string_view backupPrefix = "user.db.backup-";
constexpr std::string_view damagedPrefix = "user.db.damaged-";

constexpr std::string_view logSuffix = "-wal";

/// The databases of the folder whose names begin so, by descending name. Of some only the log is there.
std::vector<fs::path> copiesOf(const fs::path& folder, std::string_view prefix) {
    std::set<fs::path, std::greater<>> copies;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        std::string name = entry.path().filename().string();
        if (name.ends_with(logSuffix)) {
            name.resize(name.size() - logSuffix.size());
        }
        // What is in the making has more to its name than the number.
        const bool isDatabase = name.starts_with(prefix) &&
                                name.find_first_not_of("0123456789", prefix.size()) == std::string::npos;
        if (isDatabase) {
            copies.insert(folder / name);
        }
    }
    return {copies.begin(), copies.end()};
}

void deleteOldest(const std::vector<fs::path>& copies) {
    for (std::size_t index = UserBackups::kept; index < copies.size(); ++index) {
        deleteDatabase(copies[index]);
    }
}

template<Entity T> void readRows(SQLite::Database& database, UserRows& rows) {
    SQLite::Statement statement(database, selectText(columnList<T>(), Query<T>()).sql);
    while (statement.executeStep()) {
        rows.add(readEntity<T>(statement, 0));
    }
}

UserRows readBackup(const fs::path& file) {
    SQLite::Database database = openImage(readWholeFile(file));
    requireSound(database, file.filename().string());
    migrate(database, schemaOf(StoreFile::User));
    UserRows rows;
    readRows<Favorite>(database, rows);
    readRows<WatchHistory>(database, rows);
    readRows<Playlist>(database, rows);
    return rows;
}

} // namespace

std::vector<fs::path> UserBackups::files() const {
    std::vector<fs::path> backups = copiesOf(m_folder, backupPrefix);
    // Those of a clock that was ahead are older than they say.
    std::stable_partition(backups.begin(), backups.end(),
                          [today = fileOfToday()](const fs::path& file) { return file <= today; });
    return backups;
}

fs::path UserBackups::fileOfToday() const {
    const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(currentDate()));
    char text[16] = {};
    std::snprintf(text, sizeof text, "%04d%02u%02u", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
    return m_folder / (std::string(backupPrefix) + text);
}

void UserBackups::make() const {
    if (!fs::exists(fileOfToday())) {
        write();
        deleteOldest(files());
    }
}

void UserBackups::renew() const {
    write();
    const std::string today = fileOfToday().filename().string();
    for (const fs::directory_entry& entry : fs::directory_iterator(m_folder)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(copyPrefix) && name != today) {
            fs::remove(entry.path());
        }
    }
}

void UserBackups::write() const {
    Connection source(StoreFile::User, m_folder / "user.db", ConnectionUse::Shared);
    // One transaction, so that what was checked is what is copied.
    source.execute("BEGIN");
    const std::string image = source.guarded([&] {
        requireSound(source.database(), source.file().filename().string());
        return imageOf(source.database());
    });
    source.execute("COMMIT");
    replaceFile(fileOfToday(), image);
}

std::optional<UserBackups::Content> UserBackups::readNewest() const {
    for (const fs::path& file : files()) {
        try {
            return Content{file, readBackup(file)};
        } catch (const std::runtime_error& error) {
            AppLogger::general.error("%{public}s cannot be used: %s",
                                     {file.filename().string(), error.what()});
        }
    }
    return std::nullopt;
}

std::vector<fs::path> damagedCopies(const fs::path& folder) {
    return copiesOf(folder, damagedPrefix);
}

std::optional<fs::path> keepDamagedFile(const fs::path& userFile) {
    const fs::path folder = userFile.parent_path();
    const fs::path kept =
        folder / (std::string(damagedPrefix) + std::to_string(currentDate().time_since_epoch().count()));
    const bool isThere = fs::exists(userFile);
    // The log too, also one that is alone: it would be taken for the log of the next file of this name.
    for (const char* suffix : {"", "-wal"}) {
        std::error_code error;
        if (fs::exists(userFile.string() + suffix, error)) {
            fs::rename(userFile.string() + suffix, kept.string() + suffix, error);
        }
        if (error) {
            throw StoreError(StoreFailure::Damaged,
                             "user.db is damaged and cannot be moved aside: " + error.message());
        }
    }
    // Only an index into the log, which SQLite makes again.
    std::error_code ignored;
    fs::remove(userFile.string() + "-shm", ignored);
    deleteOldest(copiesOf(folder, damagedPrefix));
    return isThere ? std::optional(kept) : std::nullopt;
}

} // namespace ondavia
