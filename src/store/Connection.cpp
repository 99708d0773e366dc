#include "store/Connection.h"

#include "base/AppLogger.h"
#include "store/RowInsertion.h"
#include "store/Schema.h"
#include "store/StoreError.h"

#include <sqlite3.h>

#include <fstream>

namespace ondavia {

namespace {

/// Statements kept by a connection. The screens together use about thirty.
constexpr std::size_t statementLimit = 64;

/// How long a writer waits for another one. Their transactions take milliseconds.
constexpr int busyMilliseconds = 5000;

std::string displayName(StoreFile kind) {
    return std::string(schemaOf(kind).stem) + ".db";
}

SQLite::Database openDatabase(StoreFile kind, const std::filesystem::path& file,
                              const std::string& fileSystem = {}) {
    try {
        return SQLite::Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX, busyMilliseconds,
                                fileSystem);
    } catch (const SQLite::Exception& error) {
        throw storeErrorForCode(error.getErrorCode(), displayName(kind));
    }
}

bool isForWantOfRoom(const SQLite::Exception& error) {
    const int code = error.getExtendedErrorCode();
    return code == SQLITE_IOERR_SHMSIZE || code == SQLITE_IOERR_SHMMAP || error.getErrorCode() == SQLITE_FULL;
}

/// The index into the log is a file that the first reader makes. Where no room is left for it, it is kept in
/// memory, at the price that other processes must wait: the rows can still be read.
SQLite::Database openReadable(StoreFile kind, const std::filesystem::path& file) {
    SQLite::Database database = openDatabase(kind, file);
    try {
        database.exec("PRAGMA schema_version");
    } catch (const SQLite::Exception& error) {
        if (isForWantOfRoom(error)) {
            return openDatabase(kind, file, "unix-excl");
        }
        // Whatever else is wrong shows at the first use.
    }
    return database;
}

/// Downloaded rows survive the end of the process without synchronous writes: what was written is the
/// kernel's. After a loss of power they may be damaged, and are downloaded again. They are not wiped when
/// deleted either.
const char* settings(StoreFile kind, ConnectionUse use) {
    if (use == ConnectionUse::Building) {
        return "PRAGMA page_size = 16384; PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;"
               "PRAGMA secure_delete = OFF; PRAGMA cache_size = -16384";
    }
    if (kind == StoreFile::User) {
        return "PRAGMA synchronous = FULL; PRAGMA cache_size = -2048";
    }
    return "PRAGMA synchronous = OFF; PRAGMA secure_delete = OFF; PRAGMA cache_size = -8192";
}

} // namespace

Connection::Connection(StoreFile kind, std::filesystem::path file, ConnectionUse use)
    : m_kind(kind)
    , m_file(std::move(file))
    , m_use(use)
    , m_database(use == ConnectionUse::Building ? openDatabase(kind, m_file) : openReadable(kind, m_file)) {
    if (use == ConnectionUse::Checking) {
        sqlite3_db_config(m_database.getHandle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    }
    execute(settings(kind, use));
}

SQLite::Statement& Connection::statement(const std::string& sql) {
    auto found = m_statements.find(sql);
    if (found == m_statements.end()) {
        if (m_statements.size() >= statementLimit) {
            m_statements.clear();
        }
        found = m_statements.try_emplace(sql, m_database, sql).first;
    }
    found->second.tryReset();
    return found->second;
}

void Connection::execute(const std::string& sql) {
    guarded([&] { m_database.exec(sql); });
}

void Connection::raise(const SQLite::Exception& error) const {
    StoreError storeError = storeErrorForCode(error.getExtendedErrorCode(), displayName(m_kind));
    const bool isDownloadInUse = m_kind != StoreFile::User && m_use == ConnectionUse::Shared;
    if (storeError.failure() == StoreFailure::Damaged && isDownloadInUse) {
        AppLogger::general.error("%s; it will be made anew at the next start", {storeError.what()});
        std::ofstream(damageNote(m_file)).flush();
    }
    throw storeError;
}

std::filesystem::path damageNote(const std::filesystem::path& file) {
    return file.string() + ".damaged";
}

void bindValues(SQLite::Statement& statement, const std::vector<QueryValue>& values) {
    int index = 1;
    for (const QueryValue& value : values) {
        std::visit([&](const auto& plain) { bindMember(statement, index++, plain); }, value);
    }
}

void execute(Connection& connection, const SqlText& text) {
    execute(connection, text.sql,
            [&text](SQLite::Statement& statement) { bindValues(statement, text.values); });
}

void execute(Connection& connection, const std::string& sql,
             const std::function<void(SQLite::Statement&)>& bind) {
    connection.guarded([&] {
        const StatementUse use(connection.statement(sql));
        bind(use.statement());
        use.statement().executeStep();
    });
}

} // namespace ondavia
