#pragma once

#include <QQuickItem>
#include <qqmlregistration.h>

namespace ondavia {

/// Leads the focus for keyboards and remote controls: arrow keys that no control wanted move it to the
/// nearest control in their direction, and its frame shows only while keys are in use. The first arrow key
/// shows where the focus is and does no more. Main thread.
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

    /// Whether a key means the way back: Escape, the back key of a remote control, Backspace.
    Q_INVOKABLE [[nodiscard]] bool isBack(int key) const;
    Q_INVOKABLE [[nodiscard]] bool isArrow(int key) const;
    /// Whether a key means the search: a slash, Ctrl+F, the search key of a remote control. A field that is
    /// being typed into keeps its slash.
    Q_INVOKABLE [[nodiscard]] bool isSearch(int key, int modifiers) const;

    Q_SIGNAL void isKeyboardInUseChanged();
    /// A key went down, whoever gets it. Emitted before it is delivered.
    Q_SIGNAL void keyPressed();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setKeyboardInUse(bool inUse);

    bool m_isKeyboardInUse = false;
};

} // namespace ondavia
