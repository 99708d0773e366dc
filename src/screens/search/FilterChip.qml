import QtQuick
import Ondavia.Style

/// A type that the results can be narrowed to, and how many of them are of it.
Chip {
    id: chip
    required property string title
    required property string countText
    property bool isSelected: false

    text: chip.title + "  " + chip.countText
    highlighted: chip.isSelected
}
