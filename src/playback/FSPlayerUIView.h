#pragma once

#include "playback/PlayerManager.h"

#include <QPointer>
#include <QQuickItem>
#include <qqmlregistration.h>

namespace ondavia {

/// The place on a screen where the picture shows: black, clipped, deaf to input, so that touches reach
/// the layers around it.
///
/// There is one video surface for all hosts. A host that is shown takes it whenever the engine changes,
/// the host comes into sight or its size changes; whichever did so last has it. The engine notices
/// nothing of the move. A host out of sight takes nothing. Main thread.
class FSPlayerUIView final : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Whose engine is shown. Not owned.
    Q_PROPERTY(ondavia::PlayerManager* manager READ manager WRITE setManager NOTIFY managerChanged)

public:
    explicit FSPlayerUIView(QQuickItem* parent = nullptr);

    [[nodiscard]] PlayerManager* manager() const { return m_manager; }
    void setManager(PlayerManager* manager);
    Q_SIGNAL void managerChanged();
    /// How much of the bottom something lies over, in pixels.
    [[nodiscard]] double coveredBottom() const { return m_coveredBottom; }
    void setCoveredBottom(double pixels);

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

private:
    void updateHost();

    QPointer<PlayerManager> m_manager;
    double m_coveredBottom = 0;
};

} // namespace ondavia
