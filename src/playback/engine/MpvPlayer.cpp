#include "playback/engine/MpvPlayer.h"

#include "base/AppLogger.h"
#include "playback/engine/MpvHandle.h"
#include "playback/engine/MpvVideoItem.h"
#include "playback/engine/PublishedStream.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace ondavia::engine {
namespace {

/// What runs out when an engine plays that nobody shows: a picture is not waited for any longer.
constexpr std::chrono::seconds outputPatience{1};

std::vector<MpvOption> outputOptions(MpvOutputs outputs) {
    if (outputs == MpvOutputs::Window) {
        // The sound server, or the bare device where there is none. Nothing is loaded to hand decoded
        // pictures to OpenGL inside a graphics card: hardware decoding copies them.
        return {{"vo", "libmpv"}, {"ao", "pulse,alsa"}, {"gpu-hwdec-interop", "no"}};
    }
    return {{"vo", "null"}, {"ao", "null"}};
}

} // namespace

MpvPlayer::MpvPlayer(NotificationCenter& center, MpvOutputs outputs, std::string content,
                     const FSOptions& options)
    : m_center(center)
    , m_outputs(outputs)
    , m_content(std::move(content))
    , m_drawsNothing(outputs == MpvOutputs::Null) {
    m_outputTimeout.setSingleShot(true);
    connect(&m_outputTimeout, &QTimer::timeout, this, &MpvPlayer::openOutput);
    try {
        startMpv(options);
    } catch (const std::runtime_error& error) {
        // prepareToPlay reports the failure to whoever observes by then.
        AppLogger::player.error("No video engine: %{public}s", {error.what()});
    }
}

MpvPlayer::~MpvPlayer() {
    shutdown();
}

void MpvPlayer::startMpv(const FSOptions& options) {
    auto all = baseOptions();
    std::ranges::move(accessOptions(m_content), std::back_inserter(all));
    std::ranges::move(outputOptions(m_outputs), std::back_inserter(all));
    std::ranges::move(translated(options), std::back_inserter(all));
    m_handle = MpvHandle::create(all);
    observeProperties(*m_handle);
    m_handle->requestHook("on_preloaded");
    m_handle->setWakeup([this] {
        if (!m_eventsAnnounced.exchange(true)) {
            QMetaObject::invokeMethod(this, &MpvPlayer::takeEvents, Qt::QueuedConnection);
        }
    });
}

void MpvPlayer::prepareToPlay() {
    if (std::exchange(m_wasPrepared, true)) {
        return;
    }
    if (m_handle == nullptr || !isPlayableAddress(m_content)) {
        AppLogger::player.error("The engine cannot open %s", {m_content});
        // In a later turn, as every other failure.
        QMetaObject::invokeMethod(
            this, [this] { finish(FSFinishReason::PlaybackError); }, Qt::QueuedConnection);
        return;
    }
    if (m_outputs == MpvOutputs::Window) {
        static_cast<void>(item());
        connect(m_item.get(), &MpvVideoItem::rendererReady, this, &MpvPlayer::handleRendererReady);
        connect(m_item.get(), &MpvVideoItem::rendererLost, this, &MpvPlayer::handleRendererLost);
        connect(m_item.get(), &MpvVideoItem::firstFrameDrawn, this, [this] {
            m_drewFrame = true;
            settle();
        });
        m_item->attach(m_handle);
    }
    load();
}

// Over our own connection, whose end tells a whole film from a cut one.
void MpvPlayer::load() {
    if (isHttpAddress(m_content)) {
        m_stream = std::make_unique<PublishedStream>(m_content);
    }
    m_handle->command({"loadfile", m_stream != nullptr ? m_stream->address() : m_content});
}

void MpvPlayer::shutdown() {
    m_wasShutDown = true;
    if (m_handle == nullptr) {
        return;
    }
    m_outputTimeout.stop();
    m_handle->setWakeup({});
    if (m_item != nullptr) {
        disconnect(m_item.get(), nullptr, this, nullptr);
        m_item->detach();
    }
    m_stream.reset();
    m_subtitles.end();
    m_handle->beginClosing();
    m_handle.reset();
    m_stage = Stage::Opening;
    m_state = {};
    m_clock = {};
    m_playbackState = FSPlaybackState::Stopped;
    m_loadState = 0;
}

void MpvPlayer::setScalingMode(FSScalingMode mode) {
    if (m_handle != nullptr) {
        m_handle->setProperty("panscan", mode == FSScalingMode::Fill ? 1.0 : 0.0);
    }
}

void MpvPlayer::setShouldAutoplay(bool autoplay) {
    if (m_handle != nullptr) {
        m_handle->setProperty("pause", !autoplay);
    }
}

void MpvPlayer::setPlaybackVolume(float volume) {
    m_volume = std::clamp(volume, 0.0F, 1.0F);
    if (m_handle != nullptr) {
        m_handle->setProperty("volume", mpvVolume(m_volume));
    }
}

void MpvPlayer::setPlaybackRate(float rate) {
    if (!(rate > 0) || !std::isfinite(rate)) {
        return;
    }
    m_rate = rate;
    if (m_handle != nullptr) {
        m_handle->setProperty("speed", static_cast<double>(rate));
        runClock();
    }
}

void MpvPlayer::play() {
    if (m_handle == nullptr) {
        return;
    }
    if (m_stage == Stage::Ended) {
        setCurrentPlaybackTime(0);
    }
    m_handle->setProperty("pause", false);
}

void MpvPlayer::pause() {
    if (m_handle != nullptr) {
        m_handle->setProperty("pause", true);
    }
}

double MpvPlayer::currentPlaybackTime() const {
    askTimes();
    return m_clock.position(std::chrono::steady_clock::now());
}

