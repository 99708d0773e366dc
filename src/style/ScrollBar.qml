import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// Shows where a list stands, and moves it under a mouse: faint until it is wanted, and wide enough to be
/// held then, however long the list.
T.ScrollBar {
    id: bar
    readonly property bool isHeld: bar.pressed || bar.hovered

    implicitWidth: Theme.unit * 4
    padding: Theme.unit / 2
    minimumSize: bar.height > 0 ? Math.min(1, Theme.controlHeight / bar.height) : 0
    visible: size < 1
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    Accessible.ignored: true
    contentItem: Item {
        implicitWidth: bar.availableWidth
        Rectangle {
            anchors.right: parent.right
            width: bar.isHeld ? parent.width : Theme.unit
            height: parent.height
            radius: width / 2
            color: bar.pressed ? Theme.handlePressed : bar.isHeld || bar.active ? Theme.handleHover : Theme.handle
            Behavior on color { ColorAnimation { duration: Theme.motionShort } }
            Behavior on width { NumberAnimation { duration: Theme.motionShort } }
        }
    }
}
