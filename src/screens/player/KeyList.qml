pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Player
import Ondavia.Style

/// What the keys do, over the picture until a key or a tap sends it away.
FocusScope {
    id: list
    required property PlayerScreen player

    Accessible.role: Accessible.Dialog
    Accessible.name: Texts.get("player.keys.title", "Teclas")
    Keys.onPressed: event => {
        event.accepted = true
        if (!page.canScroll(event.key))
            list.player.showKeys = false
        else
            page.scroll(event.key === Qt.Key_Down ? Qt.Key_PageDown : event.key === Qt.Key_Up ? Qt.Key_PageUp : event.key)
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.dialogVeil
    }
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onClicked: list.player.showKeys = false
        onWheel: wheel => wheel.accepted = true
        Accessible.ignored: true
    }
    Rectangle {
        anchors.centerIn: parent
        width: Math.min(list.width - Theme.narrowPageMargin * 2, 420)
        height: Math.min(list.height - Theme.narrowPageMargin * 2, lines.height + Theme.unit * 12)
        radius: Theme.cardRadius
        color: Theme.surfaceRaised
        border.width: 1
        border.color: Theme.hairline
        clip: true

        ScrollPage {
            id: page
            anchors.fill: parent
            contentHeight: lines.height + Theme.unit * 12
            // Else a tap is one that sends the list away.
            interactive: contentHeight > height

            Column {
                id: lines
                x: Theme.unit * 6
                y: Theme.unit * 6
                width: parent.width - x * 2
                spacing: Theme.unit
                Label {
                    text: Texts.get("player.keys.title", "Teclas")
                    font.pixelSize: Theme.headingSize
                    font.weight: Font.DemiBold
                    bottomPadding: Theme.unit * 3
                    Accessible.role: Accessible.Heading
                }
                Repeater {
                    model: list.player.keys.lines
                    Item {
                        id: line
                        required property var modelData
                        width: lines.width
                        height: Math.max(36, action.height + Theme.unit * 2)
                        Accessible.role: Accessible.ListItem
                        Accessible.name: line.modelData.keys + ": " + line.modelData.action
                        Rectangle {
                            width: names.width + Theme.unit * 4
                            height: 28
                            anchors.verticalCenter: parent.verticalCenter
                            radius: Theme.unit * 2
                            color: Theme.buttonHover
                            Label {
                                id: names
                                anchors.centerIn: parent
                                text: line.modelData.keys
                                font.weight: Font.Medium
                                Accessible.ignored: true
                            }
                        }
                        Label {
                            id: action
                            x: 124
                            width: parent.width - x
                            anchors.verticalCenter: parent.verticalCenter
                            text: line.modelData.action
                            color: Theme.textMuted
                            wrapMode: Text.Wrap
                            Accessible.ignored: true
                        }
                    }
                }
            }
        }
    }
}
