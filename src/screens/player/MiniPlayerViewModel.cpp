#include "screens/player/MiniPlayerViewModel.h"

#include "playback/PlayerManager.h"
#include "state/AppState.h"
#include "style/ShownText.h"

#include <algorithm>

namespace ondavia {

MiniPlayerViewModel::MiniPlayerViewModel(AppState& appState, PlayerManager& manager, QObject* parent)
    : QObject(parent)
    , m_appState(appState)
    , m_manager(manager) {
    connectFields();
}

void MiniPlayerViewModel::connectFields() {
    for (const auto signal :
         {&AppState::showMiniPlayerChanged, &AppState::currentChannelChanged, &AppState::isPlayingChanged}) {
        connect(&m_appState, signal, this, &MiniPlayerViewModel::isShownChanged);
    }
    connect(&m_appState, &AppState::currentChannelChanged, this, &MiniPlayerViewModel::nameChanged);
    for (const auto signal : {&PlayerManager::isPlayingChanged, &PlayerManager::isMutedChanged,
                              &PlayerManager::isBufferingChanged}) {
        connect(&m_manager, signal, this, &MiniPlayerViewModel::stateChanged);
    }
}

QObject* MiniPlayerViewModel::managerObject() const {
    return &m_manager;
}

bool MiniPlayerViewModel::isShown() const {
    return m_appState.showMiniPlayer() && m_appState.currentChannel() && m_appState.isPlaying();
}

QString MiniPlayerViewModel::name() const {
    const auto& channel = m_appState.currentChannel();
    return channel ? shownText(channel->name) : QString();
}

bool MiniPlayerViewModel::isPlaying() const {
    return m_manager.isPlaying();
}

bool MiniPlayerViewModel::isMuted() const {
    return m_manager.isMuted();
}

bool MiniPlayerViewModel::isWaiting() const {
    return m_manager.isBuffering() && !m_manager.isPlaying();
}

QPointF MiniPlayerViewModel::corner() const {
    return m_position + m_dragOffset - QPointF(miniWidth / 2, miniHeight / 2);
}

void MiniPlayerViewModel::setContainer(double width, double height) {
    constexpr double aboveTheBar = 80;
    // The window comes back where it was left.
    if (const QSizeF container(width, height); container != m_container) {
        m_container = container;
    } else {
        return;
    }
    m_position = m_hasInitialPosition ? snapped(m_position)
                                      : QPointF(width - miniWidth / 2 - padding,
                                                height - miniHeight / 2 - padding - aboveTheBar);
    m_hasInitialPosition = true;
    Q_EMIT cornerChanged();
}

void MiniPlayerViewModel::drag(double x, double y) {
    m_dragOffset = QPointF(x, y);
    Q_EMIT cornerChanged();
}

void MiniPlayerViewModel::endDrag(double x, double y) {
    m_dragOffset = QPointF();
    m_position = snapped(m_position + QPointF(x, y));
    Q_EMIT cornerChanged();
}

QPointF MiniPlayerViewModel::snapped(QPointF point) const {
    constexpr double top = miniHeight / 2 + 60;
    constexpr double left = miniWidth / 2 + padding;
    const double right = m_container.width() - left;
    const double bottom = m_container.height() - miniHeight / 2 - 100;
    // In a container smaller than the bounds the upper left ones hold.
    const double x = std::max(left, std::min(point.x(), right));
    const double y = std::max(top, std::min(point.y(), bottom));
    return {x < m_container.width() / 2 ? left : right, y};
}

void MiniPlayerViewModel::expand() {
    m_appState.setShowMiniPlayer(false);
    m_appState.setIsPlaying(true);
}

void MiniPlayerViewModel::close() {
    m_manager.stop();
    m_appState.setShowMiniPlayer(false);
    m_appState.setIsPlaying(false);
    m_appState.setCurrentChannel(std::nullopt);
    m_manager.setIsMiniPlayer(false);
}

void MiniPlayerViewModel::togglePlayPause() {
    m_manager.togglePlayPause();
}

void MiniPlayerViewModel::toggleMute() {
    m_manager.toggleMute();
}

} // namespace ondavia
