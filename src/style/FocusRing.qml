import QtQuick
import Ondavia.Style

/// The frame around what the keyboard or the remote control is on. Fill the control with it.
Rectangle {
    id: ring
    required property Item control
    property real distance: 3

    anchors.fill: parent
    anchors.margins: -ring.distance
    color: "transparent"
    border.width: 2
    border.color: Theme.accent
    visible: ring.control.activeFocus && FocusGuide.isKeyboardInUse
}
