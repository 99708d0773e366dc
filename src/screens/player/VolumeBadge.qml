import QtQuick
import Ondavia.Player
import Ondavia.Style

/// The volume, for a moment after a key or the wheel has changed it.
Rectangle {
    id: badge
    required property PlayerLevels model

    width: 220
    height: 48
    radius: height / 2
    color: Theme.disc
    visible: opacity > 0
    opacity: badge.model.showVolumeBadge ? 1 : 0
    Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
    Accessible.role: Accessible.StaticText
    Accessible.name: Texts.get("player.volume", "Volume") + " " + percent.text

    Icon {
        id: symbol
        x: Theme.unit * 4
        anchors.verticalCenter: parent.verticalCenter
        symbol: badge.model.volume.value > 0 ? "speaker.wave.2.fill" : "speaker.slash.fill"
        size: 22
    }
    Rectangle {
        id: track
        anchors.left: symbol.right
        anchors.leftMargin: Theme.unit * 3
        anchors.right: percent.left
        anchors.rightMargin: Theme.unit * 2
        anchors.verticalCenter: parent.verticalCenter
        height: 4
        radius: 2
        color: Theme.seekTrack
        Rectangle {
            width: track.width * badge.model.volume.value
            height: parent.height
            radius: 2
            color: Theme.accent
        }
    }
    TabularText {
        id: percent
        anchors.right: parent.right
        anchors.rightMargin: Theme.unit * 4
        anchors.verticalCenter: parent.verticalCenter
        text: Math.round(badge.model.volume.value * 100) + "%"
    }
}
