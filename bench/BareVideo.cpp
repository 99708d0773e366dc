#include "BareVideo.h"

#include "platform/FSPlayer.h"
#include "playback/engine/MpvOptions.h"

#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QQuickFramebufferObject>
#include <QQuickWindow>
#include <QSGImageNode>

#include <mpv/client.h>
#include <mpv/render_gl.h>

#include <stdexcept>
#include <vector>

namespace ondavia::bench {
namespace {

using engine::MpvOption;

FSOptions applicationOptions() {
    auto options = FSOptions::optionsByDefault();
    options.setPlayerOptionIntValue(0, "videotoolbox");
    options.setPlayerOptionIntValue(15'000'000, "max-buffer-size");
    options.setFormatOptionIntValue(15'000'000, "analyzeduration");
    options.setPlayerOptionIntValue(1, "framedrop");
    return options;
}

std::vector<MpvOption> allOptions(const std::string& url) {
    std::vector<MpvOption> all = engine::baseOptions();
    const std::vector<MpvOption> outputs{{"vo", "libmpv"}, {"ao", "pulse,alsa"}, {"gpu-hwdec-interop", "no"}};
    for (const auto& more : {engine::trackOptions(), engine::accessOptions(url), outputs,
                             engine::translated(applicationOptions())}) {
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

/// One mpv with its render context. Scene graph's thread, but for the constructor.
class BareMpv final {
public:
    BareMpv(std::string url, BareSigns& signs, QQuickItem& item)
        : m_url(std::move(url))
        , m_signs(signs)
        , m_item(item)
        , m_handle(mpv_create()) {
        for (const auto& [name, value] : allOptions(m_url)) {
            mpv_set_option_string(m_handle, name.c_str(), value.c_str());
        }
        if (m_handle == nullptr || mpv_initialize(m_handle) < 0) {
            throw std::runtime_error("mpv cannot be had");
        }
        ++m_signs.running;
    }
    ~BareMpv() {
        if (m_context != nullptr) {
            mpv_render_context_free(m_context);
        }
        mpv_terminate_destroy(m_handle);
        --m_signs.running;
    }
    BareMpv(const BareMpv&) = delete;
    BareMpv& operator=(const BareMpv&) = delete;

    /// Once; then the film is opened.
    void open(mpv_render_param* parameters) {
        if (m_context != nullptr || mpv_render_context_create(&m_context, m_handle, parameters) < 0) {
            return;
        }
        mpv_render_context_set_update_callback(
            m_context,
            [](void* item) {
                QMetaObject::invokeMethod(static_cast<QQuickItem*>(item), &QQuickItem::update,
                                          Qt::QueuedConnection);
            },
            &m_item);
        const char* command[] = {"loadfile", m_url.c_str(), nullptr};
        mpv_command_async(m_handle, 0, command);
    }

    void render(mpv_render_param* parameters) {
        mpv_render_frame_info info{};
        const bool hasNews = (mpv_render_context_update(m_context) & MPV_RENDER_UPDATE_FRAME) != 0;
        mpv_render_context_get_info(m_context, {MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info});
        mpv_render_context_render(m_context, parameters);
        if (hasNews && (info.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0 && m_signs.firstFrame == 0) {
            m_signs.firstFrame = std::chrono::steady_clock::now().time_since_epoch().count();
        }
    }

private:
    std::string m_url;
    BareSigns& m_signs;
    QQuickItem& m_item;
    mpv_handle* m_handle;
    mpv_render_context* m_context = nullptr;
};

class OpenGlRenderer final : public QQuickFramebufferObject::Renderer {
public:
    explicit OpenGlRenderer(std::shared_ptr<BareMpv> mpv)
        : m_mpv(std::move(mpv)) {}

    QOpenGLFramebufferObject* createFramebufferObject(const QSize& size) override {
        mpv_opengl_init_params init{[](void*, const char* name) {
                                        return reinterpret_cast<void*>(
                                            QOpenGLContext::currentContext()->getProcAddress(name));
                                    },
                                    nullptr};
        char api[] = MPV_RENDER_API_TYPE_OPENGL;
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                         {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &init},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        m_mpv->open(parameters);
        return Renderer::createFramebufferObject(size);
    }

    void render() override {
        const QOpenGLFramebufferObject& buffer = *framebufferObject();
        mpv_opengl_fbo target{static_cast<int>(buffer.handle()), buffer.width(), buffer.height(), 0};
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_OPENGL_FBO, &target},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        m_mpv->render(parameters);
    }

private:
    std::shared_ptr<BareMpv> m_mpv;
};

class OpenGlItem final : public QQuickFramebufferObject {
public:
    OpenGlItem(const std::string& url, BareSigns& signs)
        : m_mpv(std::make_shared<BareMpv>(url, signs, *this)) {}
    [[nodiscard]] Renderer* createRenderer() const override {
        return new OpenGlRenderer(std::exchange(m_mpv, nullptr));
    }

private:
    /// Until the renderer has it, and ends it.
    mutable std::shared_ptr<BareMpv> m_mpv;
};

class SoftwareItem final : public QQuickItem {
public:
    SoftwareItem(const std::string& url, BareSigns& signs)
        : m_mpv(url, signs, *this) {
        setFlag(ItemHasContents);
    }

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) override {
        char api[] = MPV_RENDER_API_TYPE_SW;
        mpv_render_param context[] = {{MPV_RENDER_PARAM_API_TYPE, api}, {MPV_RENDER_PARAM_INVALID, nullptr}};
        m_mpv.open(context);
        QImage image(size().toSize(), QImage::Format_RGB32);
        int dimensions[] = {image.width(), image.height()};
        char format[] = "bgr0";
        auto stride = static_cast<std::size_t>(image.bytesPerLine());
        mpv_render_param picture[] = {{MPV_RENDER_PARAM_SW_SIZE, dimensions},
                                      {MPV_RENDER_PARAM_SW_FORMAT, format},
                                      {MPV_RENDER_PARAM_SW_STRIDE, &stride},
                                      {MPV_RENDER_PARAM_SW_POINTER, image.bits()},
                                      {MPV_RENDER_PARAM_INVALID, nullptr}};
        m_mpv.render(picture);
        auto* node = old != nullptr ? static_cast<QSGImageNode*>(old) : window()->createImageNode();
        node->setOwnsTexture(true);
        node->setTexture(window()->createTextureFromImage(image, QQuickWindow::TextureIsOpaque));
        node->setRect(boundingRect());
        return node;
    }

private:
    BareMpv m_mpv;
};

} // namespace

std::unique_ptr<QQuickItem> makeBareVideo(QQuickWindow& window, const std::string& url, BareSigns& signs) {
    std::unique_ptr<QQuickItem> item;
    if (window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software) {
        item = std::make_unique<SoftwareItem>(url, signs);
    } else {
        item = std::make_unique<OpenGlItem>(url, signs);
    }
    item->setParentItem(window.contentItem());
    item->setSize(window.size());
    return item;
}

} // namespace ondavia::bench
