import QtQuick
import Ondavia.Style

/// A symbol of the icon font, by the name that the screens use for it.
Text {
    id: icon
    property string symbol
    property int size: 24

    text: Icons.glyph(icon.symbol)
    color: Theme.text
    font.family: Theme.iconFamily
    font.pixelSize: icon.size
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    Accessible.ignored: true
}
