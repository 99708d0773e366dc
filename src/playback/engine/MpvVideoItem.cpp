#include "playback/engine/MpvVideoItem.h"

#include "playback/engine/MpvHandle.h"
#include "playback/engine/VideoRenderer.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>
#include <QSGRendererInterface>
#include <QSGTexture>

namespace ondavia::engine {
namespace {

/// Black, and the picture on it.
class VideoNode final : public QSGNode {
public:
    explicit VideoNode(QQuickWindow* window)
        : m_background(window->createRectangleNode()) {
        m_background->setColor(Qt::black);
        appendChildNode(m_background);
    }

    void setRect(const QRectF& rect) {
        m_background->setRect(rect);
        if (m_picture != nullptr) {
            m_picture->setRect(rect);
        }
    }

    void show(VideoFrame frame, QQuickWindow* window) {
        if (frame.number == m_frame.number && frame.texture == m_frame.texture) {
            return;
        }
        QSGTexture* texture = textureOf(frame, window);
        if (texture == nullptr) {
            clear();
            return;
        }
        // Whole before it joins, and under the background: the software renderer reads a node's texture and
        // rectangle right then, and passes over nodes that join a node without contents late.
        QSGImageNode* picture = m_picture != nullptr ? m_picture : window->createImageNode();
        picture->setOwnsTexture(true);
        picture->setFiltering(QSGTexture::Linear);
        picture->setTexture(texture);
        picture->setSourceRect(QRectF(QPointF(), texture->textureSize()));
        picture->setRect(m_background->rect());
        picture->markDirty(QSGNode::DirtyMaterial);
        if (std::exchange(m_picture, picture) == nullptr) {
            m_background->appendChildNode(picture);
        }
        m_frame = std::move(frame);
    }

    void clear() {
        if (m_picture != nullptr) {
            m_background->removeChildNode(m_picture);
            delete std::exchange(m_picture, nullptr);
        }
        m_frame = {};
    }

private:
    static QSGTexture* textureOf(const VideoFrame& frame, QQuickWindow* window) {
        if (frame.texture != nullptr) {
            return QNativeInterface::QSGOpenGLTexture::fromNative(
                frame.texture->id(), window, frame.texture->size(), QQuickWindow::TextureIsOpaque);
        }
        return frame.image.isNull()
                   ? nullptr
                   : window->createTextureFromImage(frame.image, QQuickWindow::TextureIsOpaque);
    }

    QSGRectangleNode* m_background;
    QSGImageNode* m_picture = nullptr;
    /// Held as long as it is shown.
    VideoFrame m_frame;
};

QOpenGLContext* openGlContextOf(QQuickWindow* window) {
    QSGRendererInterface* renderer = window->rendererInterface();
    if (renderer->graphicsApi() != QSGRendererInterface::OpenGL) {
        return nullptr;
    }
    return static_cast<QOpenGLContext*>(
        renderer->getResource(window, QSGRendererInterface::OpenGLContextResource));
}

bool mayUseOpenGl(QQuickWindow* window) {
    const auto api = window->rendererInterface()->graphicsApi();
    return api == QSGRendererInterface::OpenGL || api == QSGRendererInterface::Unknown;
}

} // namespace

MpvVideoItem::MpvVideoItem(QQuickItem* parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
    // The engine deletes it, also when a screen's script has seen it.
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
}

MpvVideoItem::~MpvVideoItem() {
    detach();
}

void MpvVideoItem::attach(std::shared_ptr<MpvHandle> handle, std::shared_ptr<VideoRenderer> renderer) {
    m_handle = std::move(handle);
    if (renderer == nullptr) {
        startRenderer(nullptr);
        return;
    }
    m_renderer = std::move(renderer);
    m_isUntried = true;
    followRenderer();
}

void MpvVideoItem::detach() {
    if (const auto renderer = release()) {
        renderer->stop();
    }
}

std::shared_ptr<VideoRenderer> MpvVideoItem::release() {
    if (m_renderer != nullptr) {
        disconnect(m_renderer.get(), nullptr, this, nullptr);
        m_renderer->forgetPicture();
    }
    m_handle.reset();
    update();
    return std::exchange(m_renderer, nullptr);
}

void MpvVideoItem::awaitPicture() {
    if (m_renderer != nullptr) {
        m_renderer->awaitPicture();
    }
}

void MpvVideoItem::redraw() {
    if (m_renderer != nullptr) {
        m_renderer->redraw();
    }
}

void MpvVideoItem::startRenderer(std::shared_ptr<VideoRenderer> predecessor) {
    m_isUntried = false;
    m_renderer = VideoRenderer::startThread(m_handle, std::move(predecessor));
    followRenderer();
}

void MpvVideoItem::followRenderer() {
    connect(m_renderer.get(), &VideoRenderer::ready, this, &MpvVideoItem::rendererReady);
    connect(m_renderer.get(), &VideoRenderer::frameReady, this, &QQuickItem::update);
    connect(m_renderer.get(), &VideoRenderer::firstFrameDrawn, this, &MpvVideoItem::firstFrameDrawn);
    connect(m_renderer.get(), &VideoRenderer::failed, this,
            [this] { replaceRenderer(m_renderer, Drawing::Software); });
    update();
}

void MpvVideoItem::replaceRenderer(const std::shared_ptr<VideoRenderer>& unfit, Drawing drawing) {
    if (unfit == nullptr || unfit != m_renderer || m_drawing == Drawing::Software) {
        return;
    }
    m_drawing = drawing;
    const auto predecessor = m_renderer;
    disconnect(predecessor.get(), nullptr, this, nullptr);
    Q_EMIT rendererLost();
    predecessor->stop();
    startRenderer(predecessor);
}

void MpvVideoItem::giveTarget(QOpenGLContext* sceneGraphContext) {
    std::unique_ptr<VideoTarget> target;
    if (m_drawing == Drawing::OpenGlIfPossible) {
        target = makeGlVideoTarget(sceneGraphContext, m_surface, m_renderer.get());
    }
    m_renderer->setTarget(target != nullptr ? std::move(target) : makeSoftwareVideoTarget());
}

QSGNode* MpvVideoItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    auto* node = old == nullptr ? new VideoNode(window()) : static_cast<VideoNode*>(old);
    node->setRect(boundingRect());
    if (m_renderer == nullptr) {
        node->clear();
    } else {
        QOpenGLContext* context = openGlContextOf(window());
        if (!m_renderer->hasTarget()) {
            giveTarget(context);
        }
        if (m_renderer->suits(context)) {
            m_renderer->setSize((size() * window()->effectiveDevicePixelRatio()).toSize());
            node->show(m_renderer->takeFrame(), window());
            if (std::exchange(m_isUntried, false)) {
                QMetaObject::invokeMethod(this, &MpvVideoItem::rendererReady, Qt::QueuedConnection);
            }
        } else {
            node->clear();
            QMetaObject::invokeMethod(
                this, [this, unfit = m_renderer] { replaceRenderer(unfit, m_drawing); },
                Qt::QueuedConnection);
        }
    }
    return node;
}

void MpvVideoItem::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange && data.window != nullptr && m_surface == nullptr &&
        mayUseOpenGl(data.window)) {
        m_surface = std::shared_ptr<QOffscreenSurface>(
            new QOffscreenSurface, [](QOffscreenSurface* surface) { surface->deleteLater(); });
        m_surface->setFormat(data.window->requestedFormat());
        m_surface->create();
    }
    QQuickItem::itemChange(change, data);
    update();
}

void MpvVideoItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

} // namespace ondavia::engine
