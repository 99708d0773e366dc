#include "store/UserFile.h"

#include "base/AppLogger.h"
#include "base/FileReplacement.h"
#include "store/FileCheck.h"
#include "store/MemoryImage.h"
#include "store/RowInsertion.h"
#include "store/Salvage.h"
#include "store/Schema.h"
#include "store/StoreError.h"
#include "store/UserBackups.h"

namespace ondavia {

namespace fs = std::filesystem;

namespace {

bool isEmptyOrMissing(const fs::path& file) {
    std::error_code error;
    const auto size = fs::file_size(file, error);
    return error || size == 0;
}

fs::path restoredFile(const StoreFolder& folder) {
    return folder.path() / "user.db.restored";
}

/// Whether anything is there that is made of the user's file, beside it, or after it: without, this is a
/// first start.
bool wasKnown(const StoreFolder& folder) {
    std::error_code ignored;
    const auto catalogue = fs::symlink_status(folder.path() / "catalogue.db", ignored);
    return !UserBackups(folder.path()).files().empty() || !damagedCopies(folder.path()).empty() ||
           !isEmptyOrMissing(folder.userFile().string() + "-wal") ||
           !isEmptyOrMissing(restoredFile(folder)) || fs::exists(catalogue);
}

/// Whether the user's file can go on to be used.
bool isSound(const StoreFolder& folder) {
    const fs::path file = folder.userFile();
    if (isEmptyOrMissing(file) && wasKnown(folder)) {
        return false;
    }
    createPrivateFile(file);
    std::error_code ignored;
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write, ignored);
    try {
        checkFile(StoreFile::User, file, CheckDepth::Whole);
        return true;
    } catch (const StoreError& error) {
        if (error.failure() != StoreFailure::Damaged) {
            throw;
        }
        return false;
    }
}

template<Entity T> void insertPlain(SQLite::Database& database, const T& row) {
    SQLite::Statement statement(database, insertText<T>(KeyParameter::Absent));
    bindEntity(statement, 1, row);
    statement.exec();
}

std::string imageOfRows(const UserRows& rows) {
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    migrate(database, schemaOf(StoreFile::User));
    database.exec("BEGIN");
    rows.forEach([&database](const auto& row) { insertPlain(database, row); });
    database.exec("COMMIT");
    return imageOf(database);
}

/// What is left of the file. While it is gone, the newest damaged copy may be it, and what was restored of
/// it may be there: a restoration that was killed had moved it away, and perhaps not its log.
UserRows readRest(const StoreFolder& folder) {
    const fs::path file = folder.userFile();
    UserRows rows = salvageRows(file);
    if (!isEmptyOrMissing(file)) {
        return rows;
    }
    rows.add(salvageRows(restoredFile(folder)));
    if (const auto copies = damagedCopies(folder.path()); !copies.empty()) {
        rows.add(salvageRows(copies.front()));
    }
    return rows;
}

void tell(const OpenReport& report) {
    AppLogger::general.error("user.db was %{public}s; %ld rows were saved from it, and %ld more from "
                             "%{public}s",
                             {report.damagedUserFile
                                  ? "damaged and is kept as " + report.damagedUserFile->filename().string()
                                  : std::string("gone"),
                              report.salvagedRows, report.backupRows,
                              report.backup ? report.backup->filename().string() : "no backup"});
}

OpenReport restore(StoreFolder& folder) {
    const fs::path file = folder.userFile();
    OpenReport report;
    UserRows rows = readRest(folder);
    report.isUserFileRestored = true;
    report.salvagedRows = rows.size();
    if (const auto backup = UserBackups(folder.path()).readNewest()) {
        rows.add(backup->rows);
        report.backup = backup->file;
    }
    report.backupRows = rows.size() - report.salvagedRows;
    const fs::path restored = restoredFile(folder);
    replaceFile(restored, imageOfRows(rows));
    report.damagedUserFile = keepDamagedFile(file);
    fs::rename(restored, file);
    // First: the check may find no room, and the next opening finds nothing to tell.
    tell(report);
    checkFile(StoreFile::User, file, CheckDepth::Whole);
    return report;
}

} // namespace

OpenReport openUserFile(StoreFolder& folder, bool alone) {
    if (isSound(folder)) {
        return {};
    }
    if (!alone) {
        // The other process would go on writing into the file that was moved aside.
        throw StoreError(StoreFailure::Damaged, "user.db is damaged or gone, and cannot be made anew while "
                                                "another process has it open");
    }
    return restore(folder);
}

} // namespace ondavia
