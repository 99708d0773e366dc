#include "playback/engine/MpvPlayer.h"

#include "base/AppLogger.h"
#include "playback/engine/EngineShelf.h"
#include "playback/engine/MpvHandle.h"
#include "playback/engine/MpvVideoItem.h"
#include "playback/engine/PublishedStream.h"
#include "playback/engine/VideoRenderer.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace ondavia::engine {
namespace {

/// What runs out when an engine plays that nobody shows: a picture is not waited for any longer.
constexpr std::chrono::seconds outputPatience{1};

/// How long a handle may take to close what it played before: more than it takes itself to give up a server
/// that does not let go. A system that looks up a name can hold it for longer.
constexpr std::chrono::seconds closingPatience{2};

std::shared_ptr<MpvHandle> makeHandle(const std::vector<MpvOption>& options) {
    auto handle = MpvHandle::create(options);
    handle->requestHook("on_preloaded");
    return handle;
}

} // namespace

MpvPlayer::MpvPlayer(NotificationCenter& center, MpvOutputs outputs, std::shared_ptr<EngineShelf> shelf,
                     std::string content, const FSOptions& options)
    : m_center(center)
    , m_outputs(outputs)
    , m_shelf(std::move(shelf))
    , m_content(std::move(content))
    , m_options(engineOptions(outputs, options))
    , m_drawsNothing(outputs == MpvOutputs::Null) {
    m_outputTimeout.setSingleShot(true);
    connect(&m_outputTimeout, &QTimer::timeout, this, &MpvPlayer::openOutput);
    m_closingTimeout.setSingleShot(true);
    m_closingTimeout.setInterval(closingPatience);
    connect(&m_closingTimeout, &QTimer::timeout, this, &MpvPlayer::replaceHandle);
    startMpv();
}

MpvPlayer::~MpvPlayer() {
    shutdown();
}

void MpvPlayer::startMpv() {
    if (auto core = m_shelf->take(m_options)) {
        m_handle = std::move(core->handle);
        m_formerRenderer = std::move(core->renderer);
        m_mayBeClosing = true;
    } else {
        try {
            m_handle = makeHandle(m_options);
        } catch (const std::runtime_error& error) {
            // prepareToPlay reports the failure to whoever observes by then.
            AppLogger::player.error("No video engine: %{public}s", {error.what()});
            return;
        }
    }
    listen();
}

void MpvPlayer::listen() {
    const auto wakeup = [this] {
        if (!m_eventsAnnounced.exchange(true)) {
            QMetaObject::invokeMethod(this, &MpvPlayer::takeEvents, Qt::QueuedConnection);
        }
    };
    m_handle->setWakeup(wakeup);
    // mpv tells of no further event while there are some of before that nobody took.
    wakeup();
}

void MpvPlayer::prepareToPlay() {
    if (std::exchange(m_wasPrepared, true)) {
        return;
    }
    if (m_handle == nullptr || !isPlayableAddress(m_content)) {
        AppLogger::player.error("The engine cannot open %s", {m_content});
        if (m_handle != nullptr) {
            m_handle->unload();
        }
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
        m_item->attach(m_handle, std::exchange(m_formerRenderer, nullptr));
    }
    load();
}

// Over our own connection, whose end tells a whole film from a cut one.
void MpvPlayer::load() {
    if (isHttpAddress(m_content)) {
        m_stream = std::make_unique<PublishedStream>(m_content);
    }
    loadFile(m_stream != nullptr ? m_stream->address() : m_content);
    applySettings();
    if (std::exchange(m_mayBeClosing, false)) {
        m_closingTimeout.start();
    }
}

void MpvPlayer::loadFile(const std::string& address) {
    auto options = trackOptions();
    std::ranges::move(accessOptions(m_content), std::back_inserter(options));
    m_handle->load(address, options);
}

void MpvPlayer::applySettings() {
    setPlaybackVolume(m_volume);
    setScalingMode(m_scalingMode);
    setDarPreference(m_aspectRatio);
    setCoveredBottom(m_coveredBottom);
    m_handle->setProperty("speed", static_cast<double>(m_rate));
}

void MpvPlayer::replaceHandle() {
    AppLogger::player.error("What played before does not end: it is left behind");
    m_handle->setWakeup({});
    m_handle->beginClosing();
    if (m_item != nullptr) {
        m_item->detach();
    }
    m_rendererReady = false;
    try {
        m_handle = makeHandle(m_options);
    } catch (const std::runtime_error& error) {
        AppLogger::player.error("No video engine: %{public}s", {error.what()});
        m_handle.reset();
        finish(FSFinishReason::PlaybackError);
        return;
    }
    listen();
    if (m_item != nullptr) {
        m_item->attach(m_handle, nullptr);
    }
    load();
}

void MpvPlayer::shutdown() {
    m_wasShutDown = true;
    if (m_handle == nullptr) {
        return;
    }
    m_outputTimeout.stop();
    m_closingTimeout.stop();
    m_stream.reset();
    m_subtitles.end();
    releaseHandle();
    m_stage = Stage::Opening;
    m_state = {};
    m_clock = {};
    m_playbackState = FSPlaybackState::Stopped;
    m_loadState = 0;
}

// To the next engine, unless it could not draw with it.
void MpvPlayer::releaseHandle() {
    auto renderer = std::exchange(m_formerRenderer, nullptr);
    if (m_item != nullptr) {
        disconnect(m_item.get(), nullptr, this, nullptr);
        if (renderer == nullptr) {
            renderer = m_item->release();
        }
    }
    m_handle->changeOwner();
    EngineCore core{std::exchange(m_handle, nullptr), std::move(renderer), m_options};
    const bool canDraw = core.renderer != nullptr && core.renderer->isReady() && !m_drawsNothing;
    if (m_outputs == MpvOutputs::Null || canDraw) {
        m_shelf->put(std::move(core));
    } else {
        end(core);
    }
}

void MpvPlayer::setScalingMode(FSScalingMode mode) {
    m_scalingMode = mode;
    if (m_handle != nullptr) {
        m_handle->setProperty("panscan", mode == FSScalingMode::Fill ? 1.0 : 0.0);
    }
}

void MpvPlayer::setShouldAutoplay(bool autoplay) {
    setPaused(!autoplay);
}

// A handle of before stands still until it has let go of what it played.
void MpvPlayer::setPaused(bool paused) {
    m_paused = paused;
    if (m_handle != nullptr && m_hasBegun) {
        m_handle->setProperty("pause", paused);
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
    setPaused(false);
}

void MpvPlayer::pause() {
    setPaused(true);
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
        m_clock.expectJump();
        m_clock.report(*target, m_soughtAt);
        m_handle->command({"seek", std::to_string(*target), "absolute+exact"});
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

void MpvPlayer::setCoveredBottom(double fraction) {
    m_coveredBottom = std::clamp(fraction, 0.0, 1.0);
    if (m_handle != nullptr) {
        m_handle->setProperty("sub-pos", std::to_string(std::lround(100 * (1 - m_coveredBottom))));
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
    if (m_handle == nullptr || !m_awaitsOutput || !m_state.statedDuration.has_value()) {
        return;
    }
    if (!m_rendererReady && !m_drawsNothing) {
        m_drawsNothing = true;
        m_handle->setProperty("vo", std::string("null"));
    }
    m_awaitsOutput = false;
    m_handle->continueHook();
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
