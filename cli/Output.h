#pragma once

#include "base/Date.h"
#include "cli/Arguments.h"
#include "store/EntityTraits.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ondavia::cli {

/// A value to print; the first alternative stands for an absent one.
using Value =
    std::variant<std::monostate, bool, std::int64_t, double, std::string, Date, std::vector<std::string>>;

template<class T> Value toValue(const std::optional<T>& value) {
    return value ? Value(*value) : Value();
}
template<class T> Value toValue(const T& value) {
    return Value(value);
}

struct Field final {
    std::string name;
    Value value;
};
using Record = std::vector<Field>;

/// "epg_channel_id" as "epgChannelId".
[[nodiscard]] std::string memberName(std::string_view columnName);

/// A stored entity under the names of its members, in their order.
template<Entity T> Record recordOf(const T& entity) {
    Record record;
    std::apply(
        [&](const auto&... column) {
            (record.push_back({memberName(column.name), toValue(entity.*column.member)}), ...);
        },
        EntityTraits<T>::columns);
    return record;
}

/// "2026-03-01T21:05:00Z".
[[nodiscard]] std::string isoText(Date date);

/// Standard output, which carries nothing but data: JSON, one object a line, or columns for people. A value
/// that holds the account is masked in both. Main thread.
class Output final {
public:
    explicit Output(OutputFormat format)
        : m_format(format) {}

    /// The password that no value may show.
    void setPassword(std::string password) { m_password = std::move(password); }

    /// One record as an object, or as a line for each value that is there.
    void print(const Record& record);
    /// One record as an object, or as one line with its values at least so many columns wide, the last one
    /// as wide as it is. Reaches the reader at once.
    void printLine(const Record& record, const std::vector<std::size_t>& widths);
    /// The one place where an address is printed with the account in it.
    void printURL(const std::string& id, const std::string& url);
    /// Has everything written. Raises CommandError where that failed.
    void finish();

    [[nodiscard]] OutputFormat format() const { return m_format; }

    /// Many records: an object each, or the named columns as a table.
    class Table final {
    public:
        Table(Output& output, std::vector<std::string> columns)
            : m_output(output)
            , m_columns(std::move(columns)) {}
        void add(const Record& record);
        /// After the last row.
        void finish();

    private:
        Output& m_output;
        std::vector<std::string> m_columns;
        std::vector<std::vector<std::string>> m_rows;
    };

private:
    [[nodiscard]] std::string text(const Field& field) const;
    [[nodiscard]] std::string masked(const std::string& name, const std::string& text) const;
    void writeJson(const Record& record) const;
    void writeCells(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) const;

    OutputFormat m_format;
    std::string m_password;
};

} // namespace ondavia::cli
