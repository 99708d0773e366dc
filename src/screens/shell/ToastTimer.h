#pragma once

#include "platform/Scheduler.h"

#include <QObject>

#include <list>
#include <memory>

namespace ondavia {

class ContentViewModel;

/// Takes a toast away 6.0 seconds after it appeared. Another text that comes meanwhile goes away with the
/// first one's time; nothing cancels or restarts it. Main thread.
class ToastTimer final : public QObject {
    Q_OBJECT

public:
    static constexpr double seconds = 6.0;

    /// Both must outlive the object.
    ToastTimer(ContentViewModel& content, Scheduler& scheduler, QObject* parent = nullptr);

private:
    void toastChanged();
    void timeIsOver();

    ContentViewModel& m_content;
    Scheduler& m_scheduler;
    /// More than one only when a toast was tapped away and another one followed at once.
    std::list<std::unique_ptr<ScheduledTimer>> m_timers;
    bool m_isShown = false;
};

} // namespace ondavia
