#include "guide/XMLTVDateFormatter.h"

#include <algorithm>

namespace ondavia {
namespace {

constexpr std::size_t commonLength = 20;
constexpr std::size_t blankIndex = 14;
constexpr std::size_t signIndex = 15;
/// The first whole year of the Gregorian calendar. ICU counts by the Julian one before.
constexpr int firstGregorianYear = 1583;
/// Bounds of the memory for uncommon texts.
constexpr std::size_t maximumKnown = 16'384;
constexpr std::size_t longestKnown = 48;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

int number(std::string_view digits) {
    int value = 0;
    for (const char digit : digits) {
        value = value * 10 + (digit - '0');
    }
    return value;
}

bool hasCommonShape(std::string_view text) {
    return text.size() == commonLength && std::ranges::all_of(text.substr(0, blankIndex), isDigit) &&
           text[blankIndex] == ' ' && (text[signIndex] == '+' || text[signIndex] == '-') &&
           std::ranges::all_of(text.substr(signIndex + 1), isDigit);
}

} // namespace

std::optional<Date> XMLTVDateFormatter::date(std::string_view text) {
    if (const auto common = commonForm(text)) {
        return common;
    }
    if (text.size() > longestKnown) {
        return byPattern(text);
    }
    if (m_known.size() >= maximumKnown) {
        m_known.clear();
    }
    const auto [known, isNew] = m_known.try_emplace(std::string(text));
    if (isNew) {
        known->second = byPattern(text);
    }
    return known->second;
}

std::optional<Date> XMLTVDateFormatter::byPattern(std::string_view text) {
    if (!m_pattern) {
        m_pattern.emplace("yyyyMMddHHmmss Z");
    }
    return m_pattern->date(text);
}

std::optional<Date> XMLTVDateFormatter::commonForm(std::string_view text) {
    if (!hasCommonShape(text)) {
        return std::nullopt;
    }
    const std::chrono::year_month_day day{
        std::chrono::year(number(text.substr(0, 4))),
        std::chrono::month(static_cast<unsigned>(number(text.substr(4, 2)))),
        std::chrono::day(static_cast<unsigned>(number(text.substr(6, 2))))};
    const std::chrono::hours hour(number(text.substr(8, 2)));
    const std::chrono::minutes minute(number(text.substr(10, 2)));
    const std::chrono::seconds second(number(text.substr(12, 2)));
    const std::chrono::hours offsetHours(number(text.substr(16, 2)));
    const std::chrono::minutes offsetMinutes(number(text.substr(18, 2)));
    const bool isPlain = int{day.year()} >= firstGregorianYear && day.ok() && hour.count() < 24 &&
                         minute.count() < 60 && second.count() < 60 && offsetHours.count() < 24 &&
                         offsetMinutes.count() < 60;
    if (!isPlain) {
        return std::nullopt;
    }
    const auto offset = offsetHours + offsetMinutes;
    return Date(std::chrono::sys_days(day) + hour + minute + second) -
           (text[signIndex] == '+' ? offset : -offset);
}

} // namespace ondavia
