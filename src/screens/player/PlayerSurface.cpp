#include "screens/player/PlayerSurface.h"

namespace ondavia {

PlayerSurface::PlayerSurface(QQuickItem* parent)
    : QQuickItem(parent) {
    m_view.setParentItem(this);
}

void PlayerSurface::setModel(PlayerViewModel* model) {
    if (m_model != model) {
        m_model = model;
        m_view.setManager(model != nullptr ? &model->manager() : nullptr);
        Q_EMIT modelChanged();
    }
}

void PlayerSurface::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    m_view.setSize(newGeometry.size());
}

} // namespace ondavia
