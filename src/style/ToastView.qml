import QtQuick
import Ondavia.Style

/// A short message on the colour of its kind, near the bottom. Keeps its last text while it fades away.
Item {
    id: toast
    /// A text; undefined when there is no toast.
    property var message
    property int kind: NoticeKind.Info
    signal dismissed()

    readonly property bool isShown: toast.message !== undefined
    property string lastMessage

    onMessageChanged: if (toast.message !== undefined) toast.lastMessage = toast.message

    width: Math.min(parent.width - Theme.narrowPageMargin * 2, content.implicitWidth + Theme.unit * 10)
    height: Math.max(Theme.controlHeight + Theme.unit * 2, label.height + Theme.unit * 6)
    visible: opacity > 0
    opacity: toast.isShown ? 1 : 0
    Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
    transform: Translate {
        y: toast.isShown ? 0 : Theme.unit * 4
        Behavior on y { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
    }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: toast.lastMessage
    Accessible.ignored: !toast.isShown

    Rectangle {
        anchors.fill: parent
        radius: Theme.cardRadius
        color: Theme.toastColor(toast.kind)
        border.width: 1
        border.color: Theme.toastFrame
    }
    Row {
        id: content
        anchors.left: parent.left
        anchors.leftMargin: Theme.unit * 5
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit * 3
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: Theme.noticeSymbol(toast.kind)
            color: Theme.toastText
        }
        Label {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, toast.parent.width - Theme.narrowPageMargin * 2 - Theme.unit * 19)
            text: toast.lastMessage
            color: Theme.toastText
            font.weight: Font.Medium
            wrapMode: Text.Wrap
            maximumLineCount: 4
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
    TapHandler {
        enabled: toast.isShown
        onTapped: toast.dismissed()
    }
}
