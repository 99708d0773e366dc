#pragma once

#include "platform/Scheduler.h"

#include <QObject>
#include <qqmlregistration.h>

#include <functional>
#include <memory>

namespace ondavia {

class AppState;

/// The way out of a load that keeps the user waiting: offered once it has lasted 5 seconds. Main thread.
class LoadingExit final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isOffered READ isOffered NOTIFY isOfferedChanged)

public:
    static constexpr double secondsUntilOffered = 5.0;

    /// `endLoad` ends the load and lowers the overlay. The others must outlive the object.
    LoadingExit(const AppState& appState, Scheduler& scheduler, std::function<void()> endLoad,
                QObject* parent = nullptr);

    [[nodiscard]] bool isOffered() const { return m_isOffered; }
    /// Ends the load, once that is offered.
    Q_INVOKABLE void take();

    Q_SIGNAL void isOfferedChanged();

private:
    void loadingChanged();
    void setOffered(bool offered);

    const AppState& m_appState;
    Scheduler& m_scheduler;
    std::function<void()> m_endLoad;
    std::unique_ptr<ScheduledTimer> m_timer;
    bool m_isOffered = false;
};

} // namespace ondavia
