#include "playback/PlayerManager.h"

#include "base/FatalFault.h"
#include "base/LocalizedText.h"
#include "platform/AVAudioSession.h"
#include "platform/URLSession.h"

#include <QUrl>

#include <cmath>

namespace ondavia {
namespace {

constexpr double timeUpdatePeriod = 0.5;
constexpr double progressSavePeriod = 5.0;
/// A position moves by more than this to count, so that a paused player wakes no screen.
constexpr double smallestTimeStep = 0.01;
constexpr double firstReportedPosition = 10.0;
constexpr double lastReportedFraction = 0.95;

PlayerManager* sharedManager = nullptr;

/// The same for live channels and for movies.
FSOptions engineOptions() {
    auto options = FSOptions::optionsByDefault();
    options.setPlayerOptionIntValue(0, "videotoolbox");
    options.setPlayerOptionIntValue(15000000, "max-buffer-size");
    options.setFormatOptionIntValue(15000000, "analyzeduration");
    options.setPlayerOptionIntValue(1, "framedrop");
    options.setPlayerOptionValue("fcc-_es2", "overlay-format");
    return options;
}

} // namespace

PlayerManager::PlayerManager(PlayerEnvironment environment)
    : m_environment(std::move(environment))
    , m_artworkLoader(m_environment.makeSession) {
    setupRemoteCommands();
}

PlayerManager::~PlayerManager() {
    cancelSubtitleLoad();
    releaseEngine();
    if (sharedManager == this) {
        sharedManager = nullptr;
    }
}

PlayerManager& PlayerManager::shared() {
    if (sharedManager == nullptr) {
        fatalFault("no player manager has been made");
    }
    return *sharedManager;
}

void PlayerManager::setShared(PlayerManager* manager) {
    sharedManager = manager;
}

void PlayerManager::play(Channel channel, double startPosition) {
    stop();
    const auto url = makeURL(channel.url);
    if (!url) {
        setError(localizedText("player.invalidURL", "URL invalido"));
        return;
    }
    setLastOpenedURL(url->toEncoded().toStdString());
    const bool live = channel.type == "live";
    setCurrentItem(std::move(channel));
    setIsLive(live);
    setError(std::nullopt);
    setRetryCount(0);
    setIsBuffering(true);
    setPendingStartPosition(startPosition);
    setHasLoggedFirstFrameTracks(false);
    configureAudioSession();
    const auto engine = makeEngine();
    setPlayer(engine);
    observe(*engine);
    prepareLater(engine);
}

void PlayerManager::stop() {
    invalidateTimers();
    cancelSubtitleLoad();
    releaseEngine();
    setPlayer(nullptr);
    setIsPlaying(false);
    setCurrentItem(std::nullopt);
    setCurrentTime(0);
    setDuration(0);
    setIsBuffering(false);
    setError(std::nullopt);
    setPendingStartPosition(0);
    setHasLoggedFirstFrameTracks(false);
    setLoadedSubtitles({});
    setCurrentSubtitleTrack(std::nullopt);
    clearNowPlaying();
}

void PlayerManager::togglePlayPause() {
    const bool plays = isPlaying();
    if (player() && plays) {
        player()->pause();
    } else if (player()) {
        player()->play();
    }
    setIsPlaying(!plays);
    updateNowPlayingInfo();
}

void PlayerManager::toggleMute() {
    if (isMuted()) {
        if (player()) {
            player()->setPlaybackVolume(savedVolume() > 0.0F ? savedVolume() : 1.0F);
        }
        setIsMuted(false);
        return;
    }
    const float volume = player() ? player()->playbackVolume() : 0.0F;
    setSavedVolume(volume > 0.0F ? volume : 1.0F);
    if (player()) {
        player()->setPlaybackVolume(0.0F);
    }
    setIsMuted(true);
}

void PlayerManager::seek(double position) {
    if (!player() || !(duration() > 0 && position >= 0 && position <= duration())) {
        return;
    }
    player()->setCurrentPlaybackTime(position);
    setCurrentTime(position);
    updateNowPlayingInfo();
}

void PlayerManager::configureAudioSession() {
    // Sound may come out all the same, and if it does not, the picture still does: a refusal changes nothing.
    (void)m_environment.audioSession.setCategory(AVAudioSessionCategoryPlayback,
                                                 AVAudioSessionModeMoviePlayback);
    (void)m_environment.audioSession.setActive(true);
}

std::shared_ptr<FSPlayer> PlayerManager::makeEngine() const {
    auto engine = m_environment.makePlayer(lastOpenedURL(), engineOptions());
    engine->setIsLive(isLive());
    engine->setScalingMode(aspectFill() ? FSScalingMode::Fill : FSScalingMode::Fit);
    engine->setShouldAutoplay(true);
    if (engine->view() == nullptr) {
        fatalFault("the video engine has no view");
    }
    if (isMuted()) {
        engine->setPlaybackVolume(0.0F);
    }
    return engine;
}

void PlayerManager::prepareLater(const std::shared_ptr<FSPlayer>& engine) {
    m_environment.scheduler.onMainThread([manager = QPointer(this), weakEngine = std::weak_ptr(engine)] {
        const auto prepared = weakEngine.lock();
        // An engine that was replaced meanwhile is left alone.
        if (!manager || !prepared || manager->player() != prepared) {
            return;
        }
        prepared->prepareToPlay();
        manager->startTimeUpdates();
        if (!manager->isLive()) {
            manager->startProgressSaving();
        }
        manager->updateRemoteCommandsForCurrentMode();
        manager->updateNowPlayingInfo();
        manager->fetchArtworkIfNeeded();
    });
}

void PlayerManager::invalidateTimers() {
    m_timeUpdateTimer.reset();
    m_progressSaveTimer.reset();
}

void PlayerManager::releaseEngine() {
    if (player()) {
        m_environment.notifications.removeObserver(this, player().get());
        player()->shutdown();
    }
}

void PlayerManager::startTimeUpdates() {
    m_timeUpdateTimer = m_environment.scheduler.repeating(timeUpdatePeriod, [manager = QPointer(this)] {
        if (manager && manager->player()) {
            manager->updateTime();
        }
    });
}

void PlayerManager::updateTime() {
    const double position = player()->currentPlaybackTime();
    if (std::isfinite(position) && position >= 0 && std::abs(position - currentTime()) > smallestTimeStep) {
        setCurrentTime(position);
    }
    // A screen that follows the time may have ended playback.
    const double length = player() ? player()->duration() : 0;
    if (std::isfinite(length) && length > 0) {
        setDuration(length);
    }
}

void PlayerManager::startProgressSaving() {
    m_progressSaveTimer = m_environment.scheduler.repeating(progressSavePeriod, [manager = QPointer(this)] {
        if (manager) {
            manager->reportProgress();
        }
    });
}

void PlayerManager::reportProgress() {
    const bool isWorthSaving = currentItem() && currentTime() > firstReportedPosition && duration() > 0 &&
                               currentTime() / duration() < lastReportedFraction;
    // From a copy: the callback may put another one in its place.
    if (const auto report = m_onProgressUpdate; isWorthSaving && report) {
        report(currentTime(), duration());
    }
}

} // namespace ondavia
