#pragma once

#include "playback/FSPlayerUIView.h"

#include <QQuickItem>
#include <qqmlregistration.h>

namespace ondavia {

/// The picture of a player screen, filling the item. Main thread. Open, since the engine derives from it.
class PlayerSurface : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// The `PlayerManager` whose playback is shown. Not owned.
    Q_PROPERTY(QObject* manager READ manager WRITE setManager NOTIFY managerChanged REQUIRED)
    /// How much of the bottom something lies over, in pixels: subtitles stand above it.
    Q_PROPERTY(double coveredBottom READ coveredBottom WRITE setCoveredBottom NOTIFY coveredBottomChanged)

public:
    explicit PlayerSurface(QQuickItem* parent = nullptr);

    [[nodiscard]] QObject* manager() const { return m_view.manager(); }
    void setManager(QObject* manager);
    Q_SIGNAL void managerChanged();
    [[nodiscard]] double coveredBottom() const { return m_view.coveredBottom(); }
    void setCoveredBottom(double pixels);
    Q_SIGNAL void coveredBottomChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    FSPlayerUIView m_view;
};

} // namespace ondavia
