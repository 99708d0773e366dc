#pragma once

#include "base/Date.h"

#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>
#include <unicode/utypes.h>

// For the sources of this room only: ICU's instants are milliseconds in a double.

namespace ondavia {

inline UDate toUDate(Date date) {
    return static_cast<double>(
        std::chrono::floor<std::chrono::milliseconds>(date).time_since_epoch().count());
}

/// Absent for an instant that `Date` cannot hold: some 290,000 years from now.
inline std::optional<Date> fromUDate(UDate milliseconds) {
    constexpr double limit = 9e15;
    if (!(std::abs(milliseconds) <= limit)) {
        return std::nullopt;
    }
    return Date(std::chrono::milliseconds(static_cast<std::int64_t>(milliseconds)));
}

/// ICU only fails here when it is not properly installed.
inline void requireSuccess(UErrorCode status, const char* what) {
    if (U_FAILURE(status)) {
        throw std::runtime_error(std::string("ICU: ") + what + ": " + u_errorName(status));
    }
}

} // namespace ondavia
