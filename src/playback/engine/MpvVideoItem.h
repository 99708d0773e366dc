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

    /// From now on the item shows this instance's picture, as soon as a scene graph shows the item: with the
    /// renderer that the instance has from an item of before, whose context stands, or with one of its own
    /// for null.
    void attach(std::shared_ptr<MpvHandle> handle, std::shared_ptr<VideoRenderer> renderer);
    /// Black again; the handle is released by the video thread.
    void detach();
    /// Black again; the renderer, which goes on, is the caller's. Null before `attach`.
    [[nodiscard]] std::shared_ptr<VideoRenderer> release();
    /// The next new picture is the first one of a stream.
    void awaitPicture();
    /// Has the present picture drawn anew.
    void redraw();

Q_SIGNALS:
    /// mpv may open its video output: there is something to draw on.
    void rendererReady();
    /// What mpv draws on is about to go; another `rendererReady` follows once the item is shown again.
    void rendererLost();
    /// Once a stream: a picture of it was drawn.
    void firstFrameDrawn();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    enum class Drawing { OpenGlIfPossible, Software };

    void startRenderer(std::shared_ptr<VideoRenderer> predecessor);
    void followRenderer();
    void replaceRenderer(const std::shared_ptr<VideoRenderer>& unfit, Drawing drawing);
    void giveTarget(QOpenGLContext* sceneGraphContext);

    std::shared_ptr<MpvHandle> m_handle;
    std::shared_ptr<VideoRenderer> m_renderer;
    /// Made on the main thread, as some platforms want, before the scene graph's thread needs it.
    std::shared_ptr<QOffscreenSurface> m_surface;
    Drawing m_drawing = Drawing::OpenGlIfPossible;
    /// The renderer comes from elsewhere, and may not suit the scene graph that shows the item.
    bool m_isUntried = false;
};

} // namespace ondavia::engine
