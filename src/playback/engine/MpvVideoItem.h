#pragma once

#include <QQuickItem>

#include <memory>

class QOffscreenSurface;
class QOpenGLContext;

namespace ondavia::engine {

class MpvHandle;
class VideoRenderer;

/// The picture of one engine in a Qt Quick scene; black while there is none. It may change its place and
/// its window at any time: the video thread belongs to the item, not to the scene graph it is shown by.
/// Main thread.
class MpvVideoItem final : public QQuickItem {
    Q_OBJECT

public:
    explicit MpvVideoItem(QQuickItem* parent = nullptr);
    ~MpvVideoItem() override;

    /// From now on the item shows this instance's picture, as soon as a scene graph shows the item.
    void attach(std::shared_ptr<MpvHandle> handle);
    /// Black again; the handle is released by the video thread.
    void detach();
    /// Has the present picture drawn anew.
    void redraw();

Q_SIGNALS:
    /// mpv may open its video output: there is something to draw on.
    void rendererReady();
    /// What mpv draws on is about to go; another `rendererReady` follows once the item is shown again.
    void rendererLost();
    /// Once: a picture of the stream was drawn.
    void firstFrameDrawn();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    enum class Drawing { OpenGlIfPossible, Software };

    void startRenderer(std::shared_ptr<VideoRenderer> predecessor);
    void replaceRenderer(const std::shared_ptr<VideoRenderer>& unfit, Drawing drawing);
    void giveTarget(QOpenGLContext* sceneGraphContext);

    std::shared_ptr<MpvHandle> m_handle;
    std::shared_ptr<VideoRenderer> m_renderer;
    /// Made on the main thread, as some platforms want, before the scene graph's thread needs it.
    std::shared_ptr<QOffscreenSurface> m_surface;
    Drawing m_drawing = Drawing::OpenGlIfPossible;
};

} // namespace ondavia::engine
