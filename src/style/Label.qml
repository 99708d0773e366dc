import QtQuick
import Ondavia.Style

/// Text of the interface: plain, in the body size unless told otherwise.
Text {
    color: Theme.text
    font.family: Theme.fontFamily
    font.pixelSize: Theme.bodySize
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
