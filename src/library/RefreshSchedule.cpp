#include "library/RefreshSchedule.h"

#include "platform/UserDefaults.h"

namespace ondavia {
namespace {

/// The time of what never was: the first day of year 1.
constexpr Date distantPast{std::chrono::seconds(-62135769600)};

} // namespace

bool RefreshSchedule::isDue(const UserDefaults& defaults, Date now) const {
    const double stored = defaults.doubleForKey(intervalKey);
    return hasPassed(stored > 0 ? stored : defaultInterval, defaults, now);
}

bool RefreshSchedule::hasPassed(double seconds, const UserDefaults& defaults, Date now) const {
    const std::chrono::duration<double> interval(seconds);
    return now - defaults.dateForKey(lastKey).value_or(distantPast) > interval;
}

} // namespace ondavia
