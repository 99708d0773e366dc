import QtQuick
import Ondavia.LivePlayer
import Ondavia.Style

/// The number that is being typed, large, and which channel that is.
Rectangle {
    id: badge
    required property ChannelNumberEntry model

    width: Math.min(Math.max(digits.implicitWidth, name.implicitWidth) + Theme.unit * 10,
                    parent.width - Theme.unit * 8)
    height: digits.height + name.height + Theme.unit * 6
    radius: Theme.cardRadius
    color: Theme.panel
    border.width: 1
    border.color: Theme.hairline
    visible: badge.model.digits !== ""
    Accessible.role: Accessible.StaticText
    Accessible.name: digits.text + ", " + name.text

    Label {
        id: digits
        y: Theme.unit * 2
        anchors.horizontalCenter: parent.horizontalCenter
        text: badge.model.digits
        // Read from across the room.
        font.pixelSize: Theme.titleSize * 2
        font.weight: Font.Bold
        font.letterSpacing: Theme.unit
        Accessible.ignored: true
    }
    Label {
        id: name
        anchors.top: digits.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, parent.width - Theme.unit * 6)
        text: badge.model.channelName !== "" ? badge.model.channelName
            : Texts.get("live.noSuchNumber", "Nenhum canal tem este número")
        color: badge.model.channelName !== "" ? Theme.text : Theme.textMuted
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
