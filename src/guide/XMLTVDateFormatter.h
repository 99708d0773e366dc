#pragma once

#include "guide/DatePattern.h"

#include <string>
#include <unordered_map>

namespace ondavia {

/// Reads the dates of XMLTV documents, by the pattern "yyyyMMddHHmmss Z". One thread at a time.
class XMLTVDateFormatter final {
public:
    /// Absent when the text does not fit, as one without an offset. What ICU makes of it counts.
    [[nodiscard]] std::optional<Date> date(std::string_view text);

    /// The one form that guides use, without ICU: fourteen digits, a blank, a sign and four digits, of a
    /// year when the calendar was today's already. Absent for every other text, right or wrong.
    [[nodiscard]] static std::optional<Date> commonForm(std::string_view text);

    /// ICU's answer alone.
    [[nodiscard]] std::optional<Date> byPattern(std::string_view text);

private:
    /// Made for the first uncommon text: most documents have none, and ICU takes its time.
    std::optional<DatePattern> m_pattern;
    /// What ICU said of the last uncommon texts. It takes some 100 microseconds for each, and a guide that
    /// writes its dates in another way does so a million times, though in few different texts.
    std::unordered_map<std::string, std::optional<Date>> m_known;
};

} // namespace ondavia
