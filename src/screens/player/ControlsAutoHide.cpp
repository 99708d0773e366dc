#include "screens/player/ControlsAutoHide.h"

namespace ondavia {

ControlsAutoHide::ControlsAutoHide(Scheduler& scheduler, std::function<bool()> isSliderInUse)
    : m_scheduler(scheduler)
    , m_isSliderInUse(std::move(isSliderInUse)) {}

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
    if (m_isSliderInUse()) {
        resetControlsTimer();
    } else {
        setShowControls(false);
    }
}

} // namespace ondavia
