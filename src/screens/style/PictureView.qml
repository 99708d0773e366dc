import QtQuick
import Ondavia

/// A picture from the network in a place of fixed size: loaded in the background at the size shown, faded
/// in over its placeholder. Nothing moves when it comes or fails.
Item {
    id: view
    property url source
    property alias fillMode: image.fillMode
    property string symbol: "photo"
    property real radius: 0
    /// Space between the edge and the picture.
    property real inset: 0

    PicturePlaceholder {
        id: placeholder
        anchors.fill: parent
        radius: view.radius
        visible: image.opacity < 1 || view.inset > 0
        symbol: image.status === Image.Ready ? "" : view.symbol
    }
    Image {
        id: image
        anchors.fill: parent
        anchors.margins: view.inset
        // The size to load is not known before there is a screen.
        source: view.Window.window ? view.source : ""
        asynchronous: true
        fillMode: Image.PreserveAspectCrop
        sourceSize.width: Math.ceil(width * Screen.devicePixelRatio)
        sourceSize.height: Math.ceil(height * Screen.devicePixelRatio)
        opacity: status === Image.Ready ? 1 : 0
        Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
        Accessible.ignored: true
    }
}
