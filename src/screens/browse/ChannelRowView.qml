import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A channel: its logo on a quiet tile, its name, what is on, and that it is live.
T.ItemDelegate {
    id: row
    property url picture
    /// Empty where the guide does not know it.
    property string currentProgram
    property string type: "live"

    implicitHeight: 80
    padding: Theme.unit * 3
    focusPolicy: Qt.ClickFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.description: row.currentProgram
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        PictureView {
            id: logo
            width: 84
            height: 56
            anchors.verticalCenter: parent.verticalCenter
            source: row.picture
            symbol: "tv.fill"
            radius: Theme.unit * 2
            inset: Theme.unit * 2
            fillMode: Image.PreserveAspectFit
        }
        Column {
            anchors.left: logo.right
            anchors.leftMargin: Theme.unit * 4
            anchors.right: play.left
            anchors.rightMargin: Theme.unit * 2
            anchors.verticalCenter: parent.verticalCenter
            spacing: row.currentProgram === "" ? Theme.unit : Theme.unit / 2
            Label {
                width: parent.width
                text: row.text
                font.weight: Font.Medium
                wrapMode: Text.Wrap
                maximumLineCount: row.currentProgram === "" ? 2 : 1
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: row.currentProgram
                color: Theme.textMuted
                font.pixelSize: Theme.captionSize
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Row {
                visible: row.type === "live"
                spacing: Theme.unit * 2
                Rectangle {
                    width: 6
                    height: 6
                    radius: 3
                    color: Theme.danger
                    anchors.verticalCenter: parent.verticalCenter
                }
                Label {
                    text: Texts.get("AO VIVO", "AO VIVO")
                    color: Theme.textFaint
                    font.pixelSize: Theme.captionSize
                    font.weight: Font.DemiBold
                    Accessible.ignored: true
                }
            }
        }
        Icon {
            id: play
            anchors.right: parent.right
            anchors.rightMargin: Theme.unit
            anchors.verticalCenter: parent.verticalCenter
            symbol: "play.fill"
            color: Theme.accent
            opacity: row.hovered || (row.activeFocus && FocusGuide.isKeyboardInUse) ? 1 : 0
            Behavior on opacity { NumberAnimation { duration: Theme.motionShort } }
        }
    }
    background: Rectangle {
        radius: Theme.cardRadius
        color: row.down ? Theme.surfacePressed : row.hovered ? Theme.surfaceRaised : Theme.surface
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
        FocusRing { control: row; distance: 0; radius: parent.radius }
    }
}
