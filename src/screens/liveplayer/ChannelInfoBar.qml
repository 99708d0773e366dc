import QtQuick
import Ondavia.Style

/// Which channel is on air and what it shows now, and the way to the guide and back.
FocusScope {
    id: bar
    required property string channelName
    required property url logo
    required property bool showEPG
    required property bool isLoadingEPG
    /// Empty when the guide knows of none.
    required property string currentProgramTitle
    signal viewToggled()

    function takeFocus() {
        toggle.forceActiveFocus(Qt.TabFocusReason)
    }

    implicitHeight: 76

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    PictureView {
        id: tile
        x: Theme.unit * 4
        anchors.verticalCenter: parent.verticalCenter
        width: 72
        height: 48
        source: bar.logo
        symbol: "tv.fill"
        radius: Theme.unit * 2
        inset: Theme.unit
        fillMode: Image.PreserveAspectFit
    }
    Column {
        anchors.left: tile.right
        anchors.leftMargin: Theme.unit * 3
        anchors.right: end.left
        anchors.rightMargin: Theme.unit * 3
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit / 2
        Label {
            width: parent.width
            text: bar.channelName
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
        }
        Item {
            width: parent.width
            height: live.height
            Rectangle {
                id: live
                width: word.width + Theme.unit * 3
                height: word.height + Theme.unit
                radius: Theme.unit
                color: Theme.live
                Label {
                    id: word
                    anchors.centerIn: parent
                    // A mark, the same in every language.
                    text: "AO VIVO"
                    font.pixelSize: Theme.captionSize
                    font.weight: Font.Bold
                }
            }
            Label {
                anchors.left: live.right
                anchors.leftMargin: Theme.unit * 2
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                text: bar.currentProgramTitle
                color: Theme.textMuted
                elide: Text.ElideRight
            }
        }
    }
    Item {
        id: end
        anchors.right: parent.right
        anchors.rightMargin: Theme.unit * 4
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(toggle.implicitWidth, 64)
        height: Theme.controlHeight
        Spinner {
            anchors.centerIn: parent
            width: 32
            height: 32
            running: bar.isLoadingEPG
        }
        Button {
            id: toggle
            anchors.fill: parent
            visible: !bar.isLoadingEPG
            kind: Button.Secondary
            leftPadding: Theme.unit * 4
            focusPolicy: Qt.TabFocus
            text: bar.showEPG ? Texts.get("player.channelList", "LISTA") : Texts.get("player.epg", "EPG")
            onClicked: bar.viewToggled()
        }
    }
}
