import QtQuick
import Ondavia.Player
import Ondavia.Style

/// The line of the external subtitles that shows now. Deaf to touches.
Item {
    id: view
    required property SubtitleOverlayModel model

    enabled: false
    Rectangle {
        objectName: "subtitleBlock"
        visible: line.text !== ""
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 60
        width: line.width + 28
        height: line.height + 12
        color: Theme.subtitleGround
        Label {
            id: line
            anchors.centerIn: parent
            width: Math.min(implicitWidth, view.width - 28)
            text: view.model.activeText
            color: Theme.subtitleText
            font.pixelSize: 18
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
    }
}
