import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A film or a series in a list: its poster, its name, a short detail.
T.ItemDelegate {
    id: row
    property url picture
    property string symbol
    property string detail

    implicitHeight: 102
    padding: Theme.unit * 3
    focusPolicy: Qt.ClickFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: row.detail === "" ? text : text + ", " + row.detail
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        // In the middle of a channel's logo, so that the names of both begin below each other.
        Item {
            id: place
            width: 84
            height: parent.height
            PictureView {
                id: poster
                anchors.centerIn: parent
                width: 52
                height: 78
                source: row.picture
                symbol: row.symbol
                radius: Theme.unit * 2
            }
            RoundedCorners {
                anchors.fill: poster
                radius: Theme.unit * 2
                pageColor: ground.color
            }
        }
        Column {
            anchors.left: place.right
            anchors.leftMargin: Theme.unit * 4
            anchors.right: chevron.left
            anchors.rightMargin: Theme.unit * 2
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.unit
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
                text: row.detail
                color: Theme.textFaint
                font.pixelSize: Theme.captionSize
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }
        Icon {
            id: chevron
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            symbol: "chevron.right"
            size: 20
            color: Theme.textFaint
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
