import QtQuick
import Ondavia.Style

/// The titles of a list's groups, above their rows. A group without a name leaves a gap.
// Not where the list is: Qt 6.4 makes no titles of a component that is bound to its document's names, and one
// whose document has a `section` of its own, as a list has, keeps its first text for all groups.
QtObject {
    readonly property Component title: Label {
        id: label
        required property string section
        width: parent === null ? 0 : parent.width
        height: label.section === "" ? Theme.unit * 2 : Theme.unit * 12
        verticalAlignment: Text.AlignVCenter
        text: label.section
        font.pixelSize: Theme.headingSize
        font.weight: Font.DemiBold
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
    }
}
