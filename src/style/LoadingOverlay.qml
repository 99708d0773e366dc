import QtQuick
import Ondavia.Style

/// Covers the whole window while the user has to wait, and takes every touch and key meanwhile. Where the
/// wait can be left, a button and Escape do so.
FocusScope {
    id: overlay
    property string message
    property bool isShown: false
    property bool canLeave: false
    property string leaveText
    signal leaveRequested()

    visible: opacity > 0
    opacity: overlay.isShown ? 1 : 0
    Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
    Accessible.role: Accessible.Indicator
    Accessible.name: overlay.message
    Accessible.ignored: !overlay.isShown
    Keys.onPressed: event => {
        // First: who leaves lowers the overlay at once, and the key would go on to what lies below.
        event.accepted = overlay.isShown
        if (overlay.canLeave && !event.isAutoRepeat && FocusGuide.isBack(event.key))
            overlay.leaveRequested()
    }
    onIsShownChanged: if (overlay.isShown) overlay.forceActiveFocus()
    onCanLeaveChanged: if (overlay.canLeave) leave.forceActiveFocus()

    Rectangle {
        anchors.fill: parent
        color: Theme.waitVeil
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
            color: Theme.waitText
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        // Its room is there from the start, so that nothing moves when it comes.
        Button {
            id: leave
            anchors.horizontalCenter: parent.horizontalCenter
            kind: Button.Secondary
            text: overlay.leaveText
            enabled: overlay.canLeave
            opacity: overlay.canLeave ? 1 : 0
            Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
            Accessible.ignored: !overlay.canLeave
            onClicked: overlay.leaveRequested()
        }
    }
}
