#pragma once

#include "base/Date.h"

#include <vector>

namespace ondavia {

/// One day of the calendar in the device's time zone: from its first moment to the next day's.
struct CalendarDay final {
    Date begin;
    Date end;
};

/// The day that `date` lies in. It has 23 or 25 hours where the clock is put forward or back. Any thread.
[[nodiscard]] CalendarDay calendarDayOf(Date date);

/// The first moments of the day that `date` lies in and of `count` days before it, newest first. Any thread.
[[nodiscard]] std::vector<Date> calendarDaysBack(Date date, int count);

} // namespace ondavia
