#pragma once

#include "base/Date.h"

namespace ondavia {

class UserDefaults;

/// Something that is downloaded again when its time has come, by its two settings: when that last went
/// well (a date), and how many seconds may pass until the next time. Main thread.
struct RefreshSchedule final {
    /// Seconds where no interval above 0 is stored: 3 days.
    static constexpr double defaultInterval = 259200.0;

    const char* lastKey;
    const char* intervalKey;

    /// Whether more than the interval has passed. What never went well is due.
    [[nodiscard]] bool isDue(const UserDefaults& defaults, Date now) const;
    /// Whether more than `seconds` have passed, whatever interval is set.
    [[nodiscard]] bool hasPassed(double seconds, const UserDefaults& defaults, Date now) const;
};

inline constexpr RefreshSchedule catalogueSchedule{"ondavia_last_sync", "ondavia_sync_interval"};
inline constexpr RefreshSchedule guideSchedule{"ondavia_last_epg_load", "ondavia_epg_interval"};

} // namespace ondavia
