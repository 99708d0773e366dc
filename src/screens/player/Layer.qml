import QtQuick
import Ondavia.Style

/// Something that covers the picture for a while: made when it opens, gone when it has faded away, and with
/// the focus meanwhile.
Loader {
    id: layer
    property bool isOpen: false
    required property url page
    required property var pageProperties

    enabled: layer.isOpen
    opacity: layer.isOpen ? 1 : 0
    onEnabledChanged: {
        if (layer.enabled) {
            layer.setSource(layer.page, layer.pageProperties)
            layer.forceActiveFocus()
        }
    }
    onOpacityChanged: if (layer.opacity === 0) layer.source = ""
    Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
}
