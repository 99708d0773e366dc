import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// An episode: its picture, its number, its title, how long it is.
T.ItemDelegate {
    id: row
    required property string label
    required property string duration
    required property url picture

    implicitHeight: 104
    padding: Theme.unit * 3
    focusPolicy: Qt.ClickFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: row.label + ", " + text + (row.duration === "" ? "" : ", " + row.duration)
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) clicked() }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) clicked() }

    contentItem: Item {
        PictureView {
            id: still
            height: parent.height
            width: Math.round(height * 16 / 9)
            source: row.picture
            symbol: "play.fill"
            radius: Theme.unit * 2
            RoundedCorners {
                anchors.fill: parent
                radius: Theme.unit * 2
                pageColor: ground.color
            }
        }
        Column {
            anchors.left: still.right
            anchors.leftMargin: Theme.unit * 4
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.unit
            Label {
                text: row.label
                color: Theme.accent
                font.pixelSize: Theme.captionSize
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                text: row.text
                font.weight: Font.Medium
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: row.duration
                color: Theme.textFaint
                font.pixelSize: Theme.captionSize
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        id: ground
        radius: Theme.cardRadius
        color: row.down ? Theme.surfacePressed : row.hovered ? Theme.surfaceRaised : Theme.surface
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
        FocusRing { control: row; distance: 0; radius: parent.radius }
    }
}
