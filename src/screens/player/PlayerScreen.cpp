#include "screens/player/PlayerScreen.h"

#include "base/Redaction.h"
#include "playback/PlayerManager.h"
#include "state/AppState.h"

namespace ondavia {

PlayerScreen::PlayerScreen(const PlayerScreenServices& services, SettingsSheetModel::Kind kind)
    : m_services(services)
    , m_kind(kind)
    , m_levels(services.audioSession, services.systemVolume, services.screenBrightness, services.scheduler)
    , m_controls(services.scheduler, [this] { return m_levels.isSliderOpen() || isHeld(); })
    , m_information(services.playerManager, services.scheduler)
    , m_keys([this] { return showSettings() || showKeys(); }) {
    const PlayerManager& manager = m_services.playerManager;
    for (const auto signal : {&PlayerManager::isPlayingChanged, &PlayerManager::isBufferingChanged,
                              &PlayerManager::isMutedChanged, &PlayerManager::errorChanged}) {
        connect(&manager, signal, this, &PlayerScreen::stateChanged);
    }
    // Who sees it stand still, at its end say, wants to know what is to be done. Between two engines nothing
    // stands still: the next picture is on its way.
    connect(&manager, &PlayerManager::isPlayingChanged, this, [this] {
        if (m_services.playerManager.player() && !isPlaying() && !isBuffering()) {
            m_controls.wake();
        }
    });
    connect(this, &PlayerScreen::stateChanged, this, &PlayerScreen::watchWaiting);
    watchWaiting();
    connect(&m_levels, &PlayerLevels::sliderClosed, &m_controls, &ControlsAutoHide::resetControlsTimer);
}

PlayerScreen::~PlayerScreen() = default;

void PlayerScreen::disappear() {
    // What becomes of playback from now on is no longer this screen's.
    disconnect(&m_services.playerManager, nullptr, this, nullptr);
    m_patience.reset();
    m_levels.stop();
    m_information.setIsShown(false);
    leave();
    Q_EMIT disappeared();
}

bool PlayerScreen::takesOver(const Channel& item) {
    PlayerManager& manager = m_services.playerManager;
    const bool isItem = manager.currentItem() && manager.currentItem()->id == item.id;
    if (!manager.isMiniPlayer() || !isItem) {
        return false;
    }
    manager.setIsMiniPlayer(false);
    return true;
}

void PlayerScreen::endSession() {
    if (!m_services.appState.showMiniPlayer()) {
        m_services.playerManager.stop();
        m_services.appState.setIsPlaying(false);
        m_services.appState.setCurrentChannel(std::nullopt);
    }
}

void PlayerScreen::watchWaiting() {
    const bool isWaiting = isBuffering() && !isPlaying();
    if (isWaiting == (m_patience != nullptr)) {
        return;
    }
    setIsSlow(false);
    m_patience =
        isWaiting ? m_services.scheduler.once(secondsUntilSlow, [this] { setIsSlow(true); }) : nullptr;
}

QObject* PlayerScreen::managerObject() const {
    return &m_services.playerManager;
}

bool PlayerScreen::isPlaying() const {
    return m_services.playerManager.isPlaying();
}

bool PlayerScreen::isBuffering() const {
    return m_services.playerManager.isBuffering();
}

bool PlayerScreen::isMuted() const {
    return m_services.playerManager.isMuted();
}

QString PlayerScreen::error() const {
    return QString::fromStdString(maskSecrets(m_services.playerManager.error().value_or(std::string())));
}

void PlayerScreen::togglePlayPause() {
    m_services.playerManager.togglePlayPause();
}

void PlayerScreen::toggleMute() {
    m_services.playerManager.toggleMute();
}

void PlayerScreen::minimizeToMini() {
    m_controls.invalidate();
    m_services.appState.setShowMiniPlayer(true);
    m_services.playerManager.setIsMiniPlayer(true);
    close();
}

void PlayerScreen::openSettings() {
    // What draws the sheet of before may be fading away with it.
    if (SettingsSheetModel* former = m_sheet.release()) {
        former->setParent(this);
        former->deleteLater();
    }
    m_sheet = std::make_unique<SettingsSheetModel>(m_kind, m_services.playerManager, m_choices);
    Q_EMIT sheetChanged();
    setShowSettings(true);
}

bool PlayerScreen::closeLayer() {
    if (showKeys()) {
        setShowKeys(false);
        return true;
    }
    const bool wasOpen = showSettings();
    closeSettings();
    return wasOpen;
}

} // namespace ondavia
