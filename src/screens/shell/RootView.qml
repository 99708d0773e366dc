pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Shell
import Ondavia.Style

/// What the window shows: the tabs, and over them what covers the whole screen. Made before the window, so
/// that the graphics driver can be read from disk meanwhile.
FocusScope {
    id: root
    required property ScreenModels models
    signal quitRequested()

    width: Theme.windowWidth
    height: Theme.windowHeight
    objectName: "root"
    focus: true

    function goBack() {
        if (tabs.current === ContentViewModel.Home)
            quit.isOpen = true
        else
            root.models.content.selectedTab = ContentViewModel.Home
    }

    // What no control wanted: arrows move the focus to the nearest control in their direction, and who
    // goes back from the first page of a tab leaves the tab, then the application. The search is a key away from
    // every page.
    Keys.onPressed: event => {
        const isSearch = FocusGuide.isSearch(event.key, event.modifiers)
        event.accepted = isSearch || FocusGuide.isBack(event.key) || FocusGuide.move(root, event.key)
        if (FocusGuide.isBack(event.key) && !event.isAutoRepeat)
            root.goBack()
        else if (isSearch && tabs.enabled && !event.isAutoRepeat)
            root.models.searchWanted("")
    }
    Component.onCompleted: {
        root.models.content.start()
        loss.isOpen = root.models.lossNotice !== ""
    }

    MainTabView {
        id: tabs
        anchors.fill: parent
        models: root.models
        focus: true
        enabled: !signIn.isOpen && !player.isPresented && !loading.isShown && !quit.isOpen && !loss.isOpen
        onEnabledChanged: if (enabled) tabs.forceActiveFocus()
    }
    // By address, here and below: a loader cannot make a component that is bound to where it was written.
    Loader {
        anchors.fill: parent
        anchors.leftMargin: tabs.railWidth
        enabled: tabs.enabled
        active: root.models.miniPlayer.isShown
        // The focus that was in it goes back to the pages.
        onActiveChanged: if (!active && tabs.enabled) tabs.forceActiveFocus()
        Component.onCompleted: setSource(Qt.resolvedUrl("../Player/MiniPlayerView.qml"),
                                         { model: root.models.miniPlayer })
    }
    Sheet {
        id: signIn
        anchors.fill: parent
        isOpen: root.models.signIn.isOpen
        enabled: isOpen && !loading.isShown
        page: Qt.resolvedUrl("../SignIn/SignInView.qml")
        pageProperties: ({ focus: true, model: root.models.signIn })
        onCloseRequested: root.models.signIn.close()
    }
    Loader {
        id: player
        readonly property bool isPresented: root.models.player.isPresented

        function follow() {
            if (player.isPresented) {
                const model = root.models.player.player
                const page = model.isLive ? "../LivePlayer/LivePlayerView.qml" : "../Player/PlayerView.qml"
                player.setSource(Qt.resolvedUrl(page), { focus: true, model: model })
                player.forceActiveFocus()
            } else {
                player.source = ""
            }
        }
        anchors.fill: parent
        onIsPresentedChanged: player.follow()
    }
    LoadingOverlay {
        id: loading
        anchors.fill: parent
        isShown: root.models.content.isLoading
        message: root.models.content.loadingMessage
        canLeave: root.models.loadingExit.isOffered
        leaveText: Texts.get("content.leave", "Cancelar")
        onLeaveRequested: root.models.loadingExit.take()
    }
    Dialog {
        id: quit
        anchors.fill: parent
        title: Texts.get("app.quitTitle", "Sair da Ondavia?")
        message: Texts.get("app.quitMessage", "O catálogo fica guardado para a próxima vez.")
        acceptText: Texts.get("app.quit", "Sair")
        rejectText: Texts.get("app.stay", "Ficar")
        onAccepted: root.quitRequested()
        onRejected: quit.isOpen = false
    }
    Dialog {
        id: loss
        anchors.fill: parent
        title: Texts.get("loss.title", "Houve um problema com os teus dados")
        message: root.models.lossNotice
        rejectText: Texts.get("loss.understood", "Entendi")
        onRejected: loss.isOpen = false
    }
    ToastView {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: tabs.barHeight + Theme.unit * 6
        message: root.models.content.toastMessage
        kind: root.models.content.toastKind
        onDismissed: root.models.content.dismissToast()
    }
}
