#pragma once

#include "platform/Scheduler.h"

#include <QObject>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace ondavia::testing {

/// A scheduler whose clock only moves when the test says so.
///
/// Timers and sleeps fire inside `advance`, in the order of their times and, at one time, in the order in
/// which they were asked for. Work for the main thread goes through the event loop as it does in the
/// application; `advance` runs what is posted before, between and after the steps, so that a task and
/// the timer that it starts meet in one call. Going away ends every sleep with false.
class ManualScheduler final : public Scheduler {
public:
    ManualScheduler();
    ~ManualScheduler() override;
    ManualScheduler(const ManualScheduler&) = delete;
    ManualScheduler& operator=(const ManualScheduler&) = delete;

    [[nodiscard]] std::unique_ptr<ScheduledTimer> repeating(double seconds,
                                                            std::function<void()> tick) override;
    [[nodiscard]] std::unique_ptr<ScheduledTimer> once(double seconds, std::function<void()> work) override;
    QCoro::Task<bool> sleep(double seconds, std::stop_token stop = {}) override;
    void onMainThread(std::function<void()> work) override;

    /// Moves the clock on. Main thread, not from within a tick.
    void advance(double seconds);
    /// Runs what was given to `onMainThread` so far, and what that gave to it.
    void runPending();

    /// Seconds that the clock has moved since the start.
    [[nodiscard]] double now() const;
    /// Timers that would still fire, repeating and single ones, without the sleeps.
    [[nodiscard]] int activeTimers() const;
    /// Sleeps that have not ended.
    [[nodiscard]] int activeSleeps() const;
    /// The length of every sleep asked for, in seconds, in order.
    [[nodiscard]] const std::vector<double>& requestedSleeps() const { return m_requestedSleeps; }

private:
    struct Sleep;
    struct Entry;
    class Timer;
    using Time = std::chrono::microseconds;

    std::shared_ptr<Entry> schedule(double seconds, bool repeats, std::function<void()> work);
    [[nodiscard]] std::shared_ptr<Entry> takeDue(Time limit);
    void fire(const std::shared_ptr<Entry>& entry);

    Time m_now{0};
    std::uint64_t m_nextNumber = 0;
    std::vector<std::shared_ptr<Entry>> m_entries;
    std::vector<double> m_requestedSleeps;
    std::unique_ptr<QObject> m_mainThread;
};

} // namespace ondavia::testing
