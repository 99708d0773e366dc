#include "screens/player/PlayerViewModel.h"

#include "personal/HistoryRecording.h"
#include "playback/PlayerManager.h"
#include "screens/player/NextEpisode.h"
#include "screens/player/OrientationLock.h"
#include "state/AppState.h"
#include "style/ShownText.h"
#include "style/Texts.h"

namespace ondavia {

PlayerViewModel::PlayerViewModel(const PlayerScreenServices& services, Channel channel)
    : PlayerScreen(services, SettingsSheetModel::Kind::Film)
    , m_channel(std::move(channel))
    , m_skips(services.playerManager, choices(), services.scheduler)
    , m_seekBar(services.playerManager)
    , m_taps(services.scheduler)
    , m_subtitles(services.playerManager, services.scheduler) {
    connectFields();
    bindKeys();
}

PlayerViewModel::~PlayerViewModel() = default;

void PlayerViewModel::connectFields() {
    const AppState& appState = services().appState;
    connect(&appState, &AppState::currentChannelChanged, this, &PlayerViewModel::followSession);
    connect(&appState, &AppState::seriesEpisodesChanged, this, &PlayerViewModel::itemChanged);
    connect(&appState, &AppState::currentEpisodeIndexChanged, this, &PlayerViewModel::itemChanged);
    connect(&choices(), &PlaybackChoices::playbackSpeedChanged, this, &PlayerViewModel::speedTextChanged);
    connect(&m_seekBar, &VODSeekBarModel::isSeekingChanged, controls(),
            &ControlsAutoHide::resetControlsTimer);
    connect(&m_taps, &VideoTaps::singleTapped, controls(), &ControlsAutoHide::toggleControls);
    connect(&m_taps, &VideoTaps::doubleTapped, &m_skips, &PlayerSkips::handleDoubleTapSeek);
}

void PlayerViewModel::bindKeys() {
    using Repeat = PlayerKeys::Repeat;
    keys()->bindPlayback(*this);
    keys()->bind({{Qt::Key_Left, Qt::Key_J},
                  QStringLiteral("←, J"),
                  textFor("player.keys.back", "Recuar"),
                  Repeat::Yes,
                  [this](int) { m_skips.step(false); }});
    keys()->bind({{Qt::Key_Right, Qt::Key_L},
                  QStringLiteral("→, L"),
                  textFor("player.keys.forward", "Avançar"),
                  Repeat::Yes,
                  [this](int) { m_skips.step(true); }});
    keys()->bindSound(*this);
    if (m_channel.type == "series") {
        keys()->bind({{Qt::Key_N, Qt::Key_MediaNext},
                      QStringLiteral("N"),
                      textFor("player.nextEpisode", "Proximo episodio"),
                      Repeat::No,
                      [this](int) {
                          if (offersNextEpisode()) {
                              playNextEpisode();
                          }
                      }});
    }
    keys()->bindLayers(*this);
    keys()->setLeaving(textFor("player.keys.leave", "Sair"));
}

/// The episode that was stepped to is what the leaving steps record.
void PlayerViewModel::followSession() {
    if (services().appState.currentChannel()) {
        m_channel = *services().appState.currentChannel();
        Q_EMIT itemChanged();
    }
}

void PlayerViewModel::appear() {
    OrientationLock::set(landscape);
    levels()->read();
    setupAndPlay();
    controls()->resetControlsTimer();
}

void PlayerViewModel::setupAndPlay() {
    if (takesOver(m_channel)) {
        return;
    }
    PlayerManager& manager = services().playerManager;
    m_startPosition = savedPosition(services().modelContext, m_channel.id);
    recordProgressOf(m_channel);
    manager.play(m_channel, m_startPosition);
    const auto subtitleURLs = services().appState.pendingSubtitleURLs();
    services().appState.setPendingSubtitleURLs({});
    if (!subtitleURLs.empty()) {
        manager.setSubtitleURLs(subtitleURLs);
    }
}

/// By copies: the manager goes on reporting when this view has gone.
void PlayerViewModel::recordProgressOf(const Channel& channel) {
    services().playerManager.setOnProgressUpdate(
        [&context = services().modelContext, item = WatchedItem(channel)](double position, double duration) {
            saveHistoryItem(context, item, position, duration);
        });
}

void PlayerViewModel::saveProgress() {
    constexpr double unrecordedSeconds = 10.0;
    const PlayerManager& manager = services().playerManager;
    if (manager.currentTime() > unrecordedSeconds && manager.duration() > 0) {
        saveHistoryItem(services().modelContext, WatchedItem(m_channel), manager.currentTime(),
                        manager.duration());
    }
}

void PlayerViewModel::leave() {
    OrientationLock::set(portrait);
    controls()->invalidate();
    saveProgress();
    endSession();
}

QString PlayerViewModel::title() const {
    return shownText(m_channel.seriesName.value_or(m_channel.name));
}

QString PlayerViewModel::episodeLine() const {
    if (m_channel.type != "series") {
        return {};
    }
    return m_channel.episodeTitle ? shownText(*m_channel.episodeTitle)
                                  : QStringLiteral("Ep. %1").arg(m_channel.episodeNum.value_or(0));
}

bool PlayerViewModel::hasNextEpisode() const {
    return NextEpisode::exists(services().appState);
}

QString PlayerViewModel::speedText() const {
    const float speed = choices().playbackSpeed();
    return speed == 1.0F ? QString() : speedLabel(speed);
}

void PlayerViewModel::retry() {
    services().playerManager.play(m_channel, 0);
}

void PlayerViewModel::playNextEpisode() {
    auto next = NextEpisode::after(services().appState);
    if (!next) {
        return;
    }
    saveProgress();
    services().appState.setCurrentEpisodeIndex(next->index);
    services().appState.setCurrentChannel(next->item);
    recordProgressOf(next->item);
    services().playerManager.play(next->item, 0);
    services().playerManager.setSubtitleURLs(std::move(next->subtitleURLs));
}

void PlayerViewModel::minimizeToMini() {
    saveProgress();
    PlayerScreen::minimizeToMini();
}

} // namespace ondavia
