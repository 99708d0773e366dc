pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Style

/// A text whose digits are all as wide as the widest, so that a running clock does not jitter.
Row {
    id: row
    property string text
    property color color: Theme.text
    property int pixelSize: Theme.bodySize
    property int weight: Font.Medium

    Accessible.role: Accessible.StaticText
    Accessible.name: row.text

    FontMetrics {
        id: metrics
        font.family: Theme.fontFamily
        font.pixelSize: row.pixelSize
        font.weight: row.weight
        readonly property real digitWidth: Math.ceil(Math.max(...[..."0123456789"].map(
            digit => metrics.advanceWidth(digit))))
    }
    Repeater {
        // By number, so that a text of the same length only changes its letters.
        model: row.text.length
        Label {
            id: letter
            required property int index
            readonly property bool isDigit: text >= "0" && text <= "9"
            width: letter.isDigit ? metrics.digitWidth : implicitWidth
            text: row.text.charAt(letter.index)
            color: row.color
            font.pixelSize: row.pixelSize
            font.weight: row.weight
            horizontalAlignment: Text.AlignHCenter
            Accessible.ignored: true
        }
    }
}
