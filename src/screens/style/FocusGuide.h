#pragma once

#include <QObject>
#include <qqmlregistration.h>

class QQuickItem;

namespace ondavia {

/// Leads the focus for keyboards and remote controls: arrow keys that no control wanted move it to the
/// nearest control in their direction, and its frame shows only while keys are in use. Main thread.
class FocusGuide final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// The last input was a key, not a pointer.
    Q_PROPERTY(bool isKeyboardInUse READ isKeyboardInUse NOTIFY isKeyboardInUseChanged)

public:
    explicit FocusGuide(QObject* parent = nullptr);

    [[nodiscard]] bool isKeyboardInUse() const { return m_isKeyboardInUse; }
    /// Moves the focus within `root` by an arrow key; false for any other key, and where nothing lies in
    /// that direction.
    Q_INVOKABLE bool move(QQuickItem* root, int key);

    Q_SIGNAL void isKeyboardInUseChanged();
    /// A key went down, whoever gets it. Emitted before it is delivered.
    Q_SIGNAL void keyPressed();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setKeyboardInUse(bool inUse);

    bool m_isKeyboardInUse = false;
};

} // namespace ondavia
