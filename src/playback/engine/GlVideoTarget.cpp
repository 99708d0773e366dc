#include "base/AppLogger.h"
#include "playback/engine/VideoTarget.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QThread>

#include <mpv/render_gl.h>

#include <vector>

namespace ondavia::engine {
namespace {

class GlVideoTarget final : public VideoTarget {
public:
    GlVideoTarget(std::unique_ptr<QOpenGLContext> context, std::shared_ptr<QOffscreenSurface> surface)
        : m_gl(std::move(context))
        , m_surface(std::move(surface)) {}

    bool open(mpv_handle* handle) override {
        if (!m_gl->makeCurrent(m_surface.get())) {
            AppLogger::player.error("The video thread's OpenGL context cannot be made current");
            return false;
        }
        mpv_opengl_init_params init{[](void*, const char* name) {
                                        return reinterpret_cast<void*>(
                                            QOpenGLContext::currentContext()->getProcAddress(name));
                                    },
                                    nullptr};
        char api[] = MPV_RENDER_API_TYPE_OPENGL;
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                         {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &init},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        m_gl->functions()->glGenFramebuffers(1, &m_framebuffer);
        return createContext(handle, parameters);
    }

    VideoFrame render(QSize size) override {
        auto texture = freeTexture(size);
        QOpenGLFunctions* gl = m_gl->functions();
        gl->glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
        gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture->id(), 0);
        mpv_opengl_fbo target{static_cast<int>(m_framebuffer), size.width(), size.height(), 0};
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_OPENGL_FBO, &target},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        mpv_render_context_render(context(), parameters);
        // The scene graph reads the texture from another context, which knows nothing of commands that
        // are still queued in this one.
        gl->glFinish();
        return {std::move(texture), {}, 0};
    }

    void close(VideoFrame lastFrame) override {
        const bool isCurrent = m_gl->makeCurrent(m_surface.get());
        freeContext();
        lastFrame = {};
        m_textures.clear();
        if (isCurrent) {
            m_gl->functions()->glDeleteFramebuffers(1, &m_framebuffer);
            m_gl->doneCurrent();
        }
        // Here, since a context is deleted on the thread that it lives on.
        m_gl.reset();
    }

    [[nodiscard]] bool suits(QOpenGLContext* sceneGraphContext) const override {
        return sceneGraphContext != nullptr && sceneGraphContext->shareGroup() == m_shareGroup;
    }

private:
    /// The texture that was out of use the longest: the scene graph's last commands with it are done.
    std::shared_ptr<GlTexture> freeTexture(QSize size) {
        std::erase_if(m_textures, [size](const auto& texture) { return texture->size() != size; });
        for (auto texture = m_textures.begin(); texture != m_textures.end(); ++texture) {
            constexpr std::size_t enough = 4;
            if (texture->use_count() == 1 && m_textures.size() >= enough) {
                auto found = std::move(*texture);
                m_textures.erase(texture);
                m_textures.push_back(found);
                return found;
            }
        }
        m_textures.push_back(std::make_shared<GlTexture>(size));
        return m_textures.back();
    }

    std::unique_ptr<QOpenGLContext> m_gl;
    std::shared_ptr<QOffscreenSurface> m_surface;
    QOpenGLContextGroup* m_shareGroup = m_gl->shareGroup();
    GLuint m_framebuffer = 0;
    /// In the order of their use.
    std::vector<std::shared_ptr<GlTexture>> m_textures;
};

} // namespace

GlTexture::GlTexture(QSize size)
    : m_size(size) {
    QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
    gl->glGenTextures(1, &m_id);
    gl->glBindTexture(GL_TEXTURE_2D, m_id);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, size.width(), size.height(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     nullptr);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER}) {
        gl->glTexParameteri(GL_TEXTURE_2D, filter, GL_LINEAR);
    }
    for (const GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T}) {
        gl->glTexParameteri(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
    }
    gl->glBindTexture(GL_TEXTURE_2D, 0);
}

GlTexture::~GlTexture() {
    if (auto* context = QOpenGLContext::currentContext(); context != nullptr) {
        context->functions()->glDeleteTextures(1, &m_id);
    } else {
        // The group's last context takes the texture along.
        AppLogger::player.debug("A video texture outlived its context");
    }
}

std::unique_ptr<VideoTarget> makeGlVideoTarget(QOpenGLContext* sceneGraphContext,
                                               std::shared_ptr<QOffscreenSurface> surface,
                                               QThread* videoThread) {
    if (sceneGraphContext == nullptr || surface == nullptr || !surface->isValid() ||
        !QOpenGLContext::supportsThreadedOpenGL()) {
        return nullptr;
    }
    auto context = std::make_unique<QOpenGLContext>();
    context->setShareContext(sceneGraphContext);
    context->setFormat(sceneGraphContext->format());
    if (!context->create() || !QOpenGLContext::areSharing(context.get(), sceneGraphContext)) {
        return nullptr;
    }
    context->moveToThread(videoThread);
    return std::make_unique<GlVideoTarget>(std::move(context), std::move(surface));
}

} // namespace ondavia::engine
