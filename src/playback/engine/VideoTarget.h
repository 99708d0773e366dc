#pragma once

#include <QImage>
#include <QSize>

#include <mpv/render.h>

#include <cstdint>
#include <memory>

class QOffscreenSurface;
class QOpenGLContext;
class QThread;

namespace ondavia::engine {

/// A texture that both the video thread and the scene graph use. Whoever lets go last needs a context of
/// the sharing group current: both threads have one whenever they touch frames.
class GlTexture final {
public:
    explicit GlTexture(QSize size);
    ~GlTexture();
    GlTexture(const GlTexture&) = delete;
    GlTexture& operator=(const GlTexture&) = delete;

    [[nodiscard]] unsigned id() const { return m_id; }
    [[nodiscard]] QSize size() const { return m_size; }

private:
    unsigned m_id = 0;
    QSize m_size;
};

/// A finished picture: a texture or an image, by the target it comes from.
struct VideoFrame final {
    std::shared_ptr<GlTexture> texture;
    QImage image;
    std::uint64_t number = 0;
};

/// What mpv draws into, with mpv's render context. Everything on the video thread, but construction and
/// destruction. `close` comes before destruction if `open` was called.
class VideoTarget {
public:
    virtual ~VideoTarget() = default;
    /// Creates the render context; false, with a line in the log, when that fails.
    virtual bool open(mpv_handle* handle) = 0;
    virtual VideoFrame render(QSize size) = 0;
    /// Lets go of frames that the target gave out, the render context and everything else.
    virtual void close(VideoFrame lastFrame) = 0;
    /// Whether frames can be shown by a scene graph with this context; null for one without OpenGL.
    [[nodiscard]] virtual bool suits(QOpenGLContext* sceneGraphContext) const = 0;

    [[nodiscard]] mpv_render_context* context() const { return m_context; }

protected:
    bool createContext(mpv_handle* handle, mpv_render_param* parameters);
    void freeContext();

private:
    mpv_render_context* m_context = nullptr;
};

/// Draws with a context of its own that shares textures with the scene graph's, so that neither waits for
/// the other. Called on the scene graph's thread with its context current; `videoThread` gets the new
/// context, `surface` was made on the main thread. Null when no such context can be made.
[[nodiscard]] std::unique_ptr<VideoTarget> makeGlVideoTarget(QOpenGLContext* sceneGraphContext,
                                                             std::shared_ptr<QOffscreenSurface> surface,
                                                             QThread* videoThread);

/// Draws with the processor, for scene graphs without OpenGL.
[[nodiscard]] std::unique_ptr<VideoTarget> makeSoftwareVideoTarget();

} // namespace ondavia::engine
