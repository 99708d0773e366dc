#include "screens/player/VideoTaps.h"

#include <cmath>

namespace ondavia {

VideoTaps::VideoTaps(Scheduler& scheduler)
    : m_scheduler(scheduler) {}

void VideoTaps::tap(double x, double y, double width) {
    if (m_timer && std::hypot(x - m_x, y - m_y) <= distance) {
        m_timer.reset();
        Q_EMIT doubleTapped(x, width);
        return;
    }
    if (m_timer) {
        endWaiting();
    }
    m_x = x;
    m_y = y;
    m_timer = m_scheduler.once(seconds, [this] { endWaiting(); });
}

void VideoTaps::endWaiting() {
    m_timer.reset();
    Q_EMIT singleTapped();
}

} // namespace ondavia
