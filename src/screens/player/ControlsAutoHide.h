#pragma once

#include "base/Observable.h"
#include "platform/Scheduler.h"

#include <QObject>
#include <qqmlregistration.h>

#include <functional>
#include <memory>

namespace ondavia {

/// When the controls over a picture show: they step back 5 seconds after they came, or were last used, but
/// not while a slider among them is in use. Main thread.
class ControlsAutoHide final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")
    Q_PROPERTY(bool showControls READ showControls NOTIFY showControlsChanged)

    ONDAVIA_OBSERVABLE(bool, showControls, setShowControls, true);

public:
    static constexpr double seconds = 5.0;

    /// `scheduler` must outlive the object.
    ControlsAutoHide(Scheduler& scheduler, std::function<bool()> isSliderInUse);

    /// Starts the 5 seconds anew where the controls show, and ends them where not.
    void resetControlsTimer();
    Q_INVOKABLE void toggleControls();
    /// Whoever moves a pointer or presses a key wants to see the controls.
    Q_INVOKABLE void wake();
    void invalidate() { m_controlsTimer.reset(); }

private:
    void timeIsOver();

    Scheduler& m_scheduler;
    std::function<bool()> m_isSliderInUse;
    std::unique_ptr<ScheduledTimer> m_controlsTimer;
};

} // namespace ondavia
