#pragma once

#include "store/EntityTraits.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace ondavia {

/// A value as it stands in a column. Dates are microseconds since 1970, booleans 0 and 1.
using QueryValue = std::variant<std::int64_t, double, std::string>;

inline QueryValue toQueryValue(std::string_view text) {
    return std::string(text);
}
inline QueryValue toQueryValue(Date date) {
    return std::int64_t{date.time_since_epoch().count()};
}
template<class Number>
requires std::is_arithmetic_v<Number> QueryValue toQueryValue(Number number) {
    if constexpr (std::is_floating_point_v<Number>) {
        return double{number};
    } else {
        return static_cast<std::int64_t>(number);
    }
}

/// A condition on rows of T. A default-made one holds for every row. Values are kept apart from the SQL
/// text, so that equal conditions share one prepared statement and no value can be taken for SQL.
template<Entity T> class Predicate final {
public:
    Predicate() = default;
    Predicate(std::string sql, std::vector<QueryValue> values)
        : m_sql(std::move(sql))
        , m_values(std::move(values)) {}

    /// Empty for the condition that holds for every row.
    [[nodiscard]] const std::string& sql() const { return m_sql; }
    [[nodiscard]] const std::vector<QueryValue>& values() const { return m_values; }

    friend Predicate operator&&(Predicate left, const Predicate& right) {
        if (left.m_sql.empty() || right.m_sql.empty()) {
            return left.m_sql.empty() ? right : left;
        }
        return joined(std::move(left), " AND ", right);
    }
    friend Predicate operator||(Predicate left, const Predicate& right) {
        if (left.m_sql.empty() || right.m_sql.empty()) {
            return {};
        }
        return joined(std::move(left), " OR ", right);
    }
    friend Predicate operator!(Predicate condition) {
        condition.m_sql = condition.m_sql.empty() ? "0" : "NOT (" + condition.m_sql + ")";
        return condition;
    }

private:
    static Predicate joined(Predicate left, std::string_view word, const Predicate& right) {
        left.m_sql.insert(0, "(").append(word).append(right.m_sql).append(")");
        left.m_values.insert(left.m_values.end(), right.m_values.begin(), right.m_values.end());
        return left;
    }

    std::string m_sql;
    std::vector<QueryValue> m_values;
};

/// What is longer than `longProgram`, in the words of the index over it.
[[nodiscard]] inline Predicate<EPGProgram> isLongProgram() {
    return {std::string(longProgramCondition), {}};
}

template<class Member> struct PlainMember { using type = Member; };
template<class Member> struct PlainMember<std::optional<Member>> { using type = Member; };

/// A member of T inside a condition, made by `field`. Texts compare byte by byte. An absent member is
/// unequal to every value, and neither before nor after any.
template<Entity T, class Member> class Field final {
    using Plain = typename PlainMember<Member>::type;
    /// What a value is given as: texts without a copy until they are kept.
    using Value = std::conditional_t<std::is_same_v<Plain, std::string>, std::string_view, Plain>;

public:
    explicit Field(Member T::*member)
        : m_name(columnName(member)) {}

    [[nodiscard]] Predicate<T> operator==(Value value) const { return compare(" = ?", value); }
    [[nodiscard]] Predicate<T> operator!=(Value value) const { return compare(" IS NOT ?", value); }
    [[nodiscard]] Predicate<T> operator<(Value value) const { return compare(" < ?", value); }
    [[nodiscard]] Predicate<T> operator<=(Value value) const { return compare(" <= ?", value); }
    [[nodiscard]] Predicate<T> operator>(Value value) const { return compare(" > ?", value); }
    [[nodiscard]] Predicate<T> operator>=(Value value) const { return compare(" >= ?", value); }

    [[nodiscard]] Predicate<T> isNull() const { return {quoted() + " IS NULL", {}}; }
    [[nodiscard]] Predicate<T> isNotNull() const { return {quoted() + " IS NOT NULL", {}}; }

    /// Whether the member is one of `values`; never, if there are none.
    [[nodiscard]] Predicate<T> isOneOf(const std::vector<Plain>& values) const {
        std::string sql = quoted() + " IN (";
        std::vector<QueryValue> bound;
        bound.reserve(values.size());
        for (const auto& value : values) {
            sql += bound.empty() ? "?" : ", ?";
            bound.push_back(toQueryValue(value));
        }
        return {sql + ")", std::move(bound)};
    }

    /// Whether the text member holds `part`, byte for byte: case and accents count, and no character of
    /// `part` is special.
    [[nodiscard]] Predicate<T>
    contains(std::string_view part) const requires std::is_same_v<Plain, std::string> {
        return {"instr(" + quoted() + ", ?) > 0", {toQueryValue(part)}};
    }

private:
    [[nodiscard]] std::string quoted() const { return "\"" + std::string(m_name) + "\""; }
    [[nodiscard]] Predicate<T> compare(std::string_view operation, Value value) const {
        return {quoted().append(operation), {toQueryValue(value)}};
    }

    std::string_view m_name;
};

/// `field(&Channel::type) == "live" && field(&Channel::num) >= 3`
template<Entity T, class Member> [[nodiscard]] Field<T, Member> field(Member T::*member) {
    return Field<T, Member>(member);
}

/// One key of an order. Texts are ordered by their bytes; absent members come first ascending, last
/// descending.
template<Entity T> struct Sort final {
    std::string_view column;
    bool isDescending = false;
};
template<Entity T, class Member> [[nodiscard]] Sort<T> ascending(Member T::*member) {
    return {columnName(member), false};
}
template<Entity T, class Member> [[nodiscard]] Sort<T> descending(Member T::*member) {
    return {columnName(member), true};
}

/// Which rows, in which order. Rows that are equal under the sort keys come in the order in which they
/// were first inserted; without a sort key the order is unspecified.
template<Entity T> struct Query final {
    Predicate<T> where = {};
    std::vector<Sort<T>> sort = {};
    std::optional<std::int64_t> limit = {};
    /// Rows to leave out at the beginning.
    std::int64_t offset = 0;
};

} // namespace ondavia
