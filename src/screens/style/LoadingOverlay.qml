import QtQuick
import Ondavia

/// Covers the whole window while the user has to wait, and takes every touch and key meanwhile.
FocusScope {
    id: overlay
    property string message
    property bool isShown: false

    visible: opacity > 0
    opacity: overlay.isShown ? 1 : 0
    Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
    Accessible.role: Accessible.Indicator
    Accessible.name: overlay.message
    Accessible.ignored: !overlay.isShown
    Keys.onPressed: event => event.accepted = overlay.isShown
    onIsShownChanged: if (overlay.isShown) overlay.forceActiveFocus()

    Rectangle {
        anchors.fill: parent
        color: "black"
        opacity: 0.7
    }
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onWheel: wheel => wheel.accepted = true
        Accessible.ignored: true
    }
    Column {
        anchors.centerIn: parent
        width: parent.width - Theme.pageMargin * 2
        spacing: Theme.unit * 5
        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 48
            height: 48
            running: overlay.isShown
        }
        Label {
            width: parent.width
            text: overlay.message
            color: Qt.rgba(1, 1, 1, 0.8)
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
    }
}
