#pragma once

#include "store/EntityTraits.h"

#include <SQLiteCpp/Database.h>

#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

/// One step from the version before to `version`.
struct Migration final {
    int version;
    std::string sql;
};

/// What a database file consists of. The version is kept in the file's `user_version`.
struct FileSchema final {
    /// The file's name without ".db".
    std::string_view stem;
    int version;
    /// The tables of a new file, with the indexes that cost nothing while rows are added.
    std::string createTables;
    /// The remaining indexes, to be made after the rows.
    std::string createIndexes;
    /// One statement a table that fails unless the table has all its columns.
    std::vector<std::string> probes;
    /// By ascending version, from 2 on.
    std::vector<Migration> migrations;
};

[[nodiscard]] const FileSchema& schemaOf(StoreFile file);

/// Brings a database to the schema's version in one transaction, an empty one as well, and proves that its
/// tables are there. Raises StoreError: NewerSchema before anything is touched, Damaged when the tables are
/// not what the version promises.
void migrate(SQLite::Database& database, const FileSchema& schema);

} // namespace ondavia
