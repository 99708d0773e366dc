#include "screens/player/ControlsAutoHide.h"

namespace ondavia {

ControlsAutoHide::ControlsAutoHide(Scheduler& scheduler, std::function<bool()> isSliderOpen)
    : m_scheduler(scheduler)
    , m_isSliderOpen(std::move(isSliderOpen)) {}

void ControlsAutoHide::resetControlsTimer() {
    invalidate();
    if (showControls()) {
        m_controlsTimer = m_scheduler.once(seconds, [this] { timeIsOver(); });
    }
}

void ControlsAutoHide::toggleControls() {
    setShowControls(!showControls());
    resetControlsTimer();
}

void ControlsAutoHide::wake() {
    setShowControls(true);
    resetControlsTimer();
}

void ControlsAutoHide::timeIsOver() {
    if (m_isSliderOpen()) {
        resetControlsTimer();
    } else {
        setShowControls(false);
    }
}

} // namespace ondavia
