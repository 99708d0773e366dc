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

icu::GregorianCalendar makeCalendar(Date date, UErrorCode& status) {
    icu::GregorianCalendar calendar(icu::Locale("en_US_POSIX"), status);
    // A midnight that comes twice begins the day the first time; one that is skipped leaves the moment of
    // the change.
    calendar.setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
    calendar.setTime(toUDate(date), status);
    return calendar;
}

} // namespace

CalendarDay calendarDayOf(Date date) {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar = makeCalendar(date, status);
    const UDate begin = startOfDay(calendar, status);
    calendar.add(UCAL_DATE, 1, status);
    const UDate end = startOfDay(calendar, status);
    requireSuccess(status, "the calendar");
    return {*fromUDate(begin), *fromUDate(end)};
}

std::vector<Date> calendarDaysBack(Date date, int count) {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar = makeCalendar(date, status);
    std::vector<Date> days;
    for (int day = 0; day <= count; ++day) {
        days.push_back(*fromUDate(startOfDay(calendar, status)));
        // From noon to noon: no clock is put forward or back there.
        calendar.set(UCAL_HOUR_OF_DAY, 12);
        calendar.add(UCAL_DATE, -1, status);
    }
    requireSuccess(status, "the calendar");
    return days;
}

} // namespace ondavia
