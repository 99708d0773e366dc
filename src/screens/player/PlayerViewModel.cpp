#include "screens/player/PlayerViewModel.h"

#include "base/Redaction.h"
#include "personal/HistoryRecording.h"
#include "playback/PlayerManager.h"
#include "screens/player/NextEpisode.h"
#include "screens/player/OrientationLock.h"
#include "state/AppState.h"

namespace ondavia {

namespace {

constexpr Qt::ScreenOrientations portrait{Qt::PortraitOrientation};
constexpr Qt::ScreenOrientations landscape{Qt::LandscapeOrientation, Qt::InvertedLandscapeOrientation};

} // namespace

PlayerViewModel::PlayerViewModel(const PlayerScreenServices& services, Channel channel)
    : m_services(services)
    , m_channel(std::move(channel))
    , m_levels(services.audioSession, services.systemVolume, services.screenBrightness, services.scheduler)
    , m_controls(services.scheduler, [this] { return m_levels.isSliderOpen() || m_seekBar.isSeeking(); })
    , m_skips(services.playerManager, m_choices, services.scheduler)
    , m_seekBar(services.playerManager)
    , m_taps(services.scheduler)
    , m_subtitles(services.playerManager, services.scheduler)
    , m_information(services.playerManager, services.scheduler)
    , m_keys(*this) {
    connectFields();
}

PlayerViewModel::~PlayerViewModel() = default;

void PlayerViewModel::connectFields() {
    const PlayerManager& manager = m_services.playerManager;
    for (const auto signal : {&PlayerManager::isPlayingChanged, &PlayerManager::isBufferingChanged,
                              &PlayerManager::isMutedChanged, &PlayerManager::errorChanged}) {
        connect(&manager, signal, this, &PlayerViewModel::stateChanged);
    }
    const AppState& appState = m_services.appState;
    connect(&appState, &AppState::currentChannelChanged, this, &PlayerViewModel::followSession);
    connect(&appState, &AppState::seriesEpisodesChanged, this, &PlayerViewModel::itemChanged);
    connect(&appState, &AppState::currentEpisodeIndexChanged, this, &PlayerViewModel::itemChanged);
    connect(&m_choices, &PlaybackChoices::playbackSpeedChanged, this, &PlayerViewModel::speedTextChanged);
    connect(&m_levels, &PlayerLevels::sliderClosed, &m_controls, &ControlsAutoHide::resetControlsTimer);
    connect(&m_seekBar, &VODSeekBarModel::isSeekingChanged, &m_controls,
            &ControlsAutoHide::resetControlsTimer);
    connect(&m_taps, &VideoTaps::singleTapped, &m_controls, &ControlsAutoHide::toggleControls);
    connect(&m_taps, &VideoTaps::doubleTapped, this, [this](double x, double width) {
        if (!isLive()) {
            m_skips.handleDoubleTapSeek(x, width);
        }
    });
}

/// The episode that was stepped to is what the leaving steps record.
void PlayerViewModel::followSession() {
    if (m_services.appState.currentChannel()) {
        m_channel = *m_services.appState.currentChannel();
        Q_EMIT itemChanged();
    }
}

void PlayerViewModel::appear() {
    OrientationLock::set(landscape);
    m_levels.read();
    setupAndPlay();
    m_controls.resetControlsTimer();
}

void PlayerViewModel::setupAndPlay() {
    PlayerManager& manager = m_services.playerManager;
    const bool isTakenOver =
        manager.isMiniPlayer() && manager.currentItem() && manager.currentItem()->id == m_channel.id;
    if (isTakenOver) {
        manager.setIsMiniPlayer(false);
        return;
    }
    if (isLive()) {
        manager.play(m_channel, 0);
        return;
    }
    m_startPosition = savedPosition(m_services.modelContext, m_channel.id);
    recordProgressOf(m_channel);
    manager.play(m_channel, m_startPosition);
    const auto subtitleURLs = m_services.appState.pendingSubtitleURLs();
    m_services.appState.setPendingSubtitleURLs({});
    if (!subtitleURLs.empty()) {
        manager.setSubtitleURLs(subtitleURLs);
    }
}

/// By copies: the manager goes on reporting when this view has gone.
void PlayerViewModel::recordProgressOf(const Channel& channel) {
    m_services.playerManager.setOnProgressUpdate(
        [&context = m_services.modelContext, item = WatchedItem(channel)](double position, double duration) {
            saveHistoryItem(context, item, position, duration);
        });
}

void PlayerViewModel::saveProgress() {
    constexpr double unrecordedSeconds = 10.0;
    const PlayerManager& manager = m_services.playerManager;
    if (!isLive() && manager.currentTime() > unrecordedSeconds && manager.duration() > 0) {
        saveHistoryItem(m_services.modelContext, WatchedItem(m_channel), manager.currentTime(),
                        manager.duration());
    }
}

void PlayerViewModel::disappear() {
    OrientationLock::set(portrait);
    m_controls.invalidate();
    m_levels.stop();
    m_information.setIsShown(false);
    saveProgress();
    if (!m_services.appState.showMiniPlayer()) {
        m_services.playerManager.stop();
        m_services.appState.setIsPlaying(false);
        m_services.appState.setCurrentChannel(std::nullopt);
    }
    Q_EMIT disappeared();
}

QObject* PlayerViewModel::managerObject() const {
    return &m_services.playerManager;
}

QString PlayerViewModel::title() const {
    return QString::fromStdString(m_channel.seriesName.value_or(m_channel.name));
}

QString PlayerViewModel::episodeLine() const {
    if (m_channel.type != "series") {
        return {};
    }
    return m_channel.episodeTitle ? QString::fromStdString(*m_channel.episodeTitle)
                                  : QStringLiteral("Ep. %1").arg(m_channel.episodeNum.value_or(0));
}

bool PlayerViewModel::hasNextEpisode() const {
    return NextEpisode::exists(m_services.appState);
}

bool PlayerViewModel::isPlaying() const {
    return m_services.playerManager.isPlaying();
}

bool PlayerViewModel::isBuffering() const {
    return m_services.playerManager.isBuffering();
}

bool PlayerViewModel::isMuted() const {
    return m_services.playerManager.isMuted();
}

QString PlayerViewModel::error() const {
    return QString::fromStdString(maskSecrets(m_services.playerManager.error().value_or(std::string())));
}

QString PlayerViewModel::speedText() const {
    return m_choices.playbackSpeed() == 1.0F ? QString() : speedLabel(m_choices.playbackSpeed());
}

void PlayerViewModel::togglePlayPause() {
    m_services.playerManager.togglePlayPause();
}

void PlayerViewModel::toggleMute() {
    m_services.playerManager.toggleMute();
}

void PlayerViewModel::retry() {
    m_services.playerManager.play(m_channel, 0);
}

void PlayerViewModel::playNextEpisode() {
    auto next = NextEpisode::after(m_services.appState);
    if (!next) {
        return;
    }
    saveProgress();
    m_services.appState.setCurrentEpisodeIndex(next->index);
    m_services.appState.setCurrentChannel(next->item);
    recordProgressOf(next->item);
    m_services.playerManager.play(next->item, 0);
    m_services.playerManager.setSubtitleURLs(std::move(next->subtitleURLs));
}

void PlayerViewModel::minimizeToMini() {
    m_controls.invalidate();
    saveProgress();
    m_services.appState.setShowMiniPlayer(true);
    m_services.playerManager.setIsMiniPlayer(true);
    close();
}

void PlayerViewModel::openSettings() {
    // What draws the sheet of before may be fading away with it.
    if (SettingsSheetModel* former = m_sheet.release()) {
        former->setParent(this);
        former->deleteLater();
    }
    m_sheet = std::make_unique<SettingsSheetModel>(isLive() ? SettingsSheetModel::Kind::Live
                                                            : SettingsSheetModel::Kind::Film,
                                                   m_services.playerManager, m_choices);
    Q_EMIT sheetChanged();
    setShowSettings(true);
}

bool PlayerViewModel::closeLayer() {
    if (showKeys()) {
        setShowKeys(false);
        return true;
    }
    const bool wasOpen = showSettings();
    closeSettings();
    return wasOpen;
}

} // namespace ondavia
