import QtQuick
import Ondavia.Player
import Ondavia.Style

/// The position in a film. Bar and handle follow the finger; the film follows when it is lifted.
Item {
    id: bar
    required property VODSeekBarModel model
    signal stepped(bool forwards)
    readonly property bool isLively: area.containsMouse || area.pressed || bar.activeFocus

    implicitHeight: 48
    visible: bar.model.isDrawn
    activeFocusOnTab: true
    Accessible.role: Accessible.Slider
    Accessible.name: Texts.get("player.position", "Posição")
    Accessible.description: bar.model.positionText
    Accessible.onIncreaseAction: bar.stepped(true)
    Accessible.onDecreaseAction: bar.stepped(false)

    Rectangle {
        id: track
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: bar.isLively ? 6 : 4
        radius: height / 2
        color: Theme.seekTrack
        Behavior on height { NumberAnimation { duration: Theme.motionShort } }
        Rectangle {
            objectName: "seekFill"
            width: Math.max(0, bar.model.fraction) * parent.width
            height: parent.height
            radius: height / 2
            color: Theme.accent
        }
    }
    Rectangle {
        id: handle
        x: Math.max(0, bar.model.fraction) * bar.width - width / 2
        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        radius: 8
        color: Theme.accent
        scale: bar.model.isSeeking ? 1.4 : 1
        Behavior on scale { NumberAnimation { duration: Theme.motionShort } }
        FocusRing { control: bar; radius: 11 }
    }
    Rectangle {
        visible: bar.model.isSeeking
        x: Math.max(0, Math.min(bar.width - width, handle.x + handle.width / 2 - width / 2))
        anchors.bottom: track.top
        anchors.bottomMargin: Theme.unit * 4
        width: target.width + Theme.unit * 6
        height: 36
        radius: height / 2
        color: Theme.disc
        TabularText {
            id: target
            anchors.centerIn: parent
            text: bar.model.positionText
            Accessible.ignored: true
        }
    }
    MouseArea {
        id: area
        // Also for a thumb that means the very end.
        readonly property real overhang: Theme.unit * 3
        anchors.fill: parent
        anchors.leftMargin: -overhang
        anchors.rightMargin: -overhang
        hoverEnabled: true
        preventStealing: true
        Accessible.ignored: true
        onPressed: mouse => bar.model.drag(mouse.x - overhang, bar.width)
        onPositionChanged: mouse => {
            if (pressed)
                bar.model.drag(mouse.x - overhang, bar.width)
        }
        onReleased: mouse => bar.model.endDrag(mouse.x - overhang, bar.width)
        onCanceled: bar.model.cancelDrag()
    }
}
