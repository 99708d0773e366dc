import QtQuick
import Ondavia.Style

/// Rows below the titles of their groups, for a model with a `group`.
// In a document of its own: Qt 6.4 makes no titles of a component that is bound to its document's names.
RowList {
    section.property: "group"
    section.delegate: Label {
        id: title
        required property string section
        width: parent === null ? 0 : parent.width
        topPadding: Theme.unit * 3
        bottomPadding: Theme.unit * 3
        text: title.section
        font.pixelSize: Theme.headingSize
        font.weight: Font.DemiBold
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
    }
}
