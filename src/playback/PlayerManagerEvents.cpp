// What the engine tells the manager, and what follows from a failure.
#include "playback/PlayerManager.h"

#include "base/LocalizedText.h"
#include "playback/StreamMeta.h"
#include "playback/TrackDump.h"

#include <algorithm>
#include <cmath>

namespace ondavia {
namespace {

constexpr double longestRetryDelay = 10.0;

/// The integer under the reason's key; -1 when there is none.
std::int64_t finishReason(const Notification& notification) {
    const QVariant reason =
        notification.userInfo.value(QString::fromLatin1(FSPlayerDidFinishReasonUserInfoKey));
    return isInteger(reason) ? reason.toLongLong() : -1;
}

/// Where the playback got to: a start that has not come to its first picture has the place it was to go to.
double reachedPosition(const PlayerManager& manager) {
    return manager.pendingStartPosition() > 0 ? manager.pendingStartPosition() : manager.currentTime();
}

/// Plays, after the delay, whatever is the current item then.
QCoro::Task<> retryAfter(Scheduler* scheduler, double delay, QPointer<PlayerManager> manager) {
    const bool slept = co_await scheduler->sleep(delay);
    if (slept && manager && manager->currentItem()) {
        manager->play(*manager->currentItem(), reachedPosition(*manager));
    }
}

} // namespace

void PlayerManager::observe(const FSPlayer& engine) {
    const auto add = [this, &engine](const char* name, NotificationHandler handle) {
        m_environment.notifications.addObserver(this, name, &engine,
                                                [scheduler = &m_environment.scheduler,
                                                 manager = QPointer(this),
                                                 handle](const Notification& notification) {
                                                    scheduler->onMainThread([manager, handle, notification] {
                                                        if (manager) {
                                                            (manager->*handle)(notification);
                                                        }
                                                    });
                                                });
    };
    add(FSPlayerPlaybackStateDidChangeNotification, &PlayerManager::playbackStateChanged);
    add(FSPlayerLoadStateDidChangeNotification, &PlayerManager::loadStateChanged);
    add(FSPlayerDidFinishNotification, &PlayerManager::playbackDidFinish);
    add(FSPlayerFirstVideoFrameRenderedNotification, &PlayerManager::firstFrameRendered);
    add(FSPlayerIsPreparedToPlayNotification, &PlayerManager::preparedToPlay);
    add(FSPlayerSelectedStreamDidChangeNotification, &PlayerManager::selectedStreamDidChange);
}

void PlayerManager::playbackStateChanged(const Notification& /*notification*/) {
    if (!player()) {
        return;
    }
    switch (player()->playbackState()) {
    case FSPlaybackState::Playing:
        setIsPlaying(true);
        setIsBuffering(false);
        setError(std::nullopt);
        updateNowPlayingInfo();
        break;
    case FSPlaybackState::Paused:
        setIsPlaying(false);
        updateNowPlayingInfo();
        break;
    case FSPlaybackState::Stopped:
    case FSPlaybackState::Interrupted:
        setIsPlaying(false);
        break;
    case FSPlaybackState::SeekingForward:
    case FSPlaybackState::SeekingBackward:
        break;
    }
}

void PlayerManager::loadStateChanged(const Notification& /*notification*/) {
    const unsigned state = player() ? player()->loadState() : 0U;
    if ((state & FSLoadStateStalled) != 0) {
        setIsBuffering(true);
    } else if ((state & (FSLoadStatePlayable | FSLoadStatePlaythroughOK)) != 0) {
        setIsBuffering(false);
    }
}

void PlayerManager::playbackDidFinish(const Notification& notification) {
    if (finishReason(notification) == static_cast<std::int64_t>(FSFinishReason::PlaybackError)) {
        handlePlaybackError();
    } else {
        setIsPlaying(false);
    }
}

void PlayerManager::firstFrameRendered(const Notification& /*notification*/) {
    setIsBuffering(false);
    if (pendingStartPosition() > 0 && player()) {
        player()->setCurrentPlaybackTime(pendingStartPosition());
        setPendingStartPosition(0);
    }
    logFirstFrameTrackDump();
}

void PlayerManager::preparedToPlay(const Notification& /*notification*/) {
    setTracksNonce(tracksNonce() + 1);
}

void PlayerManager::selectedStreamDidChange(const Notification& /*notification*/) {
    setTracksNonce(tracksNonce() + 1);
}

void PlayerManager::handlePlaybackError() {
    if (retryCount() >= maxRetries || !currentItem()) {
        setError(localizedText("player.error", "Erro de reproducao"));
        stop();
        return;
    }
    setRetryCount(retryCount() + 1);
    setIsBuffering(true);
    setError(std::nullopt);
    // play() resets the count, so a stream that keeps failing is tried again every second for as long
    // as the user stays with it.
    const double delay = std::min(std::exp2(retryCount() - 1), longestRetryDelay);
    // Nobody waits for the retry; it holds the manager weakly and ends by itself.
    (void)retryAfter(&m_environment.scheduler, delay, QPointer(this));
}

void PlayerManager::logFirstFrameTrackDump() {
    if (hasLoggedFirstFrameTracks() || !player()) {
        return;
    }
    setHasLoggedFirstFrameTracks(true);
    logTrackDump(player()->monitor());
}

} // namespace ondavia
