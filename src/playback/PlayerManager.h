#pragma once

#include "base/Observable.h"
#include "entities/Channel.h"
#include "platform/FSPlayer.h"
#include "platform/MPNowPlayingInfoCenter.h"
#include "platform/MPRemoteCommandCenter.h"
#include "platform/NotificationCenter.h"
#include "platform/Scheduler.h"
#include "platform/URLSession.h"
#include "playback/ArtworkLoader.h"
#include "playback/OndaviaMediaTrack.h"
#include "subtitles/SubtitleTrack.h"

#include <QObject>
#include <QPointer>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace ondavia {

class AVAudioSession;

/// What the manager works with. All of it must outlive the manager, the scheduler also every engine: an
/// engine may still be posting while the manager goes away.
struct PlayerEnvironment final {
    FSPlayerFactory makePlayer;
    NotificationCenter& notifications;
    Scheduler& scheduler;
    AVAudioSession& audioSession;
    URLSessionFactory makeSession;
    MPNowPlayingInfoCenter& nowPlayingInfoCenter;
    MPRemoteCommandCenter& remoteCommandCenter;
};

/// The one owner of the video engine. Screens read its fields, each observable on its own, and call its
/// operations; it outlives every screen, so that playback goes on while the user moves between them.
///
/// Main thread only. The engine's notifications may come from any thread: they hop here, holding the
/// manager weakly, and look at the engine in `player` again. Times are in seconds. Nothing is raised:
/// what the user must know stands in `error`.
class PlayerManager final : public QObject {
    Q_OBJECT

    /// The engine of the current item; absent when nothing plays.
    ONDAVIA_OBSERVABLE(std::shared_ptr<FSPlayer>, player, setPlayer);
    ONDAVIA_OBSERVABLE(std::optional<Channel>, currentItem, setCurrentItem);
    /// The engine is advancing.
    ONDAVIA_OBSERVABLE(bool, isPlaying, setIsPlaying, false);
    /// Last position read from the engine.
    ONDAVIA_OBSERVABLE(double, currentTime, setCurrentTime, 0.0);
    /// Last positive, finite duration read from the engine; 0 for live streams without one.
    ONDAVIA_OBSERVABLE(double, duration, setDuration, 0.0);
    /// The item last played is a live channel. Survives `stop`.
    ONDAVIA_OBSERVABLE(bool, isLive, setIsLive, false);
    ONDAVIA_OBSERVABLE(bool, isBuffering, setIsBuffering, false);
    /// Grows whenever the engine's list of streams may have changed.
    ONDAVIA_OBSERVABLE(std::int64_t, tracksNonce, setTracksNonce, 0);
    /// The user muted the engine. Survives `stop`, and the next engine starts silent.
    ONDAVIA_OBSERVABLE(bool, isMuted, setIsMuted, false);
    ONDAVIA_OBSERVABLE(std::optional<std::string>, error, setError);
    /// The video shows in the mini player. Written by the screens.
    ONDAVIA_OBSERVABLE(bool, isMiniPlayer, setIsMiniPlayer, false);
    ONDAVIA_OBSERVABLE(std::optional<SubtitleTrack>, currentSubtitleTrack, setCurrentSubtitleTrack);
    /// Subtitles are drawn by the screens instead of the engine.
    ONDAVIA_OBSERVABLE(bool, useCustomSubtitleOverlay, setUseCustomSubtitleOverlay, false);
    ONDAVIA_OBSERVABLE(std::int64_t, retryCount, setRetryCount, 0);
    /// Where the first frame sends the engine; 0 for the beginning.
    ONDAVIA_OBSERVABLE(double, pendingStartPosition, setPendingStartPosition, 0.0);
    /// The engine's volume before muting, from 0.0 to 1.0.
    ONDAVIA_OBSERVABLE(float, savedVolume, setSavedVolume, 1.0F);
    ONDAVIA_OBSERVABLE(std::shared_ptr<const MPMediaItemArtwork>, cachedArtwork, setCachedArtwork);
    /// Where it came from, or is to come from.
    ONDAVIA_OBSERVABLE(std::optional<std::string>, cachedArtworkURL, setCachedArtworkURL);
    /// Stays 0: no update is ever held back.
    ONDAVIA_OBSERVABLE(double, lastNowPlayingUpdate, setLastNowPlayingUpdate, 0.0);
    /// The picture fills its view instead of fitting into it. Applied to every new engine.
    ONDAVIA_OBSERVABLE(bool, aspectFill, setAspectFill, false);
    ONDAVIA_OBSERVABLE(std::string, selectedAspectRatio, setSelectedAspectRatio, "Original");
    /// Absolute text of the URL given to the last engine. Holds the account: never to be logged.
    ONDAVIA_OBSERVABLE(std::string, lastOpenedURL, setLastOpenedURL);
    ONDAVIA_OBSERVABLE(bool, hasLoggedFirstFrameTracks, setHasLoggedFirstFrameTracks, false);
    ONDAVIA_OBSERVABLE(std::vector<SubtitleTrack>, loadedSubtitles, setLoadedSubtitles);

public:
    static constexpr std::int64_t maxRetries = 5;

