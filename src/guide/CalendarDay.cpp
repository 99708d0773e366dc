#include "guide/CalendarDay.h"

#include "guide/IcuDates.h"

#include <memory>
#include <unicode/gregocal.h>

namespace ondavia {
namespace {

UDate startOfDay(icu::Calendar& calendar, UErrorCode& status) {
    for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND}) {
        calendar.set(field, 0);
    }
    return calendar.getTime(status);
}

} // namespace

CalendarDay calendarDayOf(Date date) {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar(icu::Locale("en_US_POSIX"), status);
    // A midnight that comes twice begins the day the first time; one that is skipped leaves the moment of
    // the change.
    calendar.setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
    calendar.setTime(toUDate(date), status);
    const UDate begin = startOfDay(calendar, status);
    calendar.add(UCAL_DATE, 1, status);
    const UDate end = startOfDay(calendar, status);
    requireSuccess(status, "the calendar");
    return {*fromUDate(begin), *fromUDate(end)};
}

} // namespace ondavia
