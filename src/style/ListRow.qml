import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A row that leads somewhere: a text, a short detail, a chevron.
T.ItemDelegate {
    id: row
    property string detail

    implicitHeight: 64
    leftPadding: Theme.unit * 5
    rightPadding: Theme.unit * 3
    focusPolicy: Qt.ClickFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: row.detail === "" ? text : text + ", " + row.detail
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Label {
            anchors.left: parent.left
            anchors.right: detailLabel.left
            anchors.rightMargin: Theme.unit * 3
            anchors.verticalCenter: parent.verticalCenter
            text: row.text
            elide: Text.ElideRight
            font.weight: Font.Medium
            Accessible.ignored: true
        }
        Label {
            id: detailLabel
            anchors.right: chevron.left
            anchors.rightMargin: Theme.unit
            anchors.verticalCenter: parent.verticalCenter
            text: row.detail
            color: Theme.textFaint
            Accessible.ignored: true
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
        radius: Theme.cardRadius
        color: row.down ? Theme.surfacePressed : row.hovered ? Theme.surfaceRaised : Theme.surface
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
        FocusRing { control: row; distance: 0; radius: parent.radius }
    }
}
