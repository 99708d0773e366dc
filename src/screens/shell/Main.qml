import QtQuick
import Ondavia.Shell
import Ondavia.Style

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
        FullScreen.window = window
        window.page.parent = window.contentItem
        window.page.anchors.fill = window.contentItem
    }
    Shortcut {
        sequence: "F11"
        onActivated: FullScreen.toggle(false)
    }
    Connections {
        target: window.page
        function onQuitRequested() { window.close() }
    }
}
