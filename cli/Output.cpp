#include "cli/Output.h"

#include "base/Redaction.h"
#include "base/VisibleText.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>

namespace ondavia::cli {
namespace {

template<class... Visitors> struct Overloaded : Visitors... { using Visitors::operator()...; };
template<class... Visitors> Overloaded(Visitors...) -> Overloaded<Visitors...>;

QString qtText(const std::string& text) {
    return QString::fromStdString(text);
}

/// Characters as a terminal counts them, near enough for Latin scripts.
std::size_t displayWidth(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

std::string decimalText(double number) {
    char digits[64];
    std::snprintf(digits, sizeof digits, "%.1f", number);
    return digits;
}

std::string joined(const std::vector<std::string>& texts) {
    std::string result;
    for (const auto& text : texts) {
        result += (result.empty() ? "" : ", ") + text;
    }
    return result;
}

void writeObject(const QJsonObject& object) {
    writeLine(stdout, visibleJson(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString()));
}

} // namespace

std::string memberName(std::string_view columnName) {
    std::string name;
    for (std::size_t at = 0; at < columnName.size(); ++at) {
        const bool startsWord = columnName[at] == '_' && at + 1 < columnName.size();
        name += startsWord ? static_cast<char>(columnName[++at] - 'a' + 'A') : columnName[at];
    }
    return name;
}

std::string isoText(Date date) {
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(date).time_since_epoch();
    const auto time = QDateTime::fromMSecsSinceEpoch(milliseconds.count(), Qt::UTC);
    const std::string text = time.toString(Qt::ISODate).toStdString();
    // Years of five digits have no such text.
    return text.empty() ? std::to_string(milliseconds.count() / 1000) : text;
}

/// Pictures and the like keep their address unless the account stands in it; a stream's never does.
std::string Output::masked(const std::string& name, const std::string& text) const {
    const bool holdsQuery = text.find("password=") != std::string::npos;
    return name == "url" || holdsQuery || standsIn(text, m_password) ? maskSecrets(text) : text;
}

std::string Output::text(const Field& field) const {
    return std::visit(Overloaded{
                          [](std::monostate) { return std::string(); },
                          [](bool flag) { return std::string(flag ? "yes" : "no"); },
                          [](std::int64_t number) { return std::to_string(number); },
                          [](double number) { return decimalText(number); },
                          [&](const std::string& text) { return visibleText(masked(field.name, text)); },
                          [](Date date) { return isoText(date); },
                          [&](const std::vector<std::string>& texts) {
                              return visibleText(masked(field.name, joined(texts)));
                          },
                      },
                      field.value);
}

void Output::writeJson(const Record& record) const {
    QJsonObject object;
    for (const auto& field : record) {
        const auto shown = [&](const std::string& plain) { return qtText(masked(field.name, plain)); };
        const auto json =
            std::visit(Overloaded{
                           [](std::monostate) { return QJsonValue(QJsonValue::Undefined); },
                           [](bool flag) { return QJsonValue(flag); },
                           [](std::int64_t number) { return QJsonValue(static_cast<qint64>(number)); },
                           [](double number) { return QJsonValue(number); },
                           [&](const std::string& value) { return QJsonValue(shown(value)); },
                           [](Date date) { return QJsonValue(qtText(isoText(date))); },
                           [&](const std::vector<std::string>& values) {
                               QJsonArray array;
                               for (const auto& element : values) {
                                   array.append(shown(element));
                               }
                               return QJsonValue(array);
                           },
                       },
                       field.value);
        if (!json.isUndefined()) {
            object.insert(qtText(field.name), json);
        }
    }
    writeObject(object);
}

void Output::writeCells(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) const {
    std::string line;
    for (std::size_t column = 0; column < cells.size(); ++column) {
        line += cells[column];
        if (column + 1 < cells.size()) {
            const std::size_t width = column < widths.size() ? widths[column] : 0;
            const std::size_t taken = displayWidth(cells[column]);
            line.append((width > taken ? width - taken : 0) + 2, ' ');
        }
    }
    line.erase(line.find_last_not_of(' ') + 1);
    writeLine(stdout, line);
}

void Output::print(const Record& record) {
    if (m_format == OutputFormat::Json) {
        writeJson(record);
        return;
    }
    std::size_t width = 0;
    for (const auto& field : record) {
        width = std::max(width, displayWidth(field.name));
    }
    for (const auto& field : record) {
        if (!std::holds_alternative<std::monostate>(field.value)) {
            writeCells({field.name, text(field)}, {width});
        }
    }
}

void Output::printLine(const Record& record, const std::vector<std::size_t>& widths) {
    if (m_format == OutputFormat::Json) {
        writeJson(record);
    } else {
        std::vector<std::string> cells;
        for (const auto& field : record) {
            cells.push_back(text(field));
        }
        writeCells(cells, widths);
    }
    std::fflush(stdout);
}

void Output::printURL(const std::string& id, const std::string& url) {
    if (m_format == OutputFormat::Json) {
        writeObject({{QStringLiteral("id"), qtText(id)}, {QStringLiteral("url"), qtText(url)}});
    } else {
        writeLine(stdout, url);
    }
}

void Output::finish() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        throw CommandError("standard output cannot be written");
    }
}

void Output::Table::add(const Record& record) {
    if (m_output.m_format == OutputFormat::Json) {
        m_output.writeJson(record);
        return;
    }
    auto& cells = m_rows.emplace_back();
    for (const auto& column : m_columns) {
        const auto field = std::ranges::find(record, column, &Field::name);
        cells.push_back(field == record.end() ? std::string() : m_output.text(*field));
    }
}

void Output::Table::finish() {
    std::vector<std::size_t> widths(m_columns.size(), 0);
    for (const auto& cells : m_rows) {
        for (std::size_t column = 0; column < cells.size(); ++column) {
            widths[column] = std::max(widths[column], displayWidth(cells[column]));
        }
    }
    for (const auto& cells : m_rows) {
        m_output.writeCells(cells, widths);
    }
}

} // namespace ondavia::cli
