import QtQuick
import Ondavia.Style

/// A short fact of a title in a small pill.
Rectangle {
    id: badge
    required property string text
    property bool highlight: false

    implicitWidth: Math.min(label.implicitWidth + Theme.unit * 5, 280)
    implicitHeight: Theme.unit * 7
    radius: height / 2
    color: Theme.factGround

    Label {
        id: label
        anchors.centerIn: parent
        width: Math.min(implicitWidth, badge.width - Theme.unit * 5)
        text: badge.text
        color: badge.highlight ? Theme.accent : Theme.factText
        font.pixelSize: Theme.captionSize
        font.weight: Font.DemiBold
        elide: Text.ElideRight
    }
}
