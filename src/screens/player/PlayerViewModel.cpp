#include "screens/player/PlayerViewModel.h"

#include "base/Redaction.h"
#include "playback/PlayerManager.h"
#include "screens/shell/ContentViewModel.h"
#include "state/AppState.h"

#include <cmath>

namespace ondavia {

QString clockText(double seconds) {
    constexpr double longest = 1e9;
    const auto whole =
        std::isfinite(seconds) && seconds > 0 ? static_cast<qint64>(std::min(seconds, longest)) : 0;
    const auto padded = [](qint64 number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    const QString minutesAndSeconds =
        (whole >= 3600 ? padded(whole / 60 % 60) : QString::number(whole / 60)) + QLatin1Char(':') +
        padded(whole % 60);
    return whole >= 3600 ? QString::number(whole / 3600) + QLatin1Char(':') + minutesAndSeconds
                         : minutesAndSeconds;
}

PlayerViewModel::PlayerViewModel(AppState& appState, PlayerManager& manager, ContentViewModel& content,
                                 Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_appState(appState)
    , m_manager(manager)
    , m_content(content)
    , m_scheduler(scheduler) {
    connectFields();
    presentationChanged();
}

void PlayerViewModel::connectFields() {
    connect(&m_content, &ContentViewModel::presentsPlayerChanged, this,
            &PlayerViewModel::presentationChanged);
    connect(&m_appState, &AppState::currentChannelChanged, this, &PlayerViewModel::itemChanged);
    for (const auto signal : {&PlayerManager::isPlayingChanged, &PlayerManager::isBufferingChanged,
                              &PlayerManager::isMutedChanged, &PlayerManager::errorChanged}) {
        connect(&m_manager, signal, this, &PlayerViewModel::stateChanged);
    }
    for (const auto signal : {&PlayerManager::currentTimeChanged, &PlayerManager::durationChanged}) {
        connect(&m_manager, signal, this, &PlayerViewModel::timeChanged);
    }
    connect(&m_manager, &PlayerManager::isLiveChanged, this, &PlayerViewModel::itemChanged);
    connect(&m_manager, &PlayerManager::isLiveChanged, this, &PlayerViewModel::timeChanged);
    // Whoever pauses wants to see where.
    connect(&m_manager, &PlayerManager::isPlayingChanged, this, &PlayerViewModel::wakeControls);
    connect(&m_manager, &PlayerManager::errorChanged, this, &PlayerViewModel::wakeControls);
}

QString PlayerViewModel::title() const {
    const auto& channel = m_appState.currentChannel();
    return channel ? QString::fromStdString(channel->name) : QString();
}

QString PlayerViewModel::subtitle() const {
    const auto& channel = m_appState.currentChannel();
    return channel ? QString::fromStdString(channel->groupTitle) : QString();
}

bool PlayerViewModel::isLive() const {
    return m_manager.isLive();
}

bool PlayerViewModel::isPlaying() const {
    return m_manager.isPlaying();
}

bool PlayerViewModel::isBuffering() const {
    return m_manager.isBuffering() && !m_manager.error();
}

bool PlayerViewModel::isMuted() const {
    return m_manager.isMuted();
}

QString PlayerViewModel::error() const {
    return m_manager.error() ? QString::fromStdString(maskSecrets(*m_manager.error())) : QString();
}

bool PlayerViewModel::canSeek() const {
    return !m_manager.isLive() && m_manager.duration() > 0;
}

double PlayerViewModel::position() const {
    return m_manager.currentTime();
}

double PlayerViewModel::duration() const {
    return m_manager.duration();
}

QString PlayerViewModel::positionText() const {
    return clockText(position());
}

QString PlayerViewModel::durationText() const {
    return clockText(duration());
}

void PlayerViewModel::leave() {
    m_isPresented = false;
    m_hideTimer.reset();
    stopUnlessMini();
    m_content.playerDismissed();
}

void PlayerViewModel::retry() {
    if (m_appState.currentChannel()) {
        m_manager.play(*m_appState.currentChannel(), 0);
    }
}

void PlayerViewModel::togglePlayPause() {
    m_manager.togglePlayPause();
    wakeControls();
}

void PlayerViewModel::toggleMute() {
    m_manager.toggleMute();
    wakeControls();
}

void PlayerViewModel::seek(double seconds) {
    m_manager.seek(seconds);
    wakeControls();
}

void PlayerViewModel::wakeControls() {
    if (m_isPresented) {
        m_hideTimer = m_scheduler.once(secondsUntilControlsHide, [this] { hideControls(); });
        setShowsControls(true);
    }
}

void PlayerViewModel::toggleControls() {
    if (m_showsControls) {
        hideControls();
    } else {
        wakeControls();
    }
}

void PlayerViewModel::hideControls() {
    setShowsControls(!m_manager.isPlaying() || m_manager.error());
}

void PlayerViewModel::setShowsControls(bool shows) {
    if (m_showsControls != shows) {
        m_showsControls = shows;
        Q_EMIT showsControlsChanged();
    }
}

void PlayerViewModel::presentationChanged() {
    const bool presents = m_content.presentsPlayer();
    if (presents == m_isPresented) {
        return;
    }
    m_isPresented = presents;
    if (presents) {
        m_manager.play(*m_appState.currentChannel(), 0);
        wakeControls();
    } else {
        m_hideTimer.reset();
        stopUnlessMini();
    }
}

void PlayerViewModel::stopUnlessMini() {
    if (!m_appState.showMiniPlayer()) {
        m_manager.stop();
    }
}

} // namespace ondavia
