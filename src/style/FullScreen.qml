pragma Singleton
import QtQuick
import QtQuick.Window

/// Has the window fill the screen and be what it was before afterwards, whoever of all that ask for it ends it.
QtObject {
    id: fullScreen
    /// Set by the window.
    property Window window: null
    readonly property bool isOn: fullScreen.window !== null && fullScreen.window.visibility === Window.FullScreen
    /// For as long as a player wants it, and not by the viewer's own wish.
    readonly property bool isPlayers: fullScreen.isOn && fullScreen.wasPlayers
    property bool wasPlayers: false
    property int before: Window.Windowed

    function enter(isForPlayer: bool) {
        if (fullScreen.window === null || fullScreen.isOn)
            return
        fullScreen.wasPlayers = isForPlayer
        fullScreen.before = fullScreen.window.visibility
        fullScreen.window.visibility = Window.FullScreen
    }
    function leave() {
        if (fullScreen.isOn)
            fullScreen.window.visibility = fullScreen.before
    }
    function toggle(isForPlayer: bool) {
        if (fullScreen.isOn)
            fullScreen.leave()
        else
            fullScreen.enter(isForPlayer)
    }
    function leavePlayer() {
        if (fullScreen.isPlayers)
            fullScreen.leave()
    }
}
