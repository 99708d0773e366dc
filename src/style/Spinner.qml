import QtQuick
import Ondavia.Style

/// Says that something is under way. With less motion asked for it stands still as an open ring.
Item {
    id: spinner
    property bool running: true

    implicitWidth: 40
    implicitHeight: 40
    visible: running
    Accessible.role: Accessible.Animation
    Accessible.name: Texts.get("common.inProgress", "Em curso")

    Image {
        id: ring
        objectName: "spinnerRing"
        anchors.fill: parent
        source: Environment.hasShownFrame ? Qt.resolvedUrl("spinner.svg") : ""
        fillMode: Image.PreserveAspectFit
        sourceSize.width: Math.ceil(spinner.width * Screen.devicePixelRatio)
        sourceSize.height: Math.ceil(spinner.height * Screen.devicePixelRatio)
        asynchronous: true
        Accessible.ignored: true
        // In steps: each is a frame of the whole window, which may be drawn by the processor.
        Timer {
            running: spinner.running && spinner.visible && Theme.motion > 0
            interval: 150
            repeat: true
            onTriggered: ring.rotation = (ring.rotation + 45) % 360
        }
    }
}
