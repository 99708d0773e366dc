#include "store/Schema.h"

#include "store/SqlText.h"
#include "store/StoreError.h"

#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

#include <array>

namespace ondavia {

namespace {

template<class Member> std::string columnType() {
    if constexpr (std::is_same_v<Member, std::string>) {
        return "TEXT";
    } else if constexpr (std::is_same_v<Member, double>) {
        return "REAL";
    } else {
        return "INTEGER";
    }
}

template<class T, class Member> std::string columnDefinition(const Column<T, Member>& column) {
    using Plain = typename PlainMember<Member>::type;
    const std::string definition = ", " + quotedName(column.name) + " " + columnType<Plain>();
    return std::is_same_v<Plain, Member> ? definition + " NOT NULL" : definition;
}

template<Entity T> std::string tableText() {
    std::string sql = "CREATE TABLE " + std::string(EntityTraits<T>::table) + "(" + std::string(keyColumn) +
                      " INTEGER PRIMARY KEY";
    std::apply([&sql](const auto&... column) { ((sql += columnDefinition(column)), ...); },
               EntityTraits<T>::columns);
    return sql + ");";
}

template<Entity T> std::string indexText(const IndexDescription& index) {
    std::string sql = "CREATE INDEX " + std::string(index.name) + " ON ";
    sql.append(EntityTraits<T>::table).append("(").append(index.columns).append(")");
    if (!index.condition.empty()) {
        sql.append(" WHERE ").append(index.condition);
    }
    return sql + ";";
}

template<Entity T> void addEntity(FileSchema& schema) {
    schema.createTables += tableText<T>();
    if (EntityTraits<T>::idRule == IdRule::Indexed) {
        const std::string table(EntityTraits<T>::table);
        schema.createIndexes += "CREATE UNIQUE INDEX " + table + "_by_id ON " + table + "(id);";
    }
    for (const IndexDescription& index : EntityTraits<T>::indexes) {
        (index.condition.empty() ? schema.createIndexes : schema.createTables) += indexText<T>(index);
    }
    schema.probes.push_back("SELECT " + columnList<T>() + " FROM " + std::string(EntityTraits<T>::table) +
                            " LIMIT 1");
}

template<Entity... Entities> FileSchema makeSchema(std::string_view stem, int version) {
    FileSchema schema{stem, version, {}, {}, {}, {}};
    (addEntity<Entities>(schema), ...);
    return schema;
}

void probeTables(SQLite::Database& database, const FileSchema& schema) {
    for (const std::string& probe : schema.probes) {
        SQLite::Statement(database, probe).executeStep();
    }
}

} // namespace

const FileSchema& schemaOf(StoreFile file) {
    static const std::array<FileSchema, storeFileCount> schemas{
        makeSchema<Favorite, WatchHistory, Playlist>("user", 1),
        makeSchema<Channel>("catalogue", 1),
        makeSchema<EPGProgram>("guide", 1),
    };
    return schemas.at(static_cast<std::size_t>(file));
}

void migrate(SQLite::Database& database, const FileSchema& schema) {
    const int found = database.execAndGet("PRAGMA user_version").getInt();
    const std::string fileName = std::string(schema.stem) + ".db";
    if (found > schema.version) {
        throw StoreError(StoreFailure::NewerSchema,
                         fileName + " was written by a later version of Ondavia (schema " +
                             std::to_string(found) + ", this version knows " +
                             std::to_string(schema.version) + "); it is left as it is");
    }
    try {
        if (found < schema.version) {
            SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
            if (found == 0) {
                database.exec(schema.createTables + schema.createIndexes);
            }
            for (const Migration& migration : schema.migrations) {
                if (found > 0 && migration.version > found) {
                    database.exec(migration.sql);
                }
            }
            database.exec("PRAGMA user_version = " + std::to_string(schema.version));
            transaction.commit();
        }
        probeTables(database, schema);
    } catch (const SQLite::Exception& error) {
        if (error.getErrorCode() != SQLITE_ERROR) {
            throw;
        }
        // SQLITE_ERROR is what the parser says of tables or columns that should be there and are not.
        throw StoreError(StoreFailure::Damaged, fileName +
                                                    " is damaged: its tables are not those of schema " +
                                                    std::to_string(found));
    }
}

} // namespace ondavia
