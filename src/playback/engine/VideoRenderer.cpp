#include "playback/engine/VideoRenderer.h"

#include "playback/engine/MpvHandle.h"

#include <utility>

namespace ondavia::engine {
namespace {

/// A scene graph that is merely late takes one of these.
constexpr int framesBeforeNobodyLooks = 4;

bool isNewPicture(mpv_render_context* context) {
    mpv_render_frame_info info{};
    const mpv_render_param request{MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info};
    constexpr auto present = static_cast<std::uint64_t>(MPV_RENDER_FRAME_INFO_PRESENT);
    constexpr auto again = static_cast<std::uint64_t>(MPV_RENDER_FRAME_INFO_REDRAW);
    return mpv_render_context_get_info(context, request) >= 0 && (info.flags & present) != 0 &&
           (info.flags & again) == 0;
}

void passBy(mpv_render_context* context) {
    int skip = 1;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SKIP_RENDERING, &skip},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(context, parameters);
}

} // namespace

std::shared_ptr<VideoRenderer> VideoRenderer::startThread(std::shared_ptr<MpvHandle> handle,
                                                          std::shared_ptr<VideoRenderer> predecessor) {
    // The last reference may go on the video thread or the scene graph's, and the object belongs to the
    // main thread.
    const std::shared_ptr<VideoRenderer> renderer(
        new VideoRenderer(std::move(handle), std::move(predecessor)),
        [](VideoRenderer* object) { object->deleteLater(); });
    renderer->m_self = renderer;
    renderer->setObjectName(QStringLiteral("ondavia-video"));
    renderer->start();
    return renderer;
}

VideoRenderer::VideoRenderer(std::shared_ptr<MpvHandle> handle, std::shared_ptr<VideoRenderer> predecessor)
    : m_handle(std::move(handle))
    , m_predecessor(std::move(predecessor)) {}

// `run` gave up its reference before this came about, so only its last instructions are waited for.
VideoRenderer::~VideoRenderer() {
    wait();
}

void VideoRenderer::setTarget(std::unique_ptr<VideoTarget> target) {
    const std::lock_guard lock(m_mutex);
    m_target = std::move(target);
    m_wakeup.notify_all();
}

bool VideoRenderer::hasTarget() const {
    const std::lock_guard lock(m_mutex);
    return m_target != nullptr;
}

bool VideoRenderer::suits(QOpenGLContext* sceneGraphContext) const {
    const std::lock_guard lock(m_mutex);
    return m_target == nullptr || m_target->suits(sceneGraphContext);
}

void VideoRenderer::setSize(QSize size) {
    const std::lock_guard lock(m_mutex);
    if (m_work.size != size) {
        m_work.size = size;
        m_work.redraw = true;
        m_wakeup.notify_all();
    }
}

void VideoRenderer::redraw() {
    const std::lock_guard lock(m_mutex);
    m_work.redraw = true;
    m_wakeup.notify_all();
}

void VideoRenderer::forgetPicture() {
    const std::lock_guard lock(m_mutex);
    m_held = true;
    m_awaitsPicture = false;
    m_untakenFrames = 0;
    m_work.forget = true;
    m_wakeup.notify_all();
}

void VideoRenderer::awaitPicture() {
    const std::lock_guard lock(m_mutex);
    m_awaitsPicture = true;
}

bool VideoRenderer::isReady() const {
    const std::lock_guard lock(m_mutex);
    return m_isReady;
}

VideoFrame VideoRenderer::takeFrame() {
    const std::lock_guard lock(m_mutex);
    if (m_held) {
        return {};
    }
    if (std::exchange(m_untakenFrames, 0) >= framesBeforeNobodyLooks) {
        m_work.redraw = true;
        m_wakeup.notify_all();
    }
    return m_latest;
}

void VideoRenderer::stop() {
    const std::lock_guard lock(m_mutex);
    m_work.stop = true;
    m_wakeup.notify_all();
}

void VideoRenderer::run() {
    if (m_predecessor != nullptr) {
        m_predecessor->wait();
        m_predecessor.reset();
    }
    if (waitForTarget()) {
        if (m_target->open(m_handle->get())) {
            drawUntilStopped();
        } else {
            Q_EMIT failed();
        }
        VideoFrame lastFrame;
        {
            const std::lock_guard lock(m_mutex);
            lastFrame = std::exchange(m_latest, {});
            m_isReady = false;
        }
        m_target->close(std::move(lastFrame));
    }
    m_handle.reset();
    m_self.reset();
}

bool VideoRenderer::waitForTarget() {
    std::unique_lock lock(m_mutex);
    m_wakeup.wait(lock, [this] { return m_work.stop || m_target != nullptr; });
    return m_target != nullptr;
}

VideoRenderer::Work VideoRenderer::waitForWork() {
    std::unique_lock lock(m_mutex);
    m_wakeup.wait(lock,
                  [this] { return m_work.stop || m_work.mpvHasNews || m_work.redraw || m_work.forget; });
    Work work = m_work;
    work.nobodyLooks = work.size.isEmpty() || m_untakenFrames >= framesBeforeNobodyLooks;
    m_work.mpvHasNews = false;
    m_work.redraw = false;
    m_work.forget = false;
    return work;
}

void VideoRenderer::drawUntilStopped() {
    mpv_render_context* context = m_target->context();
    mpv_render_context_set_update_callback(
        context,
        [](void* object) {
            auto* self = static_cast<VideoRenderer*>(object);
            const std::lock_guard lock(self->m_mutex);
            self->m_work.mpvHasNews = true;
            self->m_wakeup.notify_all();
        },
        this);
    {
        const std::lock_guard lock(m_mutex);
        m_isReady = true;
    }
    Q_EMIT ready();
    for (Work work = waitForWork(); !work.stop; work = waitForWork()) {
        if (work.forget) {
            dropPicture();
        }
        draw(work);
    }
    mpv_render_context_set_update_callback(context, nullptr, nullptr);
}

void VideoRenderer::draw(const Work& work) {
    mpv_render_context* context = m_target->context();
    const bool hasNews = (mpv_render_context_update(context) & MPV_RENDER_UPDATE_FRAME) != 0;
    const bool isFirst = hasNews && isAwaited(context);
    if (work.nobodyLooks || isHeld()) {
        if (hasNews) {
            passBy(context);
        }
    } else if (hasNews || work.redraw) {
        publish(m_target->render(work.size));
    }
    if (isFirst) {
        Q_EMIT firstFrameDrawn();
    }
}

bool VideoRenderer::isAwaited(mpv_render_context* context) {
    const bool isNew = isNewPicture(context);
    const std::lock_guard lock(m_mutex);
    if (!isNew || !m_awaitsPicture) {
        return false;
    }
    m_awaitsPicture = false;
    m_held = false;
    return true;
}

bool VideoRenderer::isHeld() const {
    const std::lock_guard lock(m_mutex);
    return m_held;
}

void VideoRenderer::dropPicture() {
    VideoFrame last;
    const std::lock_guard lock(m_mutex);
    last = std::exchange(m_latest, {nullptr, {}, m_latest.number});
}

void VideoRenderer::publish(VideoFrame frame) {
    VideoFrame previous;
    {
        const std::lock_guard lock(m_mutex);
        frame.number = m_latest.number + 1;
        ++m_untakenFrames;
        previous = std::exchange(m_latest, std::move(frame));
    }
    Q_EMIT frameReady();
}

} // namespace ondavia::engine
