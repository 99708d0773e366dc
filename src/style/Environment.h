#pragma once

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace ondavia {

/// What the style takes from its surroundings: the fonts that are installed, whether the window is there,
/// and whether the user wants less motion. The desktop is asked on the session bus without waiting; until it
/// answers, and where nobody does, motion is on. Main thread.
class Environment final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString fontFamily READ fontFamily CONSTANT)
    Q_PROPERTY(QString iconFamily READ iconFamily CONSTANT)
    /// Whether the window has shown a frame: what can wait for it, waits.
    Q_PROPERTY(bool hasShownFrame READ hasShownFrame NOTIFY hasShownFrameChanged)
    Q_PROPERTY(bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY reducedMotionChanged)

public:
    explicit Environment(QObject* parent = nullptr);

    /// Inter, or the system's font where Inter is missing.
    [[nodiscard]] QString fontFamily() const { return m_fontFamily; }
    [[nodiscard]] QString iconFamily() const { return m_iconFamily; }
    [[nodiscard]] bool hasShownFrame() const { return m_hasShownFrame; }
    void noteFrame();
    Q_SIGNAL void hasShownFrameChanged();
    [[nodiscard]] bool reducedMotion() const { return m_reducedMotion; }
    void setReducedMotion(bool reduced);
    Q_SIGNAL void reducedMotionChanged();

private:
    void askDesktop();

    QString m_fontFamily;
    QString m_iconFamily;
    bool m_hasShownFrame = false;
    bool m_reducedMotion = false;
};

} // namespace ondavia
