#include "screens/player/VODSeekBarModel.h"

#include "playback/PlayerManager.h"

#include <algorithm>

namespace ondavia {

VODSeekBarModel::VODSeekBarModel(PlayerManager& manager)
    : m_manager(manager) {
    connect(&m_manager, &PlayerManager::currentTimeChanged, this, &VODSeekBarModel::changed);
    connect(&m_manager, &PlayerManager::durationChanged, this, &VODSeekBarModel::changed);
    connect(this, &VODSeekBarModel::isSeekingChanged, this, &VODSeekBarModel::changed);
    connect(this, &VODSeekBarModel::seekTargetChanged, this, &VODSeekBarModel::changed);
}

bool VODSeekBarModel::isDrawn() const {
    return m_manager.duration() > 0;
}

double VODSeekBarModel::shownTime() const {
    return isSeeking() ? seekTarget() : m_manager.currentTime();
}

double VODSeekBarModel::fraction() const {
    return isDrawn() ? std::min(shownTime() / m_manager.duration(), 1.0) : 0;
}

QString VODSeekBarModel::durationText() const {
    return formatTime(m_manager.duration());
}

void VODSeekBarModel::drag(double location, double width) {
    setSeekTarget(timeAt(location, width));
    setIsSeeking(true);
}

void VODSeekBarModel::endDrag(double location, double width) {
    setSeekTarget(timeAt(location, width));
    m_manager.seek(seekTarget());
    setIsSeeking(false);
}

double VODSeekBarModel::timeAt(double location, double width) const {
    return width > 0 ? std::clamp(location / width, 0.0, 1.0) * m_manager.duration() : 0;
}

QString VODSeekBarModel::formatTime(double seconds) {
    constexpr qint64 hour = 3600;
    constexpr qint64 minute = 60;
    const auto whole = static_cast<qint64>(seconds);
    return whole < hour
               ? QString::asprintf("%02lld:%02lld", whole / minute, whole % minute)
               : QString::asprintf("%lld:%02lld:%02lld", whole / hour, whole % hour / minute, whole % minute);
}

} // namespace ondavia
