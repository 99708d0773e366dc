#pragma once

#include "platform/PoolWork.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>

namespace ondavia {

/// Threads that are started, told to stop and counted, for work that lasts as long as a server or a library
/// likes and would keep a thread of the shared pool from everybody else. Any thread.
///
/// Whoever cannot wait for all of them leaves some behind: the count outlives this object for those, and
/// whatever else they touch must too.
class CountedThreads final {
public:
    CountedThreads();
    /// Tells the work to stop and waits until the last thread has ended.
    ~CountedThreads();
    CountedThreads(const CountedThreads&) = delete;
    CountedThreads& operator=(const CountedThreads&) = delete;

    /// Runs `work`, which must not raise, on a thread of its own. Raises std::system_error where none can be
    /// had; nothing is counted then.
    void start(std::function<void(const std::stop_token&)> work);

    /// The same with a future, which holds the result of `work` or raises what it threw. What `work` holds
    /// is gone before the future is finished.
    template<class Work>
    [[nodiscard]] QFuture<std::invoke_result_t<Work&, const std::stop_token&>> run(Work work) {
        using Result = std::invoke_result_t<Work&, const std::stop_token&>;
        const auto kept = std::make_shared<PromisedWork<Result, Work>>(std::move(work));
        start([kept](const std::stop_token& stop) { kept->run(stop); });
        return kept->future();
    }

    /// Counts like a thread as long as it is held: for work that is on its way to its start.
    [[nodiscard]] std::shared_ptr<void> announce();

    /// Tells all work to stop, and what starts later too.
    void requestStop() { m_stop.request_stop(); }
    /// Waits until nothing is counted; false when something still is after `timeout`.
    bool wait(std::chrono::milliseconds timeout) const;

private:
    struct Ledger final {
        std::mutex mutex;
        std::condition_variable allEnded;
        int count = 0;
    };

    std::shared_ptr<Ledger> m_ledger = std::make_shared<Ledger>();
    std::stop_source m_stop;
};

} // namespace ondavia
