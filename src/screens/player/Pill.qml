import QtQuick
import Ondavia.Style

/// A short word over a picture.
Rectangle {
    id: pill
    property string text

    width: label.width + Theme.unit * 5
    height: Theme.unit * 7
    radius: height / 2
    Label {
        id: label
        anchors.centerIn: parent
        text: pill.text
        font.pixelSize: Theme.captionSize
        font.weight: Font.Bold
    }
}
