#pragma once

#include <QVariantMap>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QQuickItem;

namespace ondavia {

class NotificationCenter;

inline constexpr const char* FSPlayerPlaybackStateDidChangeNotification =
    "FSPlayerPlaybackStateDidChangeNotification";
inline constexpr const char* FSPlayerLoadStateDidChangeNotification =
    "FSPlayerLoadStateDidChangeNotification";
inline constexpr const char* FSPlayerDidFinishNotification = "FSPlayerDidFinishNotification";
inline constexpr const char* FSPlayerFirstVideoFrameRenderedNotification =
    "FSPlayerFirstVideoFrameRenderedNotification";
inline constexpr const char* FSPlayerIsPreparedToPlayNotification = "FSPlayerIsPreparedToPlayNotification";
inline constexpr const char* FSPlayerSelectedStreamDidChangeNotification =
    "FSPlayerSelectedStreamDidChangeNotification";
inline constexpr const char* FSPlayerDidFinishReasonUserInfoKey = "FSPlayerDidFinishReasonUserInfoKey";

enum class FSPlaybackState {
    Stopped = 0,
    Playing = 1,
    Paused = 2,
    Interrupted = 3,
    SeekingForward = 4,
    SeekingBackward = 5
};
enum class FSScalingMode { Fit = 0, Fill = 1 };
/// Reasons of FSPlayerDidFinishNotification.
enum class FSFinishReason { PlaybackEnded = 0, PlaybackError = 1 };

/// Bits of `loadState`.
inline constexpr unsigned FSLoadStatePlayable = 1U << 0;
inline constexpr unsigned FSLoadStatePlaythroughOK = 1U << 1;
inline constexpr unsigned FSLoadStateStalled = 1U << 2;

/// Options of an engine under the names that the system sets them by, in the order they were set.
class FSOptions final {
public:
    enum class Category { Player, Format };
    struct Entry final {
        Category category;
        std::string key;
        std::string value;
        bool operator==(const Entry&) const = default;
    };

    [[nodiscard]] static FSOptions optionsByDefault() { return {}; }
    void setPlayerOptionIntValue(std::int64_t value, const std::string& key) {
        m_entries.push_back({Category::Player, key, std::to_string(value)});
    }
    void setPlayerOptionValue(const std::string& value, const std::string& key) {
        m_entries.push_back({Category::Player, key, value});
    }
    void setFormatOptionIntValue(std::int64_t value, const std::string& key) {
        m_entries.push_back({Category::Format, key, std::to_string(value)});
    }
    [[nodiscard]] const std::vector<Entry>& entries() const { return m_entries; }

private:
    std::vector<Entry> m_entries;
};

/// What the engine knows of the streams: text keys, values of any type. The keys are `stream_idx`,
/// `type` ("video", "audio", "timedtext"), `codec_name`, `codec_profile`, `bitrate`, `language`, `title`,
/// `width`, `height` and `sample_rate`; `mediaMeta` holds the list "streams" of such dictionaries. What a
/// stream does not say is missing, and so is `codec_profile` everywhere with an older libmpv (0.35, say),
/// which does not tell profiles.
struct FSMonitor final {
    QVariantMap videoMeta;
    QVariantMap audioMeta;
    QVariantMap subtitleMeta;
    QVariantMap mediaMeta;
};

/// How playback goes, for whoever asks why a picture does not come. Empty texts and zeros are what is not
/// known (yet).
struct FSStatistics final {
    /// Names of codecs, such as "h264".
    std::string videoCodec;
    std::string audioCodec;
    /// Of the picture as it is decoded.
    std::int64_t width = 0;
    std::int64_t height = 0;
    /// Pictures a second, by their own times.
    double frameRate = 0;
    /// Of picture and sound together, in bits a second.
    std::int64_t bitrate = 0;
    /// "software", or the name of the hardware's interface, such as "vaapi-copy".
    std::string decoder;
    /// Pictures that came too late to be shown.
    std::int64_t droppedFrames = 0;
    /// What has been read ahead.
    double secondsBuffered = 0;
    /// The status line of the server's last answer, and what became of it if it failed. A foreign text of
    /// bounded length, without the address.
    std::string serverAnswer;

