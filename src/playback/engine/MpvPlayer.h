#pragma once

#include "platform/FSPlayer.h"
#include "playback/engine/ExternalSubtitles.h"
#include "playback/engine/MpvHandle.h"
#include "playback/engine/MpvOptions.h"
#include "playback/engine/MpvPlayerFactory.h"
#include "playback/engine/MpvStatistics.h"
#include "playback/engine/PlaybackModel.h"
#include "playback/engine/PublishedStream.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct mpv_event;

namespace ondavia::engine {

class EngineShelf;
class MpvVideoItem;
class VideoRenderer;

/// The engine on libmpv, and its own view.
///
/// Lives on the main thread, where mpv's events are taken and all notifications are posted, so that what
/// is read there is one consistent state and nothing is posted once `shutdown` returned. Commands go to
/// mpv asynchronously. The stream is opened at once; before tracks are chosen mpv waits, by a hook, until
/// the container's length was read and there is something to draw on.
class MpvPlayer final : public QObject,
                        public FSPlayer,
                        public FSPlayerView,
                        public std::enable_shared_from_this<MpvPlayer> {
    Q_OBJECT

public:
    MpvPlayer(NotificationCenter& center, MpvOutputs outputs, std::shared_ptr<EngineShelf> shelf,
              std::string content, const FSOptions& options);
    ~MpvPlayer() override;

    void setIsLive(bool live) override { m_isLive = live; }
    void setScalingMode(FSScalingMode mode) override;
    void setShouldAutoplay(bool autoplay) override;
    [[nodiscard]] FSPlayerView* view() override { return this; }
    void setPlaybackVolume(float volume) override;
    [[nodiscard]] float playbackVolume() const override { return m_volume; }
    void prepareToPlay() override;
    void play() override;
    void pause() override;
    void shutdown() override;
    [[nodiscard]] double currentPlaybackTime() const override;
    void setCurrentPlaybackTime(double seconds) override;
    [[nodiscard]] double duration() const override;
    [[nodiscard]] FSPlaybackState playbackState() const override { return m_playbackState; }
    [[nodiscard]] unsigned loadState() const override { return m_loadState; }
    [[nodiscard]] bool isPlaying() const override { return m_playbackState == FSPlaybackState::Playing; }
    [[nodiscard]] float playbackRate() const override { return m_rate; }
    void setPlaybackRate(float rate) override;
    [[nodiscard]] FSMonitor monitor() const override { return monitorOf(m_state.tracks); }
    [[nodiscard]] FSStatistics statistics() const override;
    void exchangeSelectedStream(std::int32_t streamIndex) override;
    void closeCurrentStream(const std::string& streamType) override;
    void loadSubtitlesOnly(const std::vector<std::string>& urls) override;
    void loadThenActiveSubtitle(const std::string& url) override;

    [[nodiscard]] QQuickItem* item() override;
    [[nodiscard]] float darPreference() const override { return m_aspectRatio; }
    void setDarPreference(float ratio) override;
    void setCoveredBottom(double fraction) override;
    void setNeedsRefreshCurrentPic() override;

private:
    /// Ids of what is asked for outside the table of properties, whose ids are small.
    enum class Answer : std::uint64_t {
        TracksAtBeginning = 1000,
        DurationAtOpening,
        PositionNow,
        DurationNow,
        SeekableAtSeek,
        SeekableInCacheAtSeek
    };

    /// False when no answer will come.
    bool ask(Answer answer) const;
    void startMpv();
    /// Has what mpv tells taken on the main thread.
    void listen();
    void load();
    void loadFile(const std::string& address);
    void applySettings();
    /// The handle of before is still busy with what it played: this engine does not wait for it any longer.
    void replaceHandle();
    void releaseHandle();
    void setPaused(bool paused);
    /// To m_seekTarget, which mpv is asked about first.
    void considerSeek();
    void seek();
    /// Has mpv tell position and length, unless it is about to.
    void askTimes() const;
    void askTimesAnew() const;
    [[nodiscard]] bool takesSubtitles() const;
    /// `type` is mpv's, `value` a track's number or "no".
    void setTrack(const std::string& type, const MpvValue& value);

    /// Takes everything that mpv has to say. Runs in a turn of the main loop of its own.
    void takeEvents();
    void handle(const mpv_event& event);
    void handleReply(Answer answer, const mpv_event& event);
    void handleStart();
    void handleLoaded();
    void takeTimes(Answer answer, const double* seconds);
    void takePosition(double seconds);
    /// Whether a seek is still on its way: until then the position is the one that was asked for.
    [[nodiscard]] bool isUnderWay(double seconds, PlaybackClock::Time now) const;
    /// The tracks as they are once playback has begun.
    void handleBeginning(TrackList tracks);
    void handleEndOfFile(const mpv_event& event);
    void handleLogMessage(const mpv_event& event) const;

    void awaitOutput();
    void openOutput();
    void handleRendererReady();
    void handleRendererLost();

    /// Draws the conclusions from what was reported: stage, states, notifications.
    void settle();
    void settleBeginning();
    void settleEnd();
    [[nodiscard]] FSFinishReason judgeEnd() const;
    void runClock();
    void finish(FSFinishReason reason);
    void publishStates();
    void post(const char* name, QVariantMap userInfo = {});

    NotificationCenter& m_center;
    const MpvOutputs m_outputs;
    const std::shared_ptr<EngineShelf> m_shelf;
    const std::string m_content;
    /// What mpv is started with.
    const std::vector<MpvOption> m_options;
    /// Null after `shutdown`.
    std::shared_ptr<MpvHandle> m_handle;
    /// Of the engine that had the handle before, until the item has it.
    std::shared_ptr<VideoRenderer> m_formerRenderer;
    /// Runs while the handle may still be closing what it played before.
    QTimer m_closingTimeout;
    /// Made when first asked for: without a window there is none.
    std::unique_ptr<MpvVideoItem> m_item;
    std::atomic<bool> m_eventsAnnounced = false;
    /// Null for what mpv or FFmpeg open themselves.
    std::unique_ptr<PublishedStream> m_stream;
    /// Of the stream that was given over to FFmpeg.
    std::string m_playlistAnswer;
    mutable MpvStatistics m_statistics;
    ExternalSubtitles m_subtitles;

    bool m_isLive = false;
    MpvState m_state;
    PlaybackClock m_clock;
    /// Asked of mpv and not answered yet.
    mutable int m_timesAsked = 0;
    bool m_judgesEnd = false;
    std::optional<double> m_seekTarget;
    /// Where mpv was sent last, and when, until it is there.
    std::optional<double> m_soughtPosition;
    PlaybackClock::Time m_soughtAt;
    Stage m_stage = Stage::Opening;
    SeekDirection m_lastSeek = SeekDirection::Forward;
    FSPlaybackState m_playbackState = FSPlaybackState::Stopped;
    unsigned m_loadState = 0;
    TrackList m_publishedTracks;

    bool m_wasPrepared = false;
    bool m_mayBeClosing = false;
    /// The handle is done with whatever it played before.
    bool m_hasBegun = false;
    bool m_paused = false;
    bool m_wasShutDown = false;
    bool m_drewFrame = false;
    bool m_toldFirstFrame = false;
    bool m_playbackBegan = false;

    /// mpv waits in its hook for `openOutput`.
    bool m_awaitsOutput = false;
    QTimer m_outputTimeout;
    bool m_rendererReady = false;
    bool m_drawsNothing = false;
    /// The track that played when a renderer was last lost.
    std::optional<std::int64_t> m_interruptedVideo;

    float m_volume = 1;
    float m_rate = 1;
    float m_aspectRatio = 0;
    double m_coveredBottom = 0;
    FSScalingMode m_scalingMode = FSScalingMode::Fit;
};

} // namespace ondavia::engine
