#include "screens/shell/ToastTimer.h"

#include "screens/shell/ContentViewModel.h"

namespace ondavia {

ToastTimer::ToastTimer(ContentViewModel& content, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_content(content)
    , m_scheduler(scheduler) {
    connect(&content, &ContentViewModel::toastChanged, this, &ToastTimer::toastChanged);
    toastChanged();
}

void ToastTimer::toastChanged() {
    const bool isPresent = m_content.toastMessage().isValid();
    if (isPresent && !m_isShown) {
        m_timers.push_back(m_scheduler.once(seconds, [this] { timeIsOver(); }));
    }
    m_isShown = isPresent;
}

void ToastTimer::timeIsOver() {
    // All wait equally long, so the oldest is the one that fired. It lives until its call has returned.
    const std::unique_ptr<ScheduledTimer> fired = std::move(m_timers.front());
    m_timers.pop_front();
    m_content.dismissToast();
}

} // namespace ondavia
