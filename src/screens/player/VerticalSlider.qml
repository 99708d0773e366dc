import QtQuick
import Ondavia.Player
import Ondavia.Style

/// A value as a column, with its upper end at the top.
Item {
    id: slider
    required property SliderButtonModel model

    implicitWidth: 30
    implicitHeight: 160
    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: Theme.disc
    }
    Rectangle {
        id: track
        anchors.horizontalCenter: parent.horizontalCenter
        y: Theme.unit * 3
        width: 6
        height: parent.height - y * 2
        radius: 3
        color: Theme.seekTrack
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: slider.model.fraction * parent.height
            radius: 3
            color: Theme.accent
        }
    }
    MouseArea {
        anchors.fill: parent
        preventStealing: true
        Accessible.ignored: true
        onPressed: mouse => slider.model.slide(mouse.y, height)
        onPositionChanged: mouse => slider.model.slide(mouse.y, height)
    }
}
