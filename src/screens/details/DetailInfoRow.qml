import QtQuick
import Ondavia.Style

/// A titled line of text.
Column {
    id: row
    required property string title
    required property string value

    spacing: Theme.unit
    Accessible.role: Accessible.StaticText
    Accessible.name: row.title + ": " + row.value

    Label {
        text: row.title
        color: Theme.textFaint
        font.pixelSize: Theme.captionSize
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }
    Label {
        width: row.width
        text: row.value
        color: Theme.textMuted
        lineHeight: 1.3
        wrapMode: Text.Wrap
        maximumLineCount: 6
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
