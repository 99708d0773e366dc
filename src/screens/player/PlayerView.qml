import QtQuick
import Ondavia.Player
import Ondavia.Style

/// The full-screen player: the picture, and controls that step back while it plays. The keyboard steers the
/// film; Enter or Tab leads it to the controls.
FocusScope {
    id: view
    required property PlayerViewModel model
    readonly property bool showsControls: view.model.controls.showControls
    readonly property bool isWaiting: view.model.isBuffering && !view.model.isPlaying && view.model.error === ""
    readonly property bool isCovered: sheet.isOpen || keyList.isOpen
    /// What the window was before the player had it fill the screen.
    property int formerVisibility: Window.Windowed
    property bool fillsScreen: false

    function toggleFullScreen() {
        const window = view.Window.window
        if (window.visibility === Window.FullScreen) {
            window.visibility = view.formerVisibility
            view.fillsScreen = false
        } else {
            view.formerVisibility = window.visibility
            view.fillsScreen = true
            window.visibility = Window.FullScreen
        }
    }
    function goBack() {
        if (view.model.closeLayer())
            return
        if (view.fillsScreen)
            view.toggleFullScreen()
        else
            view.model.close()
    }
    function handleKey(key: int, isAutoRepeat: bool): bool {
        const isEnter = key === Qt.Key_Return || key === Qt.Key_Enter
        if (isEnter && stage.activeFocus) {
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
        if (FocusGuide.isBack(event.key))
            view.goBack()
        else
            event.accepted = !isCommand && view.handleKey(event.key, event.isAutoRepeat)
    }
    onShowsControlsChanged: {
        pointer.rest = pointer.point.position
        if (!view.showsControls && !view.isCovered)
            stage.forceActiveFocus()
    }
    onIsCoveredChanged: if (!view.isCovered) stage.forceActiveFocus()

    Connections {
        target: FocusGuide
        function onKeyPressed() {
            view.model.controls.wake()
        }
    }
    Connections {
        target: view.model
        function onFullScreenToggled() {
            view.toggleFullScreen()
        }
        function onDisappeared() {
            if (view.fillsScreen)
                view.toggleFullScreen()
        }
    }
    HoverHandler {
        id: pointer
        property point rest
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onPointChanged: {
            // A pointer that trembles does not mean anything.
            const distance = Math.hypot(point.position.x - rest.x, point.position.y - rest.y)
            if (distance > 6) {
                rest = point.position
                view.model.controls.wake()
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.stage
    }
    PlayerSurface {
        anchors.fill: parent
        manager: view.model.manager
    }
    SubtitleOverlayView {
        anchors.fill: parent
        visible: view.model.subtitles.isShown
        model: view.model.subtitles
    }
    FocusScope {
        id: stage
        objectName: "stage"
        anchors.fill: parent
        focus: true
        Accessible.role: Accessible.Pane
        Accessible.name: view.model.title
        // A handler's cursor would change at the pointer's next move only.
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.NoButton
            cursorShape: view.showsControls || view.isCovered ? Qt.ArrowCursor : Qt.BlankCursor
            Accessible.ignored: true
        }
        TapHandler {
            onTapped: eventPoint => view.model.taps.tap(eventPoint.position.x, eventPoint.position.y, stage.width)
        }
        WheelHandler {
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: event => view.model.levels.changeVolume(event.angleDelta.y / 120)
        }
    }

    Rectangle {
        anchors.centerIn: parent
        visible: spinner.running
        width: view.isWaiting ? Math.max(200, preparing.width + Theme.unit * 12) : 124
        height: view.isWaiting ? 148 : width
        radius: view.isWaiting ? Theme.cardRadius : width / 2
        color: Theme.disc
        Spinner {
            id: spinner
            anchors.horizontalCenter: parent.horizontalCenter
            y: view.isWaiting ? Theme.unit * 6 : (parent.height - height) / 2
            width: view.isWaiting ? 56 : 100
            height: width
            running: view.model.isBuffering && view.model.error === ""
        }
        Label {
            id: preparing
            anchors.horizontalCenter: parent.horizontalCenter
            y: 104
            visible: view.isWaiting
            text: Texts.get("player.preparing", "A preparar reproducao...")
        }
    }
    Rectangle {
        anchors.fill: parent
        visible: view.model.error !== ""
        color: Theme.errorVeil
        EmptyStateView {
            anchors.fill: parent
            icon: "exclamationmark.triangle.fill"
            title: Texts.get("player.cannotPlay", "Não foi possível reproduzir")
            message: view.model.error
            Button {
                text: Texts.get("player.retry", "Tentar novamente")
                symbol: "arrow.clockwise"
                focusPolicy: Qt.TabFocus
                onVisibleChanged: if (visible) forceActiveFocus()
                onClicked: view.model.retry()
            }
        }
    }
    PlayerControls {
        id: controls
        anchors.fill: parent
        model: view.model
        hidesMiddle: view.isWaiting || view.model.error !== ""
        enabled: view.showsControls && !view.isCovered
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
    Layer {
        id: sheet
        anchors.fill: parent
        isOpen: view.model.showSettings
        page: Qt.resolvedUrl("SettingsSheet.qml")
        pageProperties: ({ focus: true, player: view.model, model: view.model.sheet })
    }
    Layer {
        id: keyList
        anchors.fill: parent
        isOpen: view.model.showKeys
        page: Qt.resolvedUrl("KeyList.qml")
        pageProperties: ({ focus: true, player: view.model })
    }
}
