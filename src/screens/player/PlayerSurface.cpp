#include "screens/player/PlayerSurface.h"

namespace ondavia {

PlayerSurface::PlayerSurface(QQuickItem* parent)
    : QQuickItem(parent) {
    m_view.setParentItem(this);
    connect(&m_view, &FSPlayerUIView::managerChanged, this, &PlayerSurface::managerChanged);
}

void PlayerSurface::setManager(QObject* manager) {
    m_view.setManager(qobject_cast<PlayerManager*>(manager));
}

void PlayerSurface::setCoveredBottom(double pixels) {
    if (!qFuzzyCompare(1 + pixels, 1 + coveredBottom())) {
        m_view.setCoveredBottom(pixels);
        Q_EMIT coveredBottomChanged();
    }
}

void PlayerSurface::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    m_view.setSize(newGeometry.size());
}

} // namespace ondavia
