pragma ComponentBehavior: Bound
import QtQuick
import Ondavia

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
        if (tabs.current === 0)
            quit.isOpen = true
        else
            root.models.content.selectedTab = 0
    }

    // What no control wanted: arrows move the focus to the nearest control in their direction, and who
    // goes back from the first page of a tab leaves the tab, then the application.
    Keys.onPressed: event => event.accepted = FocusGuide.move(root, event.key)
    Keys.onEscapePressed: root.goBack()
    Keys.onBackPressed: root.goBack()
    Component.onCompleted: root.models.content.start()

    MainTabView {
        id: tabs
        anchors.fill: parent
        models: root.models
        focus: true
        enabled: !signIn.isOpen && !player.active && !loading.isShown && !quit.isOpen
        onEnabledChanged: if (enabled) tabs.forceActiveFocus()
    }
    Sheet {
        id: signIn
        anchors.fill: parent
        isOpen: root.models.signIn.isOpen
        enabled: isOpen && !loading.isShown
        page: Qt.resolvedUrl("../signin/SignInView.qml")
        pageProperties: ({ focus: true, model: root.models.signIn })
        onCloseRequested: root.models.signIn.close()
    }
    Loader {
        id: player
        anchors.fill: parent
        active: root.models.content.presentsPlayer
        onLoaded: forceActiveFocus()
        // By address: a loader cannot make a component that is bound to where it was written.
        Component.onCompleted: setSource(Qt.resolvedUrl("../player/PlayerView.qml"),
                                         { focus: true, model: root.models.player })
    }
    LoadingOverlay {
        id: loading
        anchors.fill: parent
        isShown: root.models.content.isLoading
        message: root.models.content.loadingMessage
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
    ToastView {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: tabs.barHeight + Theme.unit * 6
        message: root.models.content.toastMessage
        type: root.models.content.toastType
        onDismissed: root.models.content.dismissToast()
    }
}
