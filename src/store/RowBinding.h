#pragma once

#include "store/EntityTraits.h"
#include "store/Query.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

#include <optional>
#include <string>
#include <string_view>

namespace ondavia {

/// The number of columns that hold T, the row's key not counted.
template<Entity T>
inline constexpr int columnCount = static_cast<int>(std::tuple_size_v<decltype(EntityTraits<T>::columns)>);

template<class T> struct IsOptional : std::false_type {};
template<class T> struct IsOptional<std::optional<T>> : std::true_type {};

/// Binds one member. Texts are not copied: `value` outlives the statement's next step.
template<class Member> void bindMember(SQLite::Statement& statement, int index, const Member& value) {
    if constexpr (IsOptional<Member>::value) {
        value ? bindMember(statement, index, *value) : statement.bind(index);
    } else if constexpr (std::is_same_v<Member, std::string>) {
        statement.bindNoCopy(index, value);
    } else if constexpr (std::is_same_v<Member, Date>) {
        statement.bind(index, std::int64_t{value.time_since_epoch().count()});
    } else if constexpr (std::is_same_v<Member, bool>) {
        statement.bind(index, value ? 1 : 0);
    } else {
        statement.bind(index, value);
    }
}

/// Reads one member from its column in the present row.
template<class Member> Member readMember(const SQLite::Column& column) {
    if constexpr (IsOptional<Member>::value) {
        return column.isNull() ? Member{} : Member{readMember<typename Member::value_type>(column)};
    } else if constexpr (std::is_same_v<Member, std::string>) {
        return column.getString();
    } else if constexpr (std::is_same_v<Member, Date>) {
        return Date{std::chrono::microseconds{column.getInt64()}};
    } else if constexpr (std::is_same_v<Member, bool>) {
        return column.getInt64() != 0;
    } else if constexpr (std::is_same_v<Member, double>) {
        return column.getDouble();
    } else {
        return column.getInt64();
    }
}

/// Binds all members of `row` in column order, the first at `firstIndex`.
template<Entity T> void bindEntity(SQLite::Statement& statement, int firstIndex, const T& row) {
    std::apply(
        [&](const auto&... column) {
            int index = firstIndex;
            (bindMember(statement, index++, row.*column.member), ...);
        },
        EntityTraits<T>::columns);
}

/// The entity of the statement's present row, whose columns begin at `firstIndex`.
template<Entity T> T readEntity(SQLite::Statement& statement, int firstIndex) {
    T row;
    std::apply(
        [&](const auto&... column) {
            int index = firstIndex;
            const auto read = [&](auto& member) {
                member = readMember<std::remove_cvref_t<decltype(member)>>(statement.getColumn(index++));
            };
            (read(row.*column.member), ...);
        },
        EntityTraits<T>::columns);
    return row;
}

} // namespace ondavia
