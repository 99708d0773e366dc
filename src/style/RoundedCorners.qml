import QtQuick
import Ondavia.Style

/// Rounds the picture below it by covering its corners with the colour of the page: a clip costs a render
/// pass for each card, this one costs a rectangle.
Item {
    id: corners
    property real radius: Theme.cardRadius
    property color pageColor: Theme.background

    Rectangle {
        anchors.fill: parent
        anchors.margins: -border.width
        color: "transparent"
        border.width: Math.ceil(corners.radius * 0.45)
        border.color: corners.pageColor
        radius: corners.radius + border.width
    }
}
