#include "support/ManualScheduler.h"

#include <QCoreApplication>

#include <algorithm>
#include <coroutine>
#include <optional>
#include <utility>

namespace ondavia::testing {

/// One suspended coroutine, resumed once: by the clock, by a stop, or by the scheduler's end.
struct ManualScheduler::Sleep final {
    void end(bool wasWhole) {
        if (const auto waiting = std::exchange(handle, nullptr)) {
            slept = wasWhole;
            waiting.resume();
        }
    }

    std::coroutine_handle<> handle = nullptr;
    bool slept = false;
};

/// One thing that fires at a time. `work` is empty once it was invalidated or has fired its last.
struct ManualScheduler::Entry final {
    Time due;
    std::optional<Time> period;
    std::uint64_t number;
    std::function<void()> work;
    std::shared_ptr<Sleep> sleep = nullptr;
};

class ManualScheduler::Timer final : public ScheduledTimer {
public:
    explicit Timer(std::shared_ptr<Entry> entry)
        : m_entry(std::move(entry)) {}
    ~Timer() override { m_entry->work = nullptr; }
    void invalidate() override { m_entry->work = nullptr; }

private:
    std::shared_ptr<Entry> m_entry;
};

ManualScheduler::ManualScheduler()
    : m_mainThread(std::make_unique<QObject>()) {}

ManualScheduler::~ManualScheduler() {
    // A coroutine that is never resumed would never be freed.
    for (const auto& entry : std::exchange(m_entries, {})) {
        if (entry->sleep) {
            entry->sleep->end(false);
        }
    }
}

std::shared_ptr<ManualScheduler::Entry> ManualScheduler::schedule(double seconds, bool repeats,
                                                                  std::function<void()> work) {
    const auto delay = std::chrono::round<Time>(std::chrono::duration<double>(seconds));
    const auto period = repeats ? std::optional(delay) : std::nullopt;
    m_entries.push_back(
        std::make_shared<Entry>(Entry{m_now + delay, period, m_nextNumber++, std::move(work)}));
    return m_entries.back();
}

std::unique_ptr<ScheduledTimer> ManualScheduler::repeating(double seconds, std::function<void()> tick) {
    return std::make_unique<Timer>(schedule(seconds, true, std::move(tick)));
}

std::unique_ptr<ScheduledTimer> ManualScheduler::once(double seconds, std::function<void()> work) {
    return std::make_unique<Timer>(schedule(seconds, false, std::move(work)));
}

QCoro::Task<bool> ManualScheduler::sleep(double seconds, std::stop_token stop) {
    struct Suspension final {
        [[nodiscard]] bool await_ready() const { return false; }
        void await_suspend(std::coroutine_handle<> handle) { sleep.handle = handle; }
        [[nodiscard]] bool await_resume() const { return sleep.slept; }
        Sleep& sleep;
    };
    m_requestedSleeps.push_back(seconds);
    const auto sleep = std::make_shared<Sleep>();
    const auto entry = schedule(seconds, false, [sleep] { sleep->end(true); });
    entry->sleep = sleep;
    // Ends in a later turn: whoever requests the stop must not find itself inside the sleeper.
    const std::stop_callback onStop(stop, [this, entry, sleep] {
        onMainThread([entry, sleep] {
            entry->work = nullptr;
            sleep->end(false);
        });
    });
    // A name of its own: GCC 12 destroys a braced temporary twice when it is awaited in place.
    Suspension suspension{*sleep};
    co_return co_await suspension;
}

void ManualScheduler::onMainThread(std::function<void()> work) {
    QMetaObject::invokeMethod(m_mainThread.get(), std::move(work), Qt::QueuedConnection);
}

void ManualScheduler::advance(double seconds) {
    const Time end = m_now + std::chrono::round<Time>(std::chrono::duration<double>(seconds));
    runPending();
    while (const auto entry = takeDue(end)) {
        m_now = std::max(m_now, entry->due);
        fire(entry);
        runPending();
    }
    m_now = end;
}

void ManualScheduler::runPending() {
    QCoreApplication::sendPostedEvents(m_mainThread.get(), QEvent::MetaCall);
}

std::shared_ptr<ManualScheduler::Entry> ManualScheduler::takeDue(Time limit) {
    std::erase_if(m_entries, [](const auto& entry) { return !entry->work; });
    const auto first = std::ranges::min_element(
        m_entries, {}, [](const auto& entry) { return std::pair(entry->due, entry->number); });
    return first != m_entries.end() && (*first)->due <= limit ? *first : nullptr;
}

void ManualScheduler::fire(const std::shared_ptr<Entry>& entry) {
    // The work may invalidate its own timer, so it runs from a copy.
    const auto work = entry->period ? entry->work : std::exchange(entry->work, nullptr);
    if (entry->period) {
        entry->due += *entry->period;
    }
    work();
}

double ManualScheduler::now() const {
    return std::chrono::duration<double>(m_now).count();
}

int ManualScheduler::activeTimers() const {
    return static_cast<int>(std::ranges::count_if(
        m_entries, [](const auto& entry) { return entry->work != nullptr && !entry->sleep; }));
}

int ManualScheduler::activeSleeps() const {
    return static_cast<int>(std::ranges::count_if(
        m_entries, [](const auto& entry) { return entry->work != nullptr && entry->sleep; }));
}

} // namespace ondavia::testing
