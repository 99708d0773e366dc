#include "screens/player/PlayerSkips.h"

#include "playback/PlayerManager.h"
#include "screens/player/PlaybackChoices.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace ondavia {

PlayerSkips::PlayerSkips(PlayerManager& manager, const PlaybackChoices& choices, Scheduler& scheduler)
    : m_manager(manager)
    , m_choices(choices)
    , m_scheduler(scheduler) {
    connect(&m_choices, &PlaybackChoices::skipIntervalChanged, this, &PlayerSkips::skipIntervalChanged);
}

int PlayerSkips::skipInterval() const {
    return static_cast<int>(m_choices.skipInterval());
}

QString PlayerSkips::badgeSymbol() const {
    return skipSymbol(badgeSeconds(), m_seekDirection == QLatin1String("forward"));
}

void PlayerSkips::back() {
    m_manager.seek(std::max(0.0, m_manager.currentTime() - skipInterval()));
}

void PlayerSkips::forward() {
    m_manager.seek(m_manager.currentTime() + skipInterval());
}

void PlayerSkips::handleDoubleTapSeek(double location, double width) {
    step(location >= width / 2);
}

void PlayerSkips::step(bool forwards) {
    const double skip = skipInterval();
    m_manager.seek(forwards ? std::min(m_manager.duration(), m_manager.currentTime() + skip)
                            : std::max(0.0, m_manager.currentTime() - skip));
    const QString direction = forwards ? QStringLiteral("forward") : QStringLiteral("backward");
    m_accumulatedSeek = direction == m_seekDirection ? m_accumulatedSeek + skip : skip;
    m_seekDirection = direction;
    m_seekDismissTimer = m_scheduler.once(burstSeconds, [this] { endBurst(); });
    Q_EMIT badgeChanged();
}

void PlayerSkips::endBurst() {
    m_seekDirection.clear();
    m_accumulatedSeek = 0;
    Q_EMIT badgeChanged();
}

QString PlayerSkips::skipSymbol(std::int64_t seconds, bool forward) {
    constexpr std::array<std::int64_t, 7> drawn{5, 10, 15, 30, 45, 75, 90};
    // The first of the nearest.
    const auto nearest = *std::ranges::min_element(
        drawn, {}, [seconds](std::int64_t value) { return std::abs(value - seconds); });
    return QStringLiteral("%1.%2")
        .arg(forward ? QStringLiteral("goforward") : QStringLiteral("gobackward"))
        .arg(nearest);
}

} // namespace ondavia
