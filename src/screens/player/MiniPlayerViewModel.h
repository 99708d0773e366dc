#pragma once

#include <QObject>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <qqmlregistration.h>

namespace ondavia {

class AppState;
class PlayerManager;

/// The floating window in which playback carries on while the user browses: when it shows, where it is, and
/// what its buttons do. Lengths in device-independent pixels, within the container that it floats over. Main
/// thread.
class MiniPlayerViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(QObject* manager READ managerObject CONSTANT)
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY stateChanged)
    Q_PROPERTY(bool isMuted READ isMuted NOTIFY stateChanged)
    Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY stateChanged)
    Q_PROPERTY(double windowWidth READ windowWidth CONSTANT)
    Q_PROPERTY(double windowHeight READ windowHeight CONSTANT)
    Q_PROPERTY(double dragDistance READ dragDistance CONSTANT)
    /// Upper left corner, with the running drag.
    Q_PROPERTY(QPointF corner READ corner NOTIFY cornerChanged)

public:
    static constexpr double miniWidth = 180.0;
    static constexpr double miniHeight = 110.0;
    /// Between the window and the left and right edges.
    static constexpr double padding = 12.0;
    /// Before a movement counts as a drag.
    static constexpr double minimumDrag = 10.0;

    /// Both must outlive the object.
    MiniPlayerViewModel(AppState& appState, PlayerManager& manager, QObject* parent = nullptr);

    [[nodiscard]] QObject* managerObject() const;
    [[nodiscard]] bool isShown() const;
    [[nodiscard]] QString name() const;
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] bool isMuted() const;
    [[nodiscard]] bool isWaiting() const;
    [[nodiscard]] static double windowWidth() { return miniWidth; }
    [[nodiscard]] static double windowHeight() { return miniHeight; }
    [[nodiscard]] static double dragDistance() { return minimumDrag; }
    /// Centre of the window, without the running drag.
    [[nodiscard]] QPointF position() const { return m_position; }
    [[nodiscard]] QPointF corner() const;

    /// The window is in a container of this size: puts it there at first, and back to an edge when the size
    /// has changed.
    Q_INVOKABLE void setContainer(double width, double height);
    /// The pointer has gone so far since it went down.
    Q_INVOKABLE void drag(double x, double y);
    /// It went up there: the window settles at the nearer side.
    Q_INVOKABLE void endDrag(double x, double y);
    Q_INVOKABLE void expand();
    Q_INVOKABLE void close();
    Q_INVOKABLE void togglePlayPause();
    Q_INVOKABLE void toggleMute();

    Q_SIGNAL void isShownChanged();
    Q_SIGNAL void nameChanged();
    Q_SIGNAL void stateChanged();
    Q_SIGNAL void cornerChanged();

private:
    void connectFields();
    [[nodiscard]] QPointF snapped(QPointF point) const;

    AppState& m_appState;
    PlayerManager& m_manager;
    QSizeF m_container;
    QPointF m_position;
    QPointF m_dragOffset;
    bool m_hasInitialPosition = false;
};

} // namespace ondavia
