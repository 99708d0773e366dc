#include "guide/GuideWorkers.h"

#include <QPromise>

#include <thread>

namespace ondavia {

GuideWorkers::~GuideWorkers() {
    m_stop.request_stop();
    std::unique_lock lock(m_mutex);
    m_ended.wait(lock, [this] { return m_running == 0; });
}

QFuture<void> GuideWorkers::run(std::function<void(const std::stop_token&)> job) {
    const auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    // Counted before it can end, under the lock; a thread that cannot be had is not counted.
    const std::lock_guard starting(m_mutex);
    std::thread([this, promise, job = std::move(job)]() mutable {
        try {
            job(m_stop.get_token());
        } catch (...) {
            // Whatever a job raises belongs to whoever awaits it.
            promise->setException(std::current_exception());
        }
        // What the job holds goes before anybody hears of its end.
        job = nullptr;
        promise->finish();
        const std::lock_guard lock(m_mutex);
        --m_running;
        m_ended.notify_all();
    }).detach();
    ++m_running;
    return promise->future();
}

} // namespace ondavia
