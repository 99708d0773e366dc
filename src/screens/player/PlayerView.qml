import QtQuick
import Ondavia.Player
import Ondavia.Style

/// The full-screen player of films: the picture, and controls that step back while it plays. The keyboard steers
/// the film; Enter or Tab leads it to the controls.
FocusScope {
    id: view
    required property PlayerViewModel model
    readonly property bool showsControls: view.model.controls.showControls

    function goBack() {
        if (view.model.closeLayer())
            return
        if (FullScreen.isPlayers)
            FullScreen.leave()
        else
            view.model.close()
    }
    function handleKey(key: int, isAutoRepeat: bool): bool {
        const entersControls = key === Qt.Key_Return || key === Qt.Key_Enter || key === Qt.Key_Tab
        if (entersControls && stage.hasFocus) {
            // A key held down would go on to press what it has led to.
            if (!isAutoRepeat)
                controls.takeFocus()
            return true
        }
        if (FocusGuide.isArrow(key) && controls.activeFocus && !controls.steersWith(key)) {
            FocusGuide.move(controls, key)
            return true
        }
        return view.model.keys.press(key, isAutoRepeat)
    }

    Keys.onPressed: event => {
        const isCommand = event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier)
        event.accepted = true
        if (FocusGuide.isBack(event.key)) {
            if (!event.isAutoRepeat)
                view.goBack()
        } else
            event.accepted = !isCommand && view.handleKey(event.key, event.isAutoRepeat)
    }
    onShowsControlsChanged: if (!view.showsControls && !layers.isCovering) stage.takeFocus()

    Connections {
        target: FocusGuide
        function onKeyPressed() {
            view.model.controls.wake()
        }
    }
    Connections {
        target: view.model
        function onFullScreenToggled() {
            FullScreen.toggle(true)
        }
        function onDisappeared() {
            FullScreen.leavePlayer()
        }
    }
    PointerWake { model: view.model }

    PlayerStage {
        id: stage
        anchors.fill: parent
        focus: true
        model: view.model
        coveredBottom: view.showsControls ? controls.bottomHeight : 0
        onTapped: (x, y) => view.model.taps.tap(x, y, stage.width)
        SubtitleOverlayView {
            anchors.fill: parent
            visible: view.model.subtitles.isShown
            model: view.model.subtitles
        }
    }
    PlayerControls {
        id: controls
        anchors.fill: parent
        model: view.model
        hidesMiddle: stage.needsMiddle
        enabled: view.showsControls && !layers.isCovering
        opacity: view.showsControls ? 1 : 0
        visible: opacity > 0
        Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Easing.InOutQuad } }
    }
    SkipBadge {
        anchors.fill: parent
        model: view.model.skips
    }
    VolumeBadge {
        anchors.horizontalCenter: parent.horizontalCenter
        y: Theme.unit * 20
        model: view.model.levels
    }
    InformationPanel {
        x: controls.margin
        y: Theme.unit * 24
        width: Math.min(implicitWidth, view.width - x * 2)
        model: view.model.information
    }
    HiddenPointer {
        anchors.fill: parent
        hides: !view.showsControls && !layers.isCovering
    }
    PlayerLayers {
        id: layers
        anchors.fill: parent
        model: view.model
        onIsCoveringChanged: if (!layers.isCovering) stage.takeFocus()
    }
}
