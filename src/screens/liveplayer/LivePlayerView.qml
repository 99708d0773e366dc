pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Guide
import Ondavia.LivePlayer
import Ondavia.Player
import Ondavia.Style

/// The player of live channels. In the split arrangement the picture stands above the list of channels or the
/// guide, in a wide window beside it; in the other one it fills the window. The keyboard steers what plays; Enter
/// leads it to the controls, L and G to the list and the guide.
FocusScope {
    id: view
    required property LivePlayerViewModel model
    readonly property bool isFull: view.model.isFullscreen
    readonly property bool isSideBySide: !view.isFull && (view.width >= Theme.wideWindow || view.width > view.height * 1.2)
    readonly property bool showsControls: view.model.controls.showControls
    readonly property bool isInPanel: panel.activeFocus || infoBar.activeFocus

    function takePanelFocus() {
        if (view.isFull)
            return
        if (!view.model.showEPG)
            list.takeFocus()
        else if (!guide.takeFocus())
            infoBar.takeFocus()
    }
    function moveFocus(key: int) {
        const isAboveTheBar = infoBar.activeFocus && key === Qt.Key_Up
        if (!isAboveTheBar && FocusGuide.move(view, key))
            return
        // Out of the list and of the guide, towards the picture.
        if (view.isInPanel && (key === Qt.Key_Left || key === Qt.Key_Up))
            stage.takeFocus()
    }
    function handleKey(key: int, isAutoRepeat: bool): bool {
        const isEnter = key === Qt.Key_Return || key === Qt.Key_Enter
        if (isEnter && view.model.number.digits !== "") {
            view.model.number.confirm()
            return true
        }
        if ((isEnter || key === Qt.Key_Tab) && stage.hasFocus) {
            // A key held down would go on to press what it has led to.
            if (!isAutoRepeat)
                controls.takeFocus()
            return true
        }
        if (FocusGuide.isArrow(key) && !stage.hasFocus) {
            view.moveFocus(key)
            return true
        }
        if (key === Qt.Key_Right && view.isSideBySide) {
            view.takePanelFocus()
            return true
        }
        return view.model.keys.press(key, isAutoRepeat)
    }

    Keys.onPressed: event => {
        const isCommand = event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier)
        event.accepted = true
        if (FocusGuide.isBack(event.key) && event.key !== Qt.Key_Backspace) {
            if (!event.isAutoRepeat)
                view.model.goBack()
        }
        else {
            event.accepted = !isCommand && view.handleKey(event.key, event.isAutoRepeat)
        }
    }
    onShowsControlsChanged: if (!view.showsControls && !view.isInPanel && !layers.isCovering) stage.takeFocus()
    onIsFullChanged: {
        stage.takeFocus()
        if (view.isFull)
            FullScreen.enter(true)
        else
            FullScreen.leavePlayer()
    }

    Connections {
        target: FocusGuide
        function onKeyPressed() {
            if (!view.isInPanel)
                view.model.controls.wake()
        }
    }
    Connections {
        target: view.model.number
        function onDigitsChanged() {
            // Enter goes to that channel then, and to nothing that has the focus.
            if (view.model.number.digits !== "")
                stage.takeFocus()
        }
    }
    Connections {
        target: view.model
        function onPanelWanted() {
            panelFocus.restart()
        }
        function onShowEPGChanged() {
            // What had the focus may go.
            if (panel.activeFocus)
                panelFocus.restart()
        }
        function onDisappeared() {
            FullScreen.leavePlayer()
        }
    }
    Connections {
        target: view.model.guide
        function onContentChanged() {
            if (panel.activeFocus && view.model.guide.content === EPGPanelViewModel.Empty)
                panelFocus.restart()
        }
    }
    Binding {
        target: view.model
        property: "containerWidth"
        value: view.width
    }
    // In the next turn: what is to get the focus may still be on its way.
    Timer {
        id: panelFocus
        interval: 0
        onTriggered: view.takePanelFocus()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.background
    }
    FocusScope {
        id: video
        focus: true
        width: view.isSideBySide ? view.width - panel.width : view.width
        // In a low window the list goes before the picture.
        height: view.isFull ? view.height
            : view.isSideBySide ? view.height - infoBar.height
            : Math.min(view.model.videoHeight, view.height - infoBar.height - 160)

        PointerWake { model: view.model }
        PlayerStage {
            id: stage
            anchors.fill: parent
            focus: true
            model: view.model
            // The message keeps a margin of its own too.
            messageMargin: controls.sides - Theme.unit * 2
            onTapped: view.model.controls.toggleControls()
            onDoubleClicked: view.model.toggleFullScreen()
        }
        LiveControls {
            id: controls
            anchors.fill: parent
            model: view.model
            isWaiting: stage.isWaiting
            hidesMiddle: stage.isSmall && view.model.number.digits !== ""
            enabled: view.showsControls && !layers.isCovering
            opacity: view.showsControls ? 1 : 0
            // Also while it is still coming: the keyboard may be faster.
            visible: view.showsControls || opacity > 0
            Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Easing.InOutQuad } }
        }
        VolumeBadge {
            anchors.horizontalCenter: parent.horizontalCenter
            y: Theme.unit * (stage.isSmall ? 14 : 20)
            model: view.model.levels
        }
        NumberBadge {
            anchors.right: parent.right
            anchors.rightMargin: controls.margin
            y: Theme.unit * (stage.isSmall ? 14 : 20)
            model: view.model.number
        }
        HiddenPointer {
            anchors.fill: parent
            hides: view.isFull && !view.showsControls && !layers.isCovering
        }
    }
    ChannelInfoBar {
        id: infoBar
        y: video.height
        width: video.width
        visible: !view.isFull
        channelName: view.model.title
        logo: view.model.logo
        showEPG: view.model.showEPG
        isLoadingEPG: view.model.isLoadingEPG
        currentProgramTitle: view.model.currentProgramTitle
        onViewToggled: view.model.toggleView()
    }
    FocusScope {
        id: panel
        visible: !view.isFull
        x: view.isSideBySide ? view.width - width : 0
        y: view.isSideBySide ? 0 : infoBar.y + infoBar.height
        width: view.isSideBySide ? Math.max(240, Math.min(420, view.width * 0.34)) : view.width
        height: view.height - y

        ChannelListPanel {
            id: list
            anchors.fill: parent
            visible: !view.model.showEPG
            focus: true
            categories: view.model.categories
            selectedCategory: view.model.selectedCategory
            categoryRow: view.model.categoryRow
            channels: view.model.channels
            currentRow: view.model.currentRow
            showCategories: view.model.showCategories
            onChannelSelected: row => view.model.chooseChannel(row)
            onCategorySelected: row => view.model.chooseCategory(row)
            onCategoriesToggled: view.model.showCategories = !view.model.showCategories
        }
        EPGPanelView {
            id: guide
            anchors.fill: parent
            visible: view.model.showEPG
            model: view.model.guide
        }
        Rectangle {
            visible: view.isSideBySide
            width: 1
            height: parent.height
            color: Theme.hairline
        }
    }
    InformationPanel {
        x: controls.margin
        y: Theme.unit * (stage.isSmall ? 2 : 24)
        width: Math.min(implicitWidth, video.width - x * 2)
        model: view.model.information
    }
    PlayerLayers {
        id: layers
        anchors.fill: parent
        model: view.model
        onIsCoveringChanged: if (!layers.isCovering) stage.takeFocus()
    }
}
