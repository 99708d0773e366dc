#pragma once

#include "store/EntityTraits.h"
#include "store/Query.h"

#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

/// A statement's text and the values of its parameters.
struct SqlText final {
    std::string sql;
    std::vector<QueryValue> values;
};

/// The name of the column that holds a row's key: SQLite's own row number, which every index ends with.
inline constexpr std::string_view keyColumn = "key";

[[nodiscard]] std::string quotedName(std::string_view name);

/// `"a", "b"` for all columns of T, the key not counted.
template<Entity T> std::string columnList() {
    std::string list;
    std::apply(
        [&](const auto&... column) { ((list += (list.empty() ? "" : ", ") + quotedName(column.name)), ...); },
        EntityTraits<T>::columns);
    return list;
}

/// " FROM table WHERE ..." with its values.
template<Entity T> SqlText fromClause(const Predicate<T>& where) {
    SqlText text{" FROM " + std::string(EntityTraits<T>::table), where.values()};
    if (!where.sql().empty()) {
        text.sql += " WHERE " + where.sql();
    }
    return text;
}

template<Entity T> SqlText selectText(std::string_view selected, const Query<T>& query) {
    SqlText text = fromClause(query.where);
    text.sql.insert(0, selected).insert(0, "SELECT ");
    if (!query.sort.empty()) {
        text.sql += " ORDER BY ";
        for (const auto& sort : query.sort) {
            text.sql += quotedName(sort.column) + (sort.isDescending ? " DESC, " : ", ");
        }
        text.sql += keyColumn;
    }
    if (query.limit || query.offset > 0) {
        text.sql += " LIMIT ? OFFSET ?";
        text.values.emplace_back(query.limit.value_or(-1));
        text.values.emplace_back(query.offset);
    }
    return text;
}

} // namespace ondavia
