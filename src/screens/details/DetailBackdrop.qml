pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Style

/// A wide picture that fades into the page. Where a title has none, or until it has come, the colours of its
/// poster stand in.
Item {
    id: backdrop
    required property url picture
    required property url poster
    /// The page has neither.
    required property bool isBare
    /// How much of the picture the page lets through at its top.
    property real clearness: 0.8

    function veil(opacity: real): color {
        return Qt.rgba(Theme.background.r, Theme.background.g, Theme.background.b, opacity)
    }

    component Faded: Image {
        id: image
        property url picture
        readonly property bool isThere: status === Image.Ready && implicitWidth > 0
        anchors.fill: parent
        // The first frame does not wait for pictures, and the size to load is known by then.
        source: Environment.hasShownFrame && width > 0 && height > 0 ? image.picture : ""
        asynchronous: true
        fillMode: Image.PreserveAspectCrop
        opacity: isThere ? 1 : 0
        Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
        Accessible.ignored: true
    }

    Rectangle {
        anchors.fill: parent
        visible: backdrop.isBare
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.placeholderTop }
            GradientStop { position: 1; color: Theme.background }
        }
    }
    Faded {
        visible: own.opacity < 1
        picture: backdrop.poster
        // So few pixels that nothing is left of it but its colours.
        sourceSize.width: 16
        sourceSize.height: 16
    }
    Faded {
        id: own
        picture: backdrop.picture
        // In steps, so that a window that changes its size does not load everything at each pixel.
        sourceSize.width: Math.ceil(width * Screen.devicePixelRatio / 64) * 64
        sourceSize.height: Math.ceil(height * Screen.devicePixelRatio / 64) * 64
    }
    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: backdrop.veil(1 - backdrop.clearness) }
            GradientStop { position: 0.25; color: backdrop.veil(1.1 - backdrop.clearness) }
            GradientStop { position: 0.48; color: backdrop.veil(0.78) }
            GradientStop { position: 0.7; color: backdrop.veil(0.92) }
            GradientStop { position: 1; color: Theme.background }
        }
    }
    // The poster and the first words stand at the left.
    Rectangle {
        width: parent.width * 0.6
        height: parent.height
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop { position: 0; color: backdrop.veil(0.7) }
            GradientStop { position: 1; color: Theme.backgroundClear }
        }
    }
}
