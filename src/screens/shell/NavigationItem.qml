import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// One tab in the rail or in the bar.
T.TabButton {
    id: item
    required property string symbol
    property bool isCurrent: false

    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.PageTab
    Accessible.name: text
    Accessible.selected: isCurrent
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    readonly property color foreground: item.isCurrent ? Theme.accent : item.hovered ? Theme.text : Theme.textFaint

    contentItem: Item {
        Column {
            anchors.centerIn: parent
            width: parent.width
            spacing: Theme.unit
            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 56
                height: 32
                radius: 16
                color: item.isCurrent ? Theme.currentTab
                    : item.down ? Theme.surfacePressed : item.hovered ? Theme.surfaceRaised : "transparent"
                Behavior on color { ColorAnimation { duration: Theme.motionShort } }
                Icon {
                    anchors.centerIn: parent
                    symbol: item.symbol
                    color: item.foreground
                }
            }
            Text {
                width: parent.width
                text: item.text
                textFormat: Text.PlainText
                color: item.foreground
                font.family: Theme.fontFamily
                font.pixelSize: Theme.captionSize
                font.weight: item.isCurrent ? Font.DemiBold : Font.Medium
                horizontalAlignment: Text.AlignHCenter
                elide: Text.ElideRight
            }
        }
    }
    background: Item {
        FocusRing { control: item; distance: -Theme.unit; radius: Theme.cardRadius }
    }
}
