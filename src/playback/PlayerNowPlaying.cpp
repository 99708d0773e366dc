// What the system shows of what plays, and what it may ask for.
#include "playback/PlayerManager.h"

#include <QUrl>

#include <algorithm>
#include <qcoro/qcorofuture.h>

namespace ondavia {
namespace {

constexpr double skipSeconds = 10.0;

using Artwork = std::shared_ptr<const MPMediaItemArtwork>;
using RemoteWork = void (*)(PlayerManager&, const MPRemoteCommandEvent&);

/// Commands may come from any thread: the work is done on the main one, if the manager is still there.
/// Whether it finds anything to do is not for the sender to know.
MPRemoteCommand::Handler onMainThread(Scheduler& scheduler, PlayerManager* target, RemoteWork work) {
    return [&scheduler, manager = QPointer(target), work](const MPRemoteCommandEvent& event) {
        scheduler.onMainThread([manager, work, event] {
            if (manager) {
                work(*manager, event);
            }
        });
        return MPRemoteCommandHandlerStatus::success;
    };
}

double skipOf(const MPRemoteCommandEvent& event) {
    const auto* skip = std::get_if<MPSkipIntervalCommandEvent>(&event);
    return skip != nullptr ? skip->interval : skipSeconds;
}

/// Takes no event but one that says where to go.
MPRemoteCommand::Handler takingPositions(MPRemoteCommand::Handler handler) {
    return [handler = std::move(handler)](const MPRemoteCommandEvent& event) {
        return std::holds_alternative<MPChangePlaybackPositionCommandEvent>(event)
                   ? handler(event)
                   : MPRemoteCommandHandlerStatus::commandFailed;
    };
}

/// From a copy: the callback may put another one in its place.
void call(const PlayerManager::TrackCallback& callback) {
    if (const auto work = callback) {
        work();
    }
}

/// An artwork that comes after a change of item belongs to nobody.
QCoro::Task<> showArtwork(QPointer<PlayerManager> manager, QFuture<Artwork> loading, std::string itemId) {
    const Artwork artwork = co_await loading;
    if (artwork && manager && manager->currentItem() && manager->currentItem()->id == itemId) {
        manager->setCachedArtwork(artwork);
        manager->updateNowPlayingInfo();
    }
}

} // namespace

void PlayerManager::setupRemoteCommands() {
    MPRemoteCommandCenter& commands = m_environment.remoteCommandCenter;
    const auto work = [this](RemoteWork task) { return onMainThread(m_environment.scheduler, this, task); };
    commands.playCommand.addTarget(work([](auto& manager, auto&) { manager.setPlaysByRemote(true); }));
    commands.pauseCommand.addTarget(work([](auto& manager, auto&) { manager.setPlaysByRemote(false); }));
    commands.togglePlayPauseCommand.addTarget(work([](auto& manager, auto&) { manager.togglePlayPause(); }));
    commands.nextTrackCommand.addTarget(work([](auto& manager, auto&) { call(manager.onNextTrack()); }));
    commands.previousTrackCommand.addTarget(
        work([](auto& manager, auto&) { call(manager.onPreviousTrack()); }));
    commands.skipForwardCommand.setPreferredIntervals({skipSeconds});
    commands.skipForwardCommand.addTarget(
        work([](auto& manager, auto& event) { manager.seek(manager.currentTime() + skipOf(event)); }));
    commands.skipBackwardCommand.setPreferredIntervals({skipSeconds});
    commands.skipBackwardCommand.addTarget(work([](auto& manager, auto& event) {
        manager.seek(std::max(0.0, manager.currentTime() - skipOf(event)));
    }));
    commands.changePlaybackPositionCommand.addTarget(takingPositions(work([](auto& manager, auto& event) {
        manager.seek(std::get<MPChangePlaybackPositionCommandEvent>(event).positionTime);
    })));
}

void PlayerManager::setPlaysByRemote(bool plays) {
    if (player() && plays) {
        player()->play();
    } else if (player()) {
        player()->pause();
    }
    setIsPlaying(plays);
    updateNowPlayingInfo();
}

void PlayerManager::updateRemoteCommandsForCurrentMode() {
    MPRemoteCommandCenter& commands = m_environment.remoteCommandCenter;
    commands.nextTrackCommand.setEnabled(isLive() && m_onNextTrack);
    commands.previousTrackCommand.setEnabled(isLive() && m_onPreviousTrack);
    commands.skipForwardCommand.setEnabled(!isLive());
    commands.skipBackwardCommand.setEnabled(!isLive());
    commands.changePlaybackPositionCommand.setEnabled(!isLive());
}

std::string PlayerManager::nowPlayingTitle(const Channel& channel) {
    const bool hasOwnTitle = channel.episodeTitle && !channel.episodeTitle->empty();
    return hasOwnTitle ? *channel.episodeTitle : channel.name;
}

std::optional<std::string> PlayerManager::nowPlayingArtist(const Channel& channel) const {
    if (isLive()) {
        return "AO VIVO";
    }
    if (channel.seriesName && !channel.seriesName->empty()) {
        return channel.seasonNum && channel.episodeNum
                   ? *channel.seriesName + " — S" + std::to_string(*channel.seasonNum) + "E" +
                         std::to_string(*channel.episodeNum)
                   : *channel.seriesName;
    }
    return channel.genre && !channel.genre->empty() ? channel.genre : std::nullopt;
}

void PlayerManager::updateNowPlayingInfo() {
    if (!currentItem()) {
        return;
    }
    MPNowPlayingInfo info;
    info.title = nowPlayingTitle(*currentItem());
    if (isPlaying()) {
        info.playbackRate = player() ? player()->playbackRate() : 1.0;
    }
    info.isLiveStream = isLive();
    info.artist = nowPlayingArtist(*currentItem());
    if (!isLive()) {
        info.elapsedPlaybackTime = currentTime();
        info.playbackDuration = duration() > 0 ? std::optional(duration()) : std::nullopt;
    }
    info.artwork = cachedArtwork();
    m_environment.nowPlayingInfoCenter.setNowPlayingInfo(std::move(info));
}

void PlayerManager::fetchArtworkIfNeeded() {
    if (!currentItem()) {
        return;
    }
    // One that is there but empty hides the other.
    const auto source = currentItem()->backdrop ? currentItem()->backdrop : currentItem()->logo;
    if (!source || source->empty() || (cachedArtworkURL() == source && cachedArtwork())) {
        return;
    }
    setCachedArtworkURL(source);
    if (const auto url = makeURL(*source)) {
        // It ends by itself and holds the manager weakly.
        (void)showArtwork(QPointer(this), m_artworkLoader.load(*url), currentItem()->id);
    }
}

void PlayerManager::clearNowPlaying() {
    m_environment.nowPlayingInfoCenter.setNowPlayingInfo(std::nullopt);
    m_artworkLoader.cancel();
    setCachedArtwork(nullptr);
    setCachedArtworkURL(std::nullopt);
    m_onNextTrack = nullptr;
    m_onPreviousTrack = nullptr;
}

} // namespace ondavia
