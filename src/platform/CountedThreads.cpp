#include "platform/CountedThreads.h"

#include <thread>

namespace ondavia {

CountedThreads::CountedThreads() = default;

CountedThreads::~CountedThreads() {
    requestStop();
    std::unique_lock lock(m_ledger->mutex);
    m_ledger->allEnded.wait(lock, [this] { return m_ledger->count == 0; });
}

std::shared_ptr<void> CountedThreads::announce() {
    {
        const std::lock_guard lock(m_ledger->mutex);
        ++m_ledger->count;
    }
    return {nullptr, [ledger = m_ledger](void*) {
                const std::lock_guard lock(ledger->mutex);
                --ledger->count;
                ledger->allEnded.notify_all();
            }};
}

void CountedThreads::start(std::function<void(const std::stop_token&)> work) {
    std::thread([place = announce(), stop = m_stop.get_token(), work = std::move(work)]() mutable {
        // Before any other object of the thread, and so gone after them: libcurl's handle, which closes
        // its connection, is one.
        thread_local std::shared_ptr<void> counted;
        counted = std::move(place);
        work(stop);
        work = nullptr;
    }).detach();
}

bool CountedThreads::wait(std::chrono::milliseconds timeout) const {
    std::unique_lock lock(m_ledger->mutex);
    return m_ledger->allEnded.wait_for(lock, timeout, [this] { return m_ledger->count == 0; });
}

} // namespace ondavia
