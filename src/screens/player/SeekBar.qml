import QtQuick
import QtQuick.Templates as T
import Ondavia

/// The position in a film. The handle follows the finger; the film follows when it is let go.
T.Slider {
    id: bar
    property double position0: 0
    property double duration: 0
    signal sought(double seconds)

    implicitHeight: 32
    from: 0
    to: Math.max(1, bar.duration)
    stepSize: 10
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Slider
    Accessible.name: Texts.get("player.position", "Posição")
    Binding on value { when: !bar.pressed; value: bar.position0 }
    onPressedChanged: if (!pressed) bar.sought(value)
    Keys.onLeftPressed: bar.sought(Math.max(0, bar.position0 - 10))
    Keys.onRightPressed: bar.sought(Math.min(bar.duration, bar.position0 + 10))

    background: Item {
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            height: bar.hovered || bar.pressed || bar.activeFocus ? 6 : 4
            radius: 3
            color: Qt.rgba(1, 1, 1, 0.25)
            Rectangle {
                width: bar.visualPosition * parent.width
                height: parent.height
                radius: 3
                color: Theme.accent
            }
        }
    }
    handle: Rectangle {
        x: bar.visualPosition * (bar.availableWidth - width)
        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        radius: 8
        color: Theme.accent
        scale: bar.pressed ? 1.3 : 1
        Behavior on scale { NumberAnimation { duration: Theme.motionShort } }
        FocusRing { control: bar; radius: 11 }
    }
}
