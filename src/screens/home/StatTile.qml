import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A number of the catalogue, and the way to what it counts.
T.Button {
    id: tile
    required property string figure
    required property string symbol

    implicitHeight: 120
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: tile.figure + " " + text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Icon {
            id: icon
            x: Theme.unit * 5
            anchors.verticalCenter: parent.verticalCenter
            symbol: tile.symbol
            size: 32
            color: Theme.accent
        }
        Column {
            anchors.left: icon.right
            anchors.leftMargin: Theme.unit * 5
            anchors.right: parent.right
            anchors.rightMargin: Theme.unit * 3
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.unit
            Label {
                width: parent.width
                text: tile.figure
                font.pixelSize: Theme.titleSize
                font.weight: Font.Bold
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                text: tile.text
                color: Theme.textMuted
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: Theme.cardRadius
        color: tile.down ? Theme.tilePressed : tile.hovered ? Theme.tileHover : Theme.tile
        border.width: 1
        border.color: Theme.hairline
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
        FocusRing { control: tile; radius: parent.radius + distance }
    }
}
