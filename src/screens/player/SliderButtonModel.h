#pragma once

#include "platform/Scheduler.h"

#include <QObject>
#include <QPointF>
#include <qqmlregistration.h>

#include <memory>
#include <optional>

namespace ondavia {

/// A round button whose value changes by dragging on it, or on a slider that a tap on it opens. Lengths in
/// device-independent pixels. Main thread.
class SliderButtonModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")
    Q_PROPERTY(double value READ value NOTIFY valueChanged)
    /// Where the value is in its range, from 0.0 to 1.0.
    Q_PROPERTY(double fraction READ fraction NOTIFY valueChanged)
    /// The slider shows.
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)

public:
    /// From the last use of the slider until it closes.
    static constexpr double openSeconds = 2.0;
    /// A shorter movement on the button belongs to a tap.
    static constexpr double minimumDrag = 5.0;
    /// Of the range, for one press of a key.
    static constexpr double keyStep = 0.05;
    /// Of an upward drag over the whole range.
    static constexpr double sweep = 200.0;

    /// `scheduler` must outlive the object.
    SliderButtonModel(double lower, double upper, Scheduler& scheduler, QObject* parent = nullptr);

    [[nodiscard]] double value() const { return m_value; }
    [[nodiscard]] double fraction() const { return (m_value - m_lower) / (m_upper - m_lower); }
    [[nodiscard]] bool showSlider() const { return m_showSlider; }
    [[nodiscard]] bool isDragging() const { return m_isDragging; }
    [[nodiscard]] bool isOpen() const { return m_showSlider || m_isDragging; }

    /// Mirrors what somebody else has set. While the slider shows, that counts as a use of it.
    void setValue(double value);
    void setShowSlider(bool shows);

    /// A pointer or a finger on the button; both places in one frame of reference that stands still.
    Q_INVOKABLE void press(QPointF place) { m_pressed = place; }
    Q_INVOKABLE void moveTo(QPointF place);
    /// A tap, unless it has become a drag.
    Q_INVOKABLE void release();
    /// Something else took the pointer over.
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void tap();
    /// A key went up or down the range so many times.
    Q_INVOKABLE void step(int steps);
    /// A finger at `location` of a slider `height` high, from its top.
    Q_INVOKABLE void slide(double location, double height);
    /// The button has gone off the screen.
    Q_INVOKABLE void invalidate() { m_hideTimer.reset(); }
    /// It is back, and its slider as it was left.
    Q_INVOKABLE void resume();

    Q_SIGNAL void valueChanged();
    Q_SIGNAL void showSliderChanged();
    Q_SIGNAL void isOpenChanged();
    /// The viewer has changed the value.
    Q_SIGNAL void changed(double value);

private:
    void drag(double down);
    void take(double value);
    void setDragging(bool dragging);
    void startHideTimer();

    double m_lower;
    double m_upper;
    Scheduler& m_scheduler;
    double m_value;
    bool m_showSlider = false;
    bool m_isDragging = false;
    double m_dragStartValue = 0;
    /// Where the pointer went down, while it is down.
    std::optional<QPointF> m_pressed;
    std::unique_ptr<ScheduledTimer> m_hideTimer;
};

} // namespace ondavia
