import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// One choice of a section; ticked when it is the one in use.
T.AbstractButton {
    id: option
    property bool isSelected: false

    implicitHeight: 48
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    Accessible.checked: option.isSelected
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Label {
            anchors.left: parent.left
            anchors.leftMargin: Theme.unit * 6
            anchors.right: tick.left
            anchors.verticalCenter: parent.verticalCenter
            text: option.text
            color: option.isSelected ? Theme.text : Theme.textMuted
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Icon {
            id: tick
            anchors.right: parent.right
            anchors.rightMargin: Theme.unit * 4
            anchors.verticalCenter: parent.verticalCenter
            visible: option.isSelected
            symbol: "checkmark"
            size: 20
            color: Theme.accent
        }
    }
    background: Rectangle {
        radius: Theme.cardRadius
        color: option.down ? Theme.buttonPressed : option.hovered ? Theme.buttonHover : "transparent"
        FocusRing { control: option; distance: -2; radius: parent.radius }
    }
}
