import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A button beside the main one: a symbol that tells a state, and what the button is for.
T.Button {
    id: action
    required property string symbol
    property bool isActive: false

    implicitHeight: Theme.controlHeight
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: Theme.unit * 5
    rightPadding: Theme.unit * 5
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: action.isActive
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) clicked() }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) clicked() }

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight
        Row {
            id: row
            anchors.centerIn: parent
            spacing: Theme.unit * 2
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: action.symbol
                size: 20
                color: action.isActive ? Theme.accent : Theme.text
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: action.text
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: Theme.cardRadius
        border.width: 1
        border.color: Theme.hairline
        color: action.down || action.hovered ? Theme.surfacePressed : Theme.surfaceRaised
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
        FocusRing { control: action; radius: parent.radius + distance }
    }
}
