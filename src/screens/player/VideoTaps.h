#pragma once

#include "platform/Scheduler.h"

#include <QObject>
#include <qqmlregistration.h>

#include <memory>

namespace ondavia {

/// Tells single taps on the picture from double ones: a single one waits for a moment, lest a second follow.
/// Main thread.
class VideoTaps final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")

public:
    /// Between the two taps of a double one, at most.
    static constexpr double seconds = 0.3;
    /// As far apart as the two taps of a double one may be, in device-independent pixels.
    static constexpr double distance = 60;

    /// `scheduler` must outlive the object.
    explicit VideoTaps(Scheduler& scheduler);

    /// On a picture `width` wide.
    Q_INVOKABLE void tap(double x, double y, double width);

    Q_SIGNAL void singleTapped();
    /// Where the second tap was, and how wide the picture.
    Q_SIGNAL void doubleTapped(double x, double width);

private:
    void endWaiting();

    Scheduler& m_scheduler;
    /// There while a single tap waits.
    std::unique_ptr<ScheduledTimer> m_timer;
    double m_x = 0;
    double m_y = 0;
};

} // namespace ondavia