    /// Takes position and duration.
    using ProgressCallback = std::function<void(double, double)>;
    using TrackCallback = std::function<void()>;

    explicit PlayerManager(PlayerEnvironment environment);
    /// Shuts a running engine down.
    ~PlayerManager() override;

    /// The manager of this process, which the composition root has set; without one the process ends.
    [[nodiscard]] static PlayerManager& shared();
    /// Takes no ownership. The manager's end takes it back.
    static void setShared(PlayerManager* manager);

    /// Stops what plays, then plays `channel` from `startPosition`, 0 for the beginning. A text that is
    /// no URL leaves a message in `error` and nothing playing. By value: the caller's item may be the
    /// one that ends here.
    void play(Channel channel, double startPosition);
    /// Ends playback completely.
    void stop();
    void togglePlayPause();
    /// Silences the engine or restores its volume. The output volume of the device is left alone.
    void toggleMute();
    /// Ignored without an engine, while the duration is not known, and outside the item.
    void seek(double position);

    /// As the engine knows them now; none without one. Read them again when `tracksNonce` changes.
    [[nodiscard]] std::vector<OndaviaMediaTrack> availableAudioTracks() const;
    /// Those of external files first, then those of the file that plays.
    [[nodiscard]] std::vector<OndaviaMediaTrack> availableSubtitleTracks() const;
    /// Shows these subtitles; absent for none. An audio track changes nothing.
    void selectSubtitleTrack(const std::optional<OndaviaMediaTrack>& track);
    /// Loads external files in place of those of before, and shows none of them: `loadedSubtitles` follows.
    void setSubtitleURLs(std::vector<std::string> urls);
    /// "Original", "16:9", "4:3" or "Preencher"; absent is "Original".
    void setAspectRatio(const std::optional<std::string>& label);

    /// Tells the system what plays, and where it stands. To be called after a change of speed.
    void updateNowPlayingInfo();
    /// Enables the commands that the item's kind allows: of a channel the next and the previous one where
    /// there is a callback for it, of all else the ways to another position.
    void updateRemoteCommandsForCurrentMode();
    [[nodiscard]] static std::string nowPlayingTitle(const Channel& channel);
    [[nodiscard]] std::optional<std::string> nowPlayingArtist(const Channel& channel) const;
    /// Loads the item's picture for the system, unless it is there already. Silent where it cannot be had.
    void fetchArtworkIfNeeded();
    /// Plays or pauses as the system wants it.
    void setPlaysByRemote(bool plays);

    /// Called every 5 seconds of a movie or episode, after its first 10 seconds and before its last 5
    /// hundredths. Survives `stop`.
    void setOnProgressUpdate(ProgressCallback callback) { m_onProgressUpdate = std::move(callback); }
    /// What the system's "next" does; `stop` clears it.
    void setOnNextTrack(TrackCallback callback) { m_onNextTrack = std::move(callback); }
    /// What the system's "previous" does; `stop` clears it.
    void setOnPreviousTrack(TrackCallback callback) { m_onPreviousTrack = std::move(callback); }
    [[nodiscard]] const ProgressCallback& onProgressUpdate() const { return m_onProgressUpdate; }
    [[nodiscard]] const TrackCallback& onNextTrack() const { return m_onNextTrack; }
    [[nodiscard]] const TrackCallback& onPreviousTrack() const { return m_onPreviousTrack; }

private:
    using NotificationHandler = void (PlayerManager::*)(const Notification&);

    void configureAudioSession();
    [[nodiscard]] std::shared_ptr<FSPlayer> makeEngine() const;
    void observe(const FSPlayer& engine);
    void prepareLater(const std::shared_ptr<FSPlayer>& engine);
    void invalidateTimers();
    void releaseEngine();
    void selectExternalSubtitle(const std::string& url);
    void cancelSubtitleLoad();
    void setupRemoteCommands();
    void clearNowPlaying();

    void startTimeUpdates();
    void updateTime();
    void startProgressSaving();
    void reportProgress();

    // What the engine tells, after the hop to the main thread.
    void playbackStateChanged(const Notification& notification);
    void loadStateChanged(const Notification& notification);
    void playbackDidFinish(const Notification& notification);
    void firstFrameRendered(const Notification& notification);
    void preparedToPlay(const Notification& notification);
    void selectedStreamDidChange(const Notification& notification);

    void handlePlaybackError();
    void logFirstFrameTrackDump();

    PlayerEnvironment m_environment;
    std::unique_ptr<ScheduledTimer> m_progressSaveTimer;
    std::unique_ptr<ScheduledTimer> m_timeUpdateTimer;
    std::optional<std::stop_source> m_subtitleLoadTask;
    ArtworkLoader m_artworkLoader;
    ProgressCallback m_onProgressUpdate;
    TrackCallback m_onNextTrack;
    TrackCallback m_onPreviousTrack;
};

} // namespace ondavia
