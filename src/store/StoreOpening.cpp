#include "store/StoreOpening.h"

#include "base/AppLogger.h"
#include "base/Date.h"
#include "store/Connection.h"
#include "store/GenerationFile.h"
#include "store/RowInsertion.h"
#include "store/Schema.h"
#include "store/StoreError.h"

#include <sqlite3.h>

#include <limits>

namespace ondavia {

namespace fs = std::filesystem;

namespace {

enum class Depth {
    /// Header, schema, and one row: a catalogue of 200 MB must not be read to be opened.
    Quick,
    /// Every page.
    Whole,
};

/// Raises StoreError if the file is damaged or of a later version; otherwise the file has the present
/// schema afterwards.
void checkFile(StoreFile kind, const fs::path& file, Depth depth) {
    Connection connection(kind, file, ConnectionUse::Checking);
    connection.guarded([&] {
        SQLite::Database& database = connection.database();
        if (depth == Depth::Whole &&
            database.execAndGet("PRAGMA quick_check(1)").getString() != std::string_view("ok")) {
            throw storeErrorForCode(SQLITE_CORRUPT, file.filename().string());
        }
        migrate(database, schemaOf(kind));
        database.exec("PRAGMA journal_mode = WAL");
    });
}

void publishEmptyGeneration(StoreFolder& folder, StoreFile kind, const FolderLock::Section& section) {
    GenerationFile generation(folder, kind, std::numeric_limits<std::int64_t>::max());
    generation.createIndexes();
    generation.publish(section);
}

bool isSound(StoreFile kind, const fs::path& file) {
    if (fs::exists(damageNote(file)) || !fs::exists(file)) {
        return false;
    }
    try {
        checkFile(kind, file, Depth::Quick);
        return true;
    } catch (const StoreError& error) {
        if (error.failure() != StoreFailure::Damaged) {
            throw;
        }
        return false;
    }
}

void openDownloadedFile(StoreFolder& folder, StoreFile kind, const FolderLock::Section& section,
                        OpenReport& report) {
    folder.adoptPlainFile(kind);
    const std::optional<fs::path> file = folder.currentFile(kind);
    if (!file) {
        publishEmptyGeneration(folder, kind, section);
        return;
    }
    if (!isSound(kind, *file)) {
        AppLogger::general.error("%{public}s.db was damaged and starts empty", {schemaOf(kind).stem});
        report.rebuiltFiles.push_back(kind);
        publishEmptyGeneration(folder, kind, section);
    }
}

fs::path moveAside(const fs::path& file) {
    const fs::path kept =
        file.string() + ".damaged-" + std::to_string(currentDate().time_since_epoch().count());
    for (const char* suffix : {"-wal", ""}) {
        std::error_code error;
        if (fs::exists(file.string() + suffix, error)) {
            fs::rename(file.string() + suffix, kept.string() + suffix, error);
        }
        if (error) {
            throw StoreError(StoreFailure::Damaged,
                             "user.db is damaged and cannot be moved aside: " + error.message());
        }
    }
    // Only an index into the log, which SQLite makes again.
    std::error_code ignored;
    fs::remove(file.string() + "-shm", ignored);
    return kept;
}

/// Copies rows in one direction until the first that cannot be read.
template<Entity T> std::int64_t salvageRows(Connection& from, Connection& to, std::string_view direction) {
    std::int64_t rows = 0;
    try {
        from.guarded([&] {
            const StatementUse use(from.statement(selectText(columnList<T>(), Query<T>()).sql +
                                                  " ORDER BY key " + std::string(direction)));
            while (use.statement().executeStep()) {
                insertRow(to, readEntity<T>(use.statement(), 0));
                ++rows;
            }
        });
    } catch (const StoreError& error) {
        AppLogger::general.error("Reading the damaged file ended: %s", {error.what()});
    }
    return rows;
}

/// From both ends, so that one broken page in the middle costs only its own rows.
template<Entity T> void salvageTable(Connection& from, Connection& to) {
    salvageRows<T>(from, to, "ASC");
    salvageRows<T>(from, to, "DESC");
}

template<Entity T> std::int64_t rowCount(Connection& connection) {
    return connection.guarded([&] {
        return connection.database()
            .execAndGet("SELECT count(*) FROM " + std::string(EntityTraits<T>::table))
            .getInt64();
    });
}

std::int64_t salvage(const fs::path& damaged, const fs::path& fresh) {
    Connection to(StoreFile::User, fresh, ConnectionUse::Shared);
    try {
        Connection from(StoreFile::User, damaged, ConnectionUse::Checking);
        to.execute("BEGIN IMMEDIATE");
        salvageTable<Favorite>(from, to);
        salvageTable<WatchHistory>(from, to);
        salvageTable<Playlist>(from, to);
        to.execute("COMMIT");
    } catch (const StoreError& error) {
        AppLogger::general.error("Nothing was saved from the damaged file: %s", {error.what()});
        return 0;
    }
    return rowCount<Favorite>(to) + rowCount<WatchHistory>(to) + rowCount<Playlist>(to);
}

void openUserFile(StoreFolder& folder, bool alone, OpenReport& report) {
    const fs::path file = folder.userFile();
    createPrivateFile(file);
    std::error_code ignored;
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write, ignored);
    try {
        checkFile(StoreFile::User, file, Depth::Whole);
        return;
    } catch (const StoreError& error) {
        if (error.failure() != StoreFailure::Damaged) {
            throw;
        }
    }
    if (!alone) {
        // The other process would go on writing into the file that was moved aside.
        throw StoreError(StoreFailure::Damaged,
                         "user.db is damaged and cannot be moved aside while another process has it open");
    }
    const fs::path kept = moveAside(file);
    createPrivateFile(file);
    checkFile(StoreFile::User, file, Depth::Whole);
    report.damagedUserFile = kept;
    report.salvagedRows = salvage(kept, file);
    AppLogger::general.error("user.db was damaged; it is kept as %{public}s, and %ld rows were saved from it",
                             {kept.filename().string(), report.salvagedRows});
}

} // namespace

OpenReport openFiles(StoreFolder& folder) {
    const FolderLock::Section section(folder.lock());
    const bool alone = folder.lock().join();
    if (alone) {
        folder.deleteAbandonedFiles();
    }
    OpenReport report;
    openUserFile(folder, alone, report);
    openDownloadedFile(folder, StoreFile::Catalogue, section, report);
    openDownloadedFile(folder, StoreFile::Guide, section, report);
    folder.lock().share();
    return report;
}

} // namespace ondavia