double MpvPlayer::duration() const {
    askTimes();
    return durationOf(m_state);
}

void MpvPlayer::askTimes() const {
    if (m_timesAsked == 0) {
        askTimesAnew();
    }
}

void MpvPlayer::askTimesAnew() const {
    if (m_handle != nullptr) {
        ask(Answer::PositionNow);
        m_timesAsked += ask(Answer::DurationNow) ? 1 : 0;
    }
}

FSStatistics MpvPlayer::statistics() const {
    FSStatistics statistics;
    if (m_handle == nullptr) {
        return statistics;
    }
    m_statistics.ask(*m_handle);
    m_statistics.fill(statistics);
    const auto codecOf = [this](std::string_view type) {
        const auto track = selectedTrack(m_state.tracks, type);
        return track ? track->codec : std::string();
    };
    statistics.videoCodec = codecOf("video");
    statistics.audioCodec = codecOf("audio");
    statistics.secondsBuffered = m_state.cachedSeconds;
    statistics.serverAnswer = m_stream != nullptr ? m_stream->answer() : m_playlistAnswer;
    return statistics;
}

void MpvPlayer::setCurrentPlaybackTime(double seconds) {
    if (!std::isfinite(seconds) || m_handle == nullptr || m_stage == Stage::Failed) {
        return;
    }
    m_lastSeek = seconds < m_clock.position(std::chrono::steady_clock::now()) ? SeekDirection::Backward
                                                                              : SeekDirection::Forward;
    m_seekTarget = seconds;
    if (m_stage != Stage::Opening) {
        considerSeek();
    }
}

void MpvPlayer::considerSeek() {
    ask(Answer::SeekableAtSeek);
    ask(Answer::SeekableInCacheAtSeek);
}

// Where the server gives no ranges, a seek would wait for bytes that come in their own time or never.
void MpvPlayer::seek() {
    const auto target = std::exchange(m_seekTarget, std::nullopt);
    if (target && m_state.seekable && !m_state.seekableInCache) {
        m_soughtPosition = target;
        m_soughtAt = PlaybackClock::Time::clock::now();
        m_clock.report(*target, m_soughtAt);
        m_handle->command({"seek", std::to_string(*target), "absolute+exact"});
    }
}

void MpvPlayer::exchangeSelectedStream(std::int32_t index) {
    const auto track = std::ranges::find(m_state.tracks, index, &streamIndex);
    if (m_handle == nullptr || track == m_state.tracks.end()) {
        AppLogger::player.debug("No stream with index %ld", {index});
        return;
    }
    setTrack(track->type, track->id);
}

void MpvPlayer::closeCurrentStream(const std::string& streamType) {
    const auto type = trackTypeOf(streamType);
    if (m_handle != nullptr && type.has_value()) {
        setTrack(*type, std::string("no"));
    }
}

void MpvPlayer::setTrack(const std::string& type, const MpvValue& value) {
    if (type == "sub") {
        m_subtitles.forgetPick();
    }
    m_handle->setProperty(selectorOf(type), value);
}

bool MpvPlayer::takesSubtitles() const {
    return m_handle != nullptr && m_stage != Stage::Failed;
}

void MpvPlayer::loadSubtitlesOnly(const std::vector<std::string>& urls) {
    if (takesSubtitles()) {
        m_subtitles.add(urls);
    }
}

void MpvPlayer::loadThenActiveSubtitle(const std::string& url) {
    if (takesSubtitles()) {
        m_subtitles.pick(url, m_state.tracks);
    }
}

QQuickItem* MpvPlayer::item() {
    if (m_item == nullptr) {
        m_item = std::make_unique<MpvVideoItem>();
    }
    return m_item.get();
}

void MpvPlayer::setDarPreference(float ratio) {
    m_aspectRatio = ratio;
    if (m_handle != nullptr) {
        constexpr double streamsOwn = -1;
        m_handle->setProperty("video-aspect-override", ratio > 0 ? static_cast<double>(ratio) : streamsOwn);
    }
}

void MpvPlayer::setNeedsRefreshCurrentPic() {
    if (m_item != nullptr) {
        m_item->redraw();
    }
}

void MpvPlayer::awaitOutput() {
    if (m_rendererReady || m_drawsNothing) {
        openOutput();
    } else {
        m_outputTimeout.start(outputPatience);
    }
}

void MpvPlayer::openOutput() {
    m_outputTimeout.stop();
    if (m_handle == nullptr || !m_hook.has_value() || !m_state.statedDuration.has_value()) {
        return;
    }
    if (!m_rendererReady && !m_drawsNothing) {
        m_drawsNothing = true;
        m_handle->setProperty("vo", std::string("null"));
    }
    m_handle->continueHook(*m_hook);
    m_hook.reset();
}

void MpvPlayer::handleRendererReady() {
    m_rendererReady = true;
    if (std::exchange(m_drawsNothing, false)) {
        m_handle->setProperty("vo", std::string("libmpv"));
        // mpv can lose the new decoder's request for packets, and asks again only when it reads on: with the
        // whole rest of the film in memory, never.
        if (m_state.seekable && !m_state.seekableInCache) {
            m_handle->command({"seek", "0", "relative+exact"});
        }
    }
    if (m_interruptedVideo.has_value()) {
        m_handle->setProperty(selectorOf("video"), *m_interruptedVideo);
    }
    openOutput();
}

void MpvPlayer::handleRendererLost() {
    m_rendererReady = false;
    if (!std::exchange(m_drawsNothing, true)) {
        m_handle->setProperty("vo", std::string("null"));
    }
    // A render context that ends while mpv still has it in use takes the selection of the video along.
    const auto selected = selectedTrack(m_state.tracks, "video");
    if (selected.has_value()) {
        m_interruptedVideo = selected->id;
    }
}

} // namespace ondavia::engine
