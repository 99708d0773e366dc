import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A channel among others: number, logo, name; marked while it is on air.
T.ItemDelegate {
    id: row
    required property string number
    required property url logo
    property bool isOnAir: false

    implicitHeight: 64
    leftPadding: Theme.unit * 3
    rightPadding: Theme.unit * 3
    // A click leaves the keys to the picture.
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: row.text
    Accessible.selected: row.isOnAir
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Label {
            id: numberLabel
            width: 36
            anchors.verticalCenter: parent.verticalCenter
            horizontalAlignment: Text.AlignRight
            text: row.number
            color: row.isOnAir ? Theme.accent : Theme.textFaint
            font.pixelSize: Theme.captionSize
            font.weight: Font.Medium
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 8
            Accessible.ignored: true
        }
        PictureView {
            id: tile
            anchors.left: numberLabel.right
            anchors.leftMargin: Theme.unit * 3
            anchors.verticalCenter: parent.verticalCenter
            width: 66
            height: 44
            source: row.logo
            symbol: "tv.fill"
            radius: Theme.unit * 2
            inset: Theme.unit
            fillMode: Image.PreserveAspectFit
        }
        Label {
            anchors.left: tile.right
            anchors.leftMargin: Theme.unit * 3
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: row.text
            color: row.isOnAir ? Theme.accent : Theme.text
            font.weight: Font.Medium
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        radius: Theme.unit * 2
        color: row.down ? Theme.surfacePressed : row.isOnAir ? Theme.currentTab
            : row.hovered ? Theme.surfaceRaised : "transparent"
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
        FocusRing { control: row; distance: 0; radius: parent.radius }
    }
}
