import QtQuick
import QtQuick.Templates as T
import Ondavia

/// Shows where a list stands, and moves it under a mouse.
T.ScrollBar {
    id: bar
    implicitWidth: 10
    padding: 2
    minimumSize: 0.06
    visible: size < 1
    focusPolicy: Qt.NoFocus
    Accessible.ignored: true
    contentItem: Rectangle {
        implicitWidth: 6
        radius: 3
        color: bar.pressed || bar.hovered ? Qt.rgba(1, 1, 1, 0.4) : Qt.rgba(1, 1, 1, 0.2)
        opacity: bar.active ? 1 : 0
        Behavior on opacity { NumberAnimation { duration: Theme.motion } }
    }
}
