#include "playback/engine/MpvPlayer.h"

#include "base/AppLogger.h"
#include "playback/engine/MpvHandle.h"
#include "playback/engine/MpvVideoItem.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

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
    m_handle->command({"loadfile", m_content});
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
    m_handle->beginClosing();
    m_handle.reset();
    m_stage = Stage::Opening;
    m_state = {};
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

void MpvPlayer::setCurrentPlaybackTime(double seconds) {
    if (!std::isfinite(seconds)) {
        return;
    }
    m_lastSeek = seconds < m_state.position ? SeekDirection::Backward : SeekDirection::Forward;
    commandWhenLoaded({"seek", std::to_string(seconds), "absolute+exact"});
}

void MpvPlayer::exchangeSelectedStream(std::int32_t index) {
    const auto track = std::ranges::find(m_state.tracks, index, &streamIndex);
    if (m_handle == nullptr || track == m_state.tracks.end()) {
        AppLogger::player.debug("No stream with index %ld", {index});
        return;
    }
    m_handle->setProperty(selectorOf(track->type), track->id);
}

void MpvPlayer::closeCurrentStream(const std::string& streamType) {
    const auto type = trackTypeOf(streamType);
    if (m_handle != nullptr && type.has_value()) {
        m_handle->setProperty(selectorOf(*type), std::string("no"));
    }
}

void MpvPlayer::loadSubtitlesOnly(const std::vector<std::string>& urls) {
    for (const auto& url : urls) {
        addSubtitle(url, "auto");
    }
}

// "cached" takes the file that was added before, if there is one.
void MpvPlayer::loadThenActiveSubtitle(const std::string& url) {
    addSubtitle(url, "cached");
}

void MpvPlayer::addSubtitle(const std::string& url, const std::string& flag) {
    if (!isPlayableAddress(url)) {
        AppLogger::player.error("Not a subtitle address: %s", {url});
        return;
    }
    commandWhenLoaded({"sub-add", url, flag});
}

void MpvPlayer::commandWhenLoaded(std::vector<std::string> arguments) {
    if (m_handle == nullptr || m_stage == Stage::Failed) {
        return;
    }
    if (m_stage == Stage::Opening) {
        m_commandsWhenLoaded.push_back(std::move(arguments));
    } else {
        m_handle->command(arguments);
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