    bool operator==(const FSStatistics&) const = default;
};

/// The engine's video surface. Main thread.
class FSPlayerView {
public:
    virtual ~FSPlayerView() = default;
    /// The item that shows the picture; owned by the view. Reparent it to move the picture.
    [[nodiscard]] virtual QQuickItem* item() = 0;
    /// Display aspect ratio asked for; 0 means the stream's own.
    [[nodiscard]] virtual float darPreference() const = 0;
    virtual void setDarPreference(float ratio) = 0;
    /// How much of the view's height something lies over at the bottom, from 0 to 1: subtitles stand above
    /// it.
    virtual void setCoveredBottom(double fraction) = 0;
    /// Draws the current picture again, for changes made while paused.
    virtual void setNeedsRefreshCurrentPic() = 0;
};

/// The video engine: one object plays one URL, once. On Linux libmpv.
///
/// All operations are called on the main thread and return at once, whatever the connection does; state
/// is what the engine reported last. Notifications are posted on the notification centre given at
/// construction, with the engine as the object, from any thread. After `shutdown` nothing is posted.
class FSPlayer {
public:
    virtual ~FSPlayer() = default;

    virtual void setScalingMode(FSScalingMode mode) = 0;
    /// Told before `prepareToPlay`: a live item has no end, so that each end of it is a failure.
    virtual void setIsLive(bool live) = 0;
    /// With true, playback starts by itself when prepared.
    virtual void setShouldAutoplay(bool autoplay) = 0;
    /// Never absent; lives as long as the engine.
    [[nodiscard]] virtual FSPlayerView* view() = 0;
    /// From 0.0 to 1.0.
    virtual void setPlaybackVolume(float volume) = 0;
    [[nodiscard]] virtual float playbackVolume() const = 0;
    /// Opens the URL.
    virtual void prepareToPlay() = 0;
    virtual void play() = 0;
    virtual void pause() = 0;
    /// Ends everything; the engine is released afterwards.
    virtual void shutdown() = 0;
    /// Seconds.
    [[nodiscard]] virtual double currentPlaybackTime() const = 0;
    /// Does nothing where the stream cannot be sought.
    virtual void setCurrentPlaybackTime(double seconds) = 0;
    /// Seconds; 0 when not known.
    [[nodiscard]] virtual double duration() const = 0;
    [[nodiscard]] virtual FSPlaybackState playbackState() const = 0;
    /// FSLoadState bits.
    [[nodiscard]] virtual unsigned loadState() const = 0;
    [[nodiscard]] virtual bool isPlaying() const = 0;
    /// Speed; 1.0 is normal.
    [[nodiscard]] virtual float playbackRate() const = 0;
    virtual void setPlaybackRate(float rate) = 0;
    [[nodiscard]] virtual FSMonitor monitor() const = 0;
    /// As they were when they were last asked for: asking has them read anew, and waits for nothing.
    [[nodiscard]] virtual FSStatistics statistics() const = 0;

    /// Makes the stream with this index the active one of its type.
    virtual void exchangeSelectedStream(std::int32_t streamIndex) = 0;
    /// Switches the active stream of a type ("video", "audio", "timedtext") off; nothing open is no fault.
    virtual void closeCurrentStream(const std::string& streamType) = 0;
    /// Adds external subtitle files without activating one. Over HTTP and HTTPS alone, whatever plays: a
    /// provider names them, and must not have a file of this machine's read. An engine may leave some out
    /// until they are activated.
    virtual void loadSubtitlesOnly(const std::vector<std::string>& urls) = 0;
    /// Adds an external subtitle file if it is new, and activates it.
    virtual void loadThenActiveSubtitle(const std::string& url) = 0;
};

/// Creates the engine for a URL's absolute text.
using FSPlayerFactory =
    std::function<std::shared_ptr<FSPlayer>(const std::string& content, const FSOptions& options)>;

} // namespace ondavia
