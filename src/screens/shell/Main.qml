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
        window.page.parent = window.contentItem
        window.page.anchors.fill = window.contentItem
    }
    Shortcut {
        property int before: Window.Windowed
        sequence: "F11"
        onActivated: {
            const isFull = window.visibility === Window.FullScreen
            if (!isFull)
                before = window.visibility
            window.visibility = isFull ? before : Window.FullScreen
        }
    }
    Connections {
        target: window.page
        function onQuitRequested() { window.close() }
    }
}
