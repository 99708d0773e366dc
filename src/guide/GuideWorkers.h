#pragma once

#include <QFuture>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>

namespace ondavia {

/// Threads for the guide's long work. A load lasts as long as its download and would keep a thread of the
/// shared pool from everybody else. Made before the first load and destroyed before the store: the
/// destructor tells the jobs to stop and waits for them. Main thread.
class GuideWorkers final {
public:
    GuideWorkers() = default;
    ~GuideWorkers();
    GuideWorkers(const GuideWorkers&) = delete;
    GuideWorkers& operator=(const GuideWorkers&) = delete;

    /// Runs `job` on a thread of its own. The future raises what the job raises.
    [[nodiscard]] QFuture<void> run(std::function<void(const std::stop_token&)> job);

private:
    std::stop_source m_stop;
    std::mutex m_mutex;
    std::condition_variable m_ended;
    int m_running = 0;
};

} // namespace ondavia
