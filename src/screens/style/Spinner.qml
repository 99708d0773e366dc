import QtQuick
import Ondavia

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
        anchors.fill: parent
        source: Environment.hasShownFrame ? Qt.resolvedUrl("spinner.svg") : ""
        fillMode: Image.PreserveAspectFit
        sourceSize.width: Math.ceil(spinner.width * Screen.devicePixelRatio)
        sourceSize.height: Math.ceil(spinner.height * Screen.devicePixelRatio)
        asynchronous: true
        Accessible.ignored: true
        RotationAnimator on rotation {
            running: spinner.running && spinner.visible && Theme.motion > 0
            from: 0
            to: 360
            duration: 900
            loops: Animation.Infinite
        }
    }
}
