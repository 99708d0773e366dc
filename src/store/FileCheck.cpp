#include "store/FileCheck.h"

#include "store/Connection.h"
#include "store/Schema.h"
#include "store/StoreError.h"

#include <sqlite3.h>

namespace ondavia {

void checkFile(StoreFile kind, const std::filesystem::path& file, CheckDepth depth) {
    Connection connection(kind, file, ConnectionUse::Checking);
    connection.guarded([&] {
        SQLite::Database& database = connection.database();
        if (depth == CheckDepth::Whole) {
            requireSound(database, file.filename().string());
        }
        migrate(database, schemaOf(kind));
        database.exec("PRAGMA journal_mode = WAL");
    });
}

void requireSound(SQLite::Database& database, const std::string& name) {
    if (database.execAndGet("PRAGMA quick_check(1)").getString() != std::string_view("ok")) {
        throw storeErrorForCode(SQLITE_CORRUPT, name);
    }
}

} // namespace ondavia
