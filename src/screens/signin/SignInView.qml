import QtQuick
import Ondavia.SignIn
import Ondavia.Style

/// The sign-in step: server, user name, password, a test that says in words what is wrong.
FocusScope {
    id: view
    required property SignInViewModel model
    readonly property bool isWide: view.width >= Theme.wideWindow
    readonly property real margin: Theme.marginFor(view.width)
    /// Of the picture above a narrow form: short windows leave the room to the form.
    readonly property real headHeight: Math.max(72, Math.min(160, view.height - 560))
    readonly property bool hasLowHead: view.headHeight < 130
    /// Kept free for what a check finds.
    readonly property real verdictRoom: view.model.hasSchemeInCapitals ? 270 : 150

    Rectangle {
        anchors.fill: parent
        color: Theme.background
    }
    WaveBackdrop {
        width: view.isWide ? view.width * 0.46 : view.width
        height: view.isWide ? view.height : view.headHeight + 60
        horizon: view.isWide ? 0.58 : 0.5

        Column {
            visible: view.isWide
            x: view.margin
            y: parent.height * 0.28
            width: parent.width - view.margin * 2
            spacing: Theme.unit * 5
            Wordmark { size: 40 }
            Label {
                width: parent.width
                text: Texts.get("signIn.tagline", "A tua televisão, os teus filmes e as tuas séries, num só lugar.")
                font.pixelSize: Theme.headingSize
                lineHeight: 1.3
                color: Theme.textMuted
                wrapMode: Text.Wrap
            }
        }
        Wordmark {
            visible: !view.isWide
            // Beside the button that closes, where there is no room below it.
            x: view.hasLowHead ? Theme.unit * 16 : view.margin
            y: view.hasLowHead ? Theme.unit * 4 : view.headHeight - 72
            size: 28
        }
        Rectangle {
            visible: !view.isWide
            anchors.bottom: parent.bottom
            width: parent.width
            height: 100
            gradient: Gradient {
                GradientStop { position: 0; color: "transparent" }
                GradientStop { position: 1; color: Theme.background }
            }
        }
    }
    IconButton {
        x: Theme.unit * 2
        y: Theme.unit * 2
        symbol: "xmark"
        text: Texts.get("common.close", "Fechar")
        onClicked: view.model.close()
    }

    Connections {
        target: view.model
        // Before there is a verdict, and while no button can be pressed.
        function onResultChanged() {
            if (view.model.isChecking)
                page.reveal(remarks.y, view.verdictRoom)
        }
    }

    ScrollPage {
        id: page
        x: view.isWide ? view.width * 0.46 : 0
        y: view.isWide ? 0 : view.headHeight
        width: view.width - x
        height: view.height - y
        contentHeight: Math.max(height, remarks.y + Math.max(remarks.height, view.verdictRoom) + Theme.unit * 8)

        // What comes and goes stands below the form, and the form's place does not depend on it: no button
        // moves under the pointer.
        Column {
            id: form
            anchors.horizontalCenter: parent.horizontalCenter
            y: view.isWide ? Math.max(Theme.unit * 8, (page.height - implicitHeight) * 0.4) : Theme.unit * 2
            width: Math.min(page.width - view.margin * 2, 460)
            spacing: Theme.unit * 5

            Column {
                width: parent.width
                spacing: Theme.unit * 2
                Label {
                    width: parent.width
                    text: Texts.get("signIn.title", "Adicionar provedor")
                    font.pixelSize: Theme.titleSize
                    font.weight: Font.Bold
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.Heading
                }
                Label {
                    width: parent.width
                    text: Texts.get("signIn.hint", "Escreve os dados que o teu provedor te deu, ou cola a ligação completa no campo do servidor.")
                    color: Theme.textMuted
                    lineHeight: 1.3
                    wrapMode: Text.Wrap
                }
            }
            TextField {
                id: server
                objectName: "server"
                width: parent.width
                focus: true
                enabled: !view.model.isChecking
                label: Texts.get("signIn.server", "Servidor")
                placeholder: "http://exemplo.tv:8080"
                inputHints: Qt.ImhUrlCharactersOnly | Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
                offer: view.model.lacksScheme ? "http://" : ""
                offerName: Texts.get("signIn.addScheme", "Acrescentar http://")
                onEdited: text => view.model.editServer(text)
                onExited: view.model.readLink()
                onOfferTaken: view.model.addScheme()
                onAccepted: username.forceActiveFocus(Qt.TabFocusReason)
                Binding on text { value: view.model.server }
            }
            TextField {
                id: username
                objectName: "username"
                width: parent.width
                enabled: !view.model.isChecking
                label: Texts.get("signIn.username", "Utilizador")
                onEdited: text => view.model.username = text
                onAccepted: password.forceActiveFocus(Qt.TabFocusReason)
                Binding on text { value: view.model.username }
            }
            TextField {
                id: password
                objectName: "password"
                width: parent.width
                enabled: !view.model.isChecking
                isSecret: true
                label: Texts.get("signIn.password", "Palavra-passe")
                onEdited: text => view.model.password = text
                onAccepted: view.model.signIn()
                Binding on text { value: view.model.password }
            }
            Flow {
                width: parent.width
                spacing: Theme.unit * 3
                Button {
                    objectName: "signIn"
                    text: Texts.get("signIn.enter", "Entrar")
                    enabled: view.model.isComplete && !view.model.isChecking
                    onClicked: view.model.signIn()
                }
                Button {
                    objectName: "test"
                    kind: Button.Secondary
                    text: Texts.get("signIn.test", "Testar")
                    enabled: view.model.isComplete && !view.model.isChecking
                    onClicked: view.model.test()
                }
            }
        }
        Column {
            id: remarks
            anchors.top: form.bottom
            anchors.topMargin: Theme.unit * 5
            anchors.horizontalCenter: form.horizontalCenter
            width: form.width
            spacing: Theme.unit * 4

            Row {
                visible: view.model.isChecking
                spacing: Theme.unit * 3
                Spinner {
                    width: 24
                    height: 24
                    running: view.model.isChecking
                }
                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    text: Texts.get("signIn.checking", "A testar...")
                    color: Theme.textMuted
                }
            }
            Notice {
                width: parent.width
                visible: view.model.hasSchemeInCapitals
                kind: NoticeKind.Warning
                text: Texts.get("signIn.schemeInCapitals", "Um endereço só começa por http:// ou https:// em minúsculas: este é tomado pelo nome de um servidor.")
            }
            Notice {
                width: parent.width
                visible: text !== ""
                text: view.model.resultText
                kind: view.model.resultKind
            }
            Button {
                objectName: "saveAnyway"
                visible: view.model.canSaveAnyway
                kind: Button.Secondary
                text: Texts.get("signIn.saveAnyway", "Guardar mesmo assim")
                onClicked: view.model.saveAnyway()
            }
            Notice {
                width: parent.width
                visible: !view.model.remembers
                kind: NoticeKind.Warning
                text: Texts.get("signIn.notRemembered", "Este sistema não tem um porta-chaves ativo: a conta só fica guardada até fechares a aplicação.")
            }
        }
    }
}
