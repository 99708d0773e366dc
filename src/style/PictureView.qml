import QtQuick
import Ondavia.Style

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
        symbol: image.isThere ? "" : view.symbol
    }
    Image {
        id: image
        anchors.fill: parent
        anchors.margins: view.inset
        readonly property bool isThere: status === Image.Ready && implicitWidth > 0
        // The first frame does not wait for pictures, and the size to load is known by then.
        source: Environment.hasShownFrame && width > 0 && height > 0 ? view.source : ""
        asynchronous: true
        fillMode: Image.PreserveAspectCrop
        // In steps, so that a window that changes its size does not load everything at each pixel.
        sourceSize.width: Math.ceil(width * Screen.devicePixelRatio / 64) * 64
        sourceSize.height: Math.ceil(height * Screen.devicePixelRatio / 64) * 64
        opacity: isThere ? 1 : 0
        Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
        Accessible.ignored: true
    }
}
