pragma ComponentBehavior: Bound
import QtQuick
import Ondavia

/// The one window: the tabs, and over them what covers the whole screen.
Window {
    id: window
    required property ScreenModels models

    width: 1280
    height: 800
    minimumWidth: 360
    minimumHeight: 480
    visible: true
    title: "Ondavia"
    color: Theme.background

    function goBack() {
        if (tabs.current === 0)
            quit.isOpen = true
        else
            window.models.content.selectedTab = 0
    }

    FocusScope {
        id: root
        objectName: "root"
        anchors.fill: parent
        focus: true
        // What no control wanted: arrows move the focus to the nearest control in their direction, and who
        // goes back from the first page of a tab leaves the tab, then the application.
        Keys.onPressed: event => event.accepted = FocusGuide.move(root, event.key)
        Keys.onEscapePressed: window.goBack()
        Keys.onBackPressed: window.goBack()
        Component.onCompleted: window.models.content.start()

        MainTabView {
            id: tabs
            anchors.fill: parent
            models: window.models
            focus: true
            enabled: !signIn.isOpen && !player.active && !loading.isShown && !quit.isOpen
            onEnabledChanged: if (enabled) tabs.forceActiveFocus()
        }
        Sheet {
            id: signIn
            anchors.fill: parent
            isOpen: window.models.signIn.isOpen
            enabled: isOpen && !loading.isShown
            page: Qt.resolvedUrl("../signin/SignInView.qml")
            pageProperties: ({ focus: true, model: window.models.signIn })
            onCloseRequested: window.models.signIn.close()
        }
        Loader {
            id: player
            anchors.fill: parent
            active: window.models.content.presentsPlayer
            onLoaded: forceActiveFocus()
            // By address: a loader cannot make a component that is bound to where it was written.
            Component.onCompleted: setSource(Qt.resolvedUrl("../player/PlayerView.qml"),
                                             { focus: true, model: window.models.player })
        }
        LoadingOverlay {
            id: loading
            anchors.fill: parent
            isShown: window.models.content.isLoading
            message: window.models.content.loadingMessage
        }
        Dialog {
            id: quit
            anchors.fill: parent
            title: Texts.get("app.quitTitle", "Sair da Ondavia?")
            message: Texts.get("app.quitMessage", "O catálogo fica guardado para a próxima vez.")
            acceptText: Texts.get("app.quit", "Sair")
            rejectText: Texts.get("app.stay", "Ficar")
            onAccepted: window.close()
            onRejected: quit.isOpen = false
        }
        ToastView {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: tabs.barHeight + Theme.unit * 6
            message: window.models.content.toastMessage
            type: window.models.content.toastType
            onDismissed: window.models.content.dismissToast()
        }
    }
}
