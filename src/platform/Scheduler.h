#pragma once

#include <functional>
#include <memory>
#include <qcoro/qcorotask.h>
#include <stop_token>

namespace ondavia {

/// A timer that runs until it is destroyed or invalidated.
class ScheduledTimer {
public:
    virtual ~ScheduledTimer() = default;
    virtual void invalidate() = 0;
};

/// Time on the main thread of control: what waits, waits here, so that a test can move the clock.
/// All calls and callbacks on the main thread.
class Scheduler {
public:
    virtual ~Scheduler() = default;
    /// Calls `tick` every `seconds` until the timer is invalidated or destroyed.
    [[nodiscard]] virtual std::unique_ptr<ScheduledTimer> repeating(double seconds,
                                                                    std::function<void()> tick) = 0;
    /// Calls `work` once after `seconds` unless the timer is invalidated or destroyed before.
    [[nodiscard]] virtual std::unique_ptr<ScheduledTimer> once(double seconds,
                                                               std::function<void()> work) = 0;
    /// Resumes after `seconds` with true, or with false as soon as a stop is requested.
    virtual QCoro::Task<bool> sleep(double seconds, std::stop_token stop = {}) = 0;
    /// Runs `work` in a later turn of the main loop; may be called from any thread.
    virtual void onMainThread(std::function<void()> work) = 0;
};

} // namespace ondavia
