import QtQuick
import Ondavia

/// The one window.
Window {
    id: window
    required property RootView page

    width: Theme.windowWidth
    height: Theme.windowHeight
    minimumWidth: 360
    minimumHeight: 480
    visible: true
    title: "Ondavia"
    color: Theme.background

    Component.onCompleted: {
        window.page.parent = window.contentItem
        window.page.anchors.fill = window.contentItem
    }
    Connections {
        target: window.page
        function onQuitRequested() { window.close() }
    }
}
