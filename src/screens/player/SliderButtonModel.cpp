#include "screens/player/SliderButtonModel.h"

#include <algorithm>
#include <cmath>

namespace ondavia {

SliderButtonModel::SliderButtonModel(double lower, double upper, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_lower(lower)
    , m_upper(upper)
    , m_scheduler(scheduler)
    , m_value(lower) {}

void SliderButtonModel::setValue(double value) {
    if (m_value == value) {
        return;
    }
    m_value = value;
    Q_EMIT valueChanged();
    if (isOpen()) {
        Q_EMIT changed(m_value);
        startHideTimer();
    }
}

void SliderButtonModel::setShowSlider(bool shows) {
    if (m_showSlider != shows) {
        m_showSlider = shows;
        Q_EMIT showSliderChanged();
        Q_EMIT isOpenChanged();
    }
}

void SliderButtonModel::tap() {
    setShowSlider(!m_showSlider);
    // A timer that still runs when the slider is closed finds nothing to do.
    resume();
}

void SliderButtonModel::resume() {
    if (m_showSlider) {
        startHideTimer();
    }
}

void SliderButtonModel::moveTo(QPointF place) {
    const QPointF way = m_pressed ? place - *m_pressed : QPointF();
    if (m_isDragging || std::hypot(way.x(), way.y()) >= minimumDrag) {
        drag(way.y());
    }
}

void SliderButtonModel::release() {
    const bool isTap = m_pressed && !m_isDragging;
    cancel();
    if (isTap) {
        tap();
    }
}

void SliderButtonModel::cancel() {
    m_pressed.reset();
    setDragging(false);
}

void SliderButtonModel::step(int steps) {
    take(m_value + (m_upper - m_lower) * keyStep * steps);
}

void SliderButtonModel::drag(double down) {
    if (!m_isDragging) {
        m_dragStartValue = m_value;
        setDragging(true);
    }
    take(m_dragStartValue + (m_upper - m_lower) * (down / -sweep));
}

void SliderButtonModel::slide(double location, double height) {
    const double fraction = height > 0 ? std::clamp(1 - location / height, 0.0, 1.0) : 0;
    take(m_lower + (m_upper - m_lower) * fraction);
}

void SliderButtonModel::take(double value) {
    m_value = std::clamp(value, m_lower, m_upper);
    Q_EMIT valueChanged();
    Q_EMIT changed(m_value);
    startHideTimer();
}

void SliderButtonModel::setDragging(bool dragging) {
    if (m_isDragging != dragging) {
        m_isDragging = dragging;
        Q_EMIT isOpenChanged();
    }
}

void SliderButtonModel::startHideTimer() {
    m_hideTimer = m_scheduler.once(openSeconds, [this] { setShowSlider(false); });
}

} // namespace ondavia
