import QtQuick
import Ondavia.Style

/// A page that has nothing to show yet: icon, title and message in its middle, and a way on below them
/// where the page has one.
Item {
    id: view
    property string icon
    property string title
    property string message
    /// There is room for words only.
    property bool isLow: false
    default property alias actions: actionColumn.data

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - Theme.narrowPageMargin * 2, 440)
        spacing: Theme.unit * 3

        Rectangle {
            visible: !view.isLow
            anchors.horizontalCenter: parent.horizontalCenter
            width: 96
            height: 96
            radius: 48
            color: Theme.surface
            border.width: 1
            border.color: Theme.hairline
            Icon {
                anchors.centerIn: parent
                symbol: view.icon
                size: 40
                color: Theme.accent
            }
        }
        Item { visible: !view.isLow; width: 1; height: Theme.unit }
        Label {
            width: parent.width
            text: view.title
            font.pixelSize: Theme.headingSize
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            visible: text !== ""
            text: view.message
            color: Theme.textMuted
            lineHeight: 1.3
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        Column {
            id: actionColumn
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: view.isLow ? 0 : Theme.unit * 3
        }
    }
}
