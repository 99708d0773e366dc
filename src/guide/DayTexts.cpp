#include "guide/DayTexts.h"

#include "guide/CalendarDay.h"
#include "guide/IcuDates.h"

#include <unicode/smpdtfmt.h>

namespace ondavia {
namespace {

/// Days are named in the language of the interface's own texts, whatever the user's is.
const icu::Locale& dayLocale() {
    static const icu::Locale locale("pt", "PT");
    return locale;
}

icu::SimpleDateFormat makeFormatter(const char* pattern, const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat formatter(icu::UnicodeString::fromUTF8(pattern), locale, status);
    requireSuccess(status, pattern);
    return formatter;
}

icu::UnicodeString formatted(const icu::SimpleDateFormat& formatter, Date date) {
    icu::UnicodeString text;
    formatter.format(toUDate(date), text);
    return text;
}

} // namespace

struct DayTexts::Formatters final {
    icu::SimpleDateFormat clock = makeFormatter("HH:mm", icu::Locale::getDefault());
    icu::SimpleDateFormat day = makeFormatter("EEEE, dd/MM", dayLocale());
};

DayTexts::DayTexts()
    : m_formatters(std::make_unique<const Formatters>()) {}

DayTexts::~DayTexts() = default;

std::string DayTexts::clockText(Date time) const {
    std::string text;
    formatted(m_formatters->clock, time).toUTF8String(text);
    return text;
}

std::string DayTexts::dayText(Date day, Date now) const {
    std::string text = calendarDayOf(day).begin == calendarDayOf(now).begin ? "Hoje — " : "";
    formatted(m_formatters->day, day).toTitle(nullptr, dayLocale()).toUTF8String(text);
    return text;
}

} // namespace ondavia
