import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A day to choose; ticked when it is the one that is shown.
T.AbstractButton {
    id: row
    required property string name
    required property bool isSelected

    text: row.name
    implicitHeight: 52
    focusPolicy: Qt.ClickFocus
    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    Accessible.checked: row.isSelected
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Label {
            anchors.left: parent.left
            anchors.leftMargin: Theme.unit * 4
            anchors.right: tick.left
            anchors.verticalCenter: parent.verticalCenter
            text: row.text
            color: row.isSelected ? Theme.accent : Theme.guideText
            font.weight: row.isSelected ? Font.DemiBold : Font.Normal
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Icon {
            id: tick
            anchors.right: parent.right
            anchors.rightMargin: Theme.unit * 4
            anchors.verticalCenter: parent.verticalCenter
            visible: row.isSelected
            symbol: "checkmark"
            size: 20
            color: Theme.accent
        }
    }
    background: Rectangle {
        radius: Theme.cardRadius
        color: row.down ? Theme.buttonPressed : row.hovered ? Theme.buttonHover : "transparent"
        FocusRing { control: row; distance: -2; radius: parent.radius }
    }
}
