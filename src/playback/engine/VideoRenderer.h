#pragma once

#include "playback/engine/VideoTarget.h"

#include <QThread>

#include <condition_variable>
#include <memory>
#include <mutex>

namespace ondavia::engine {

class MpvHandle;

/// The video thread of one engine: it has mpv draw each picture into a target and keeps the last one for
/// the scene graph. The render context lives and ends here, so that neither the main thread nor the scene
/// graph ever waits for mpv.
///
/// Without anybody who takes pictures (a hidden window, an item in no window) it lets mpv pass them by,
/// and draws again as soon as one is taken. Idle while nothing changes. It goes from one engine to the next
/// together with the handle, and with all that it has compiled by then.
class VideoRenderer final : public QThread {
    Q_OBJECT

public:
    /// A running thread that waits for its target. mpv has one render context at a time, so the thread
    /// waits for the end of `predecessor`, which may be null and has been told to stop. Main thread.
    [[nodiscard]] static std::shared_ptr<VideoRenderer>
    startThread(std::shared_ptr<MpvHandle> handle, std::shared_ptr<VideoRenderer> predecessor);
    ~VideoRenderer() override;

    /// Once. Scene graph's thread, as the next two.
    void setTarget(std::unique_ptr<VideoTarget> target);
    [[nodiscard]] bool hasTarget() const;
    /// Whether frames can be shown with this context; true before there is a target.
    [[nodiscard]] bool suits(QOpenGLContext* sceneGraphContext) const;

    /// In pixels; empty when there is nothing to show pictures on. Any thread, as all that follows.
    void setSize(QSize size);
    void redraw();
    /// There is no picture any more, and none comes, until one of what `awaitPicture` announces was drawn.
    void forgetPicture();
    /// The next new picture is the first one of a stream. To be called before mpv can have any of it.
    void awaitPicture();
    /// Whether the render context stands.
    [[nodiscard]] bool isReady() const;
    /// The last picture; its number is 0 while there is none.
    [[nodiscard]] VideoFrame takeFrame();
    /// Ends the thread soon and releases the handle there. Any picture that was taken stays valid.
    void stop();

Q_SIGNALS:
    /// The render context stands: mpv may open its video output.
    void ready();
    /// There is none, and the thread ends.
    void failed();
    void frameReady();
    /// Once a stream: a picture of it was drawn.
    void firstFrameDrawn();

protected:
    void run() override;

private:
    VideoRenderer(std::shared_ptr<MpvHandle> handle, std::shared_ptr<VideoRenderer> predecessor);

    struct Work {
        bool stop = false;
        bool mpvHasNews = false;
        bool redraw = false;
        bool forget = false;
        QSize size;
        bool nobodyLooks = false;
    };

    [[nodiscard]] bool waitForTarget();
    [[nodiscard]] Work waitForWork();
    void drawUntilStopped();
    void draw(const Work& work);
    /// Whether this is the picture that is waited for.
    bool isAwaited(mpv_render_context* context);
    [[nodiscard]] bool isHeld() const;
    void publish(VideoFrame frame);
    /// Where textures can be let go of.
    void dropPicture();

    std::shared_ptr<MpvHandle> m_handle;
    std::shared_ptr<VideoRenderer> m_predecessor;
    /// Keeps the object until `run` is through.
    std::shared_ptr<VideoRenderer> m_self;

    mutable std::mutex m_mutex;
    std::condition_variable m_wakeup;
    std::unique_ptr<VideoTarget> m_target;
    Work m_work;
    VideoFrame m_latest;
    int m_untakenFrames = 0;
    bool m_isReady = false;
    /// Nothing is shown before the picture that is waited for.
    bool m_held = false;
    bool m_awaitsPicture = true;
};

} // namespace ondavia::engine
