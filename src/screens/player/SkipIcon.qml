import QtQuick
import Ondavia.Style

/// The circular arrow of a skip, by a name such as "goforward.30", with the seconds inside.
Item {
    id: icon
    property string symbol
    property int size: 36
    property bool showsSeconds: true

    implicitWidth: icon.size
    implicitHeight: icon.size

    Icon {
        anchors.centerIn: parent
        symbol: icon.symbol
        size: icon.size
        // The font has the arrow that goes back.
        transform: Scale {
            origin.x: icon.size / 2
            xScale: icon.symbol.startsWith("goforward") ? -1 : 1
        }
    }
    Label {
        visible: icon.showsSeconds
        anchors.centerIn: parent
        anchors.verticalCenterOffset: icon.size * 0.06
        text: icon.symbol.split(".")[1] ?? ""
        font.pixelSize: icon.size * 0.28
        font.weight: Font.Bold
        Accessible.ignored: true
    }
}
