#pragma once

#include "store/RowBinding.h"
#include "store/SqlText.h"

#include <functional>
#include <string>

namespace ondavia {

class Connection;

/// Binds the values of a SqlText. They are not copied: `values` outlives the statement's next step.
void bindValues(SQLite::Statement& statement, const std::vector<QueryValue>& values);

/// Runs `text` with its values. Raises StoreError.
void execute(Connection& connection, const SqlText& text);

/// Runs the prepared statement of `sql` with what `bind` binds. Raises StoreError.
void execute(Connection& connection, const std::string& sql,
             const std::function<void(SQLite::Statement&)>& bind);

/// "INSERT INTO table(...) VALUES(?, ...)", with the key as first parameter if `withKey`.
enum class KeyParameter { Absent, First };
template<Entity T> std::string insertText(KeyParameter key) {
    const bool withKey = key == KeyParameter::First;
    std::string sql = "INSERT INTO " + std::string(EntityTraits<T>::table) + "(";
    sql += withKey ? std::string(keyColumn) + ", " : std::string();
    sql += columnList<T>() + ") VALUES(?";
    for (int index = withKey ? 0 : 1; index < columnCount<T>; ++index) {
        sql += ", ?";
    }
    return sql + ")";
}

/// The tail of an insert that overwrites the row of the same id in place: it keeps its key.
template<Entity T> std::string replaceClause() {
    std::string sql;
    std::apply(
        [&](const auto&... column) {
            ((sql +=
              (sql.empty() ? "" : ", ") + quotedName(column.name) + " = excluded." + quotedName(column.name)),
             ...);
        },
        EntityTraits<T>::columns);
    return " ON CONFLICT(id) DO UPDATE SET " + sql;
}

/// Inserts `row`, or puts it in the place of the row of the same id. Raises StoreError.
template<Entity T> void insertRow(Connection& connection, const T& row) {
    static const std::string sql =
        insertText<T>(KeyParameter::Absent) +
        (EntityTraits<T>::idRule == IdRule::Indexed ? replaceClause<T>() : std::string());
    if constexpr (EntityTraits<T>::idRule == IdRule::WithinChannel) {
        execute(connection,
                "DELETE FROM " + std::string(EntityTraits<T>::table) + " WHERE channel_id = ? AND id = ?",
                [&row](SQLite::Statement& statement) {
                    statement.bindNoCopy(1, row.channelId);
                    statement.bindNoCopy(2, row.id);
                });
    }
    execute(connection, sql, [&row](SQLite::Statement& statement) { bindEntity(statement, 1, row); });
}

} // namespace ondavia
