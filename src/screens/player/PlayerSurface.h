#pragma once

#include "playback/FSPlayerUIView.h"
#include "screens/player/PlayerViewModel.h"

#include <QPointer>
#include <QQuickItem>
#include <qqmlregistration.h>

namespace ondavia {

/// The picture of a player screen, filling the item. Main thread. Open, since the engine derives from it.
class PlayerSurface : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Whose playback is shown. Not owned.
    Q_PROPERTY(ondavia::PlayerViewModel* model READ model WRITE setModel NOTIFY modelChanged REQUIRED)

public:
    explicit PlayerSurface(QQuickItem* parent = nullptr);

    [[nodiscard]] PlayerViewModel* model() const { return m_model; }
    void setModel(PlayerViewModel* model);
    Q_SIGNAL void modelChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    QPointer<PlayerViewModel> m_model;
    FSPlayerUIView m_view;
};

} // namespace ondavia
