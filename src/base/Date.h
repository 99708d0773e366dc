#pragma once

#include <chrono>

namespace ondavia {

/// An absolute instant, in microseconds since 1970-01-01 00:00 UTC. Local days and clock texts are
/// made at the edge only.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// The present instant of the system's clock.
inline Date currentDate() {
    return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
}

/// Seconds since 1970-01-01 00:00 UTC, with their fraction.
inline double secondsSince1970(Date date) {
    return std::chrono::duration<double>(date.time_since_epoch()).count();
}

} // namespace ondavia
