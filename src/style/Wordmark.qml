import QtQuick
import Ondavia.Style

/// The name with its wave.
Row {
    id: mark
    property int size: 28
    spacing: mark.size * 0.4
    Accessible.role: Accessible.StaticText
    Accessible.name: "Ondavia"

    WaveGlyph {
        size: mark.size
        anchors.verticalCenter: parent.verticalCenter
    }
    Text {
        text: "Ondavia"
        textFormat: Text.PlainText
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: mark.size
        font.weight: Font.Bold
        font.letterSpacing: -mark.size * 0.02
        anchors.verticalCenter: parent.verticalCenter
        Accessible.ignored: true
    }
}
