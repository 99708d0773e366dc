#pragma once

#include "store/EntityTraits.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <utility>

namespace ondavia {

enum class ConnectionUse {
    /// Reads and short transactions beside those of others.
    Shared,
    /// As Shared, by whoever deals with damage: it is not noted, and closing does not write the log into
    /// the file.
    Checking,
    /// The one writer of a file that nobody else knows yet. Nothing is journalled: after a failure the
    /// file is thrown away.
    Building,
};

/// Uses a prepared statement and leaves it reset, so that no read transaction stays open behind a failure.
class StatementUse final {
public:
    explicit StatementUse(SQLite::Statement& statement)
        : m_statement(statement) {}
    ~StatementUse() { m_statement.tryReset(); }
    StatementUse(const StatementUse&) = delete;
    StatementUse& operator=(const StatementUse&) = delete;

    [[nodiscard]] SQLite::Statement& statement() const { return m_statement; }

private:
    SQLite::Statement& m_statement;
};

/// A connection to one database file and its prepared statements. One thread at a time.
class Connection final {
public:
    /// Opens an existing file. Raises StoreError.
    Connection(StoreFile kind, std::filesystem::path file, ConnectionUse use);

    [[nodiscard]] const std::filesystem::path& file() const { return m_file; }
    [[nodiscard]] SQLite::Database& database() { return m_database; }

    /// The prepared statement of `sql`, ready for its parameters. Valid until the next call.
    [[nodiscard]] SQLite::Statement& statement(const std::string& sql);

    /// Runs `sql`, which may hold several statements. Raises StoreError.
    void execute(const std::string& sql);

    /// Runs `work`, turning SQLite's exceptions into StoreError. Damage found on the way in a downloaded
    /// file is noted beside the file, which is then made anew at the next start.
    template<class Work> auto guarded(Work&& work) -> decltype(work()) {
        try {
            return work();
        } catch (const SQLite::Exception& error) {
            raise(error);
        }
    }

private:
    [[noreturn]] void raise(const SQLite::Exception& error) const;

    StoreFile m_kind;
    std::filesystem::path m_file;
    ConnectionUse m_use;
    SQLite::Database m_database;
    std::unordered_map<std::string, SQLite::Statement> m_statements;
};

/// The note beside a downloaded file that is known to be damaged.
[[nodiscard]] std::filesystem::path damageNote(const std::filesystem::path& file);

} // namespace ondavia
