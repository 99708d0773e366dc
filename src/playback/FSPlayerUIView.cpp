#include "playback/FSPlayerUIView.h"

#include <QQuickWindow>
#include <QSGRectangleNode>

namespace ondavia {

FSPlayerUIView::FSPlayerUIView(QQuickItem* parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setClip(true);
    setEnabled(false);
}

void FSPlayerUIView::setManager(PlayerManager* manager) {
    if (m_manager == manager) {
        return;
    }
    if (m_manager) {
        disconnect(m_manager, nullptr, this, nullptr);
    }
    m_manager = manager;
    if (m_manager) {
        connect(m_manager, &PlayerManager::playerChanged, this, &FSPlayerUIView::updateHost);
    }
    Q_EMIT managerChanged();
    updateHost();
}

void FSPlayerUIView::setCoveredBottom(double pixels) {
    m_coveredBottom = pixels;
    updateHost();
}

void FSPlayerUIView::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        update();
        updateHost();
    }
}

void FSPlayerUIView::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) {
        updateHost();
    }
}

QSGNode* FSPlayerUIView::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    auto* background = static_cast<QSGRectangleNode*>(node);
    if (background == nullptr) {
        background = window()->createRectangleNode();
        background->setColor(Qt::black);
    }
    background->setRect(boundingRect());
    return background;
}

void FSPlayerUIView::updateHost() {
    const bool isShown = window() != nullptr && isVisible();
    if (!isShown || !m_manager || !m_manager->player()) {
        return;
    }
    FSPlayerView& view = *m_manager->player()->view();
    QQuickItem* video = view.item();
    if (video == nullptr) {
        return;
    }
    if (video->parentItem() != this) {
        video->setParentItem(this);
    }
    video->setPosition({0, 0});
    video->setSize(size());
    view.setCoveredBottom(height() > 0 ? m_coveredBottom / height() : 0);
}

} // namespace ondavia
