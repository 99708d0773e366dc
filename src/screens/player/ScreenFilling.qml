import QtQuick
import QtQuick.Window

/// Has the window fill the screen for as long as a player wants it, and be what it was before afterwards.
Item {
    id: filling
    property int former: Window.Windowed
    /// The window fills the screen because of this, and not because the viewer had it so before.
    property bool fills: false

    function enter() {
        const window = filling.Window.window
        if (window === null || window.visibility === Window.FullScreen)
            return
        filling.former = window.visibility
        filling.fills = true
        window.visibility = Window.FullScreen
    }
    function leave() {
        if (filling.fills)
            filling.end()
    }
    function toggle() {
        if (filling.Window.visibility === Window.FullScreen)
            filling.end()
        else
            filling.enter()
    }
    function end() {
        filling.fills = false
        filling.Window.window.visibility = filling.former
    }
}
