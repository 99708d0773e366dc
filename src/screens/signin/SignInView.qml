import QtQuick
import Ondavia

/// The sign-in step: server, user name, password, a test that says in words what is wrong.
FocusScope {
    id: view
    required property SignInViewModel model
    readonly property bool isWide: view.width >= Theme.wideWindow
    readonly property real margin: Theme.marginFor(view.width)

    Rectangle {
        anchors.fill: parent
        color: Theme.background
    }
    WaveBackdrop {
        width: view.isWide ? view.width * 0.46 : view.width
        height: view.isWide ? view.height : 220
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
            x: view.margin
            y: 88
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

    Flickable {
        id: flick
        x: view.isWide ? view.width * 0.46 : 0
        y: view.isWide ? 0 : 160
        width: view.width - x
        height: view.height - y
        contentHeight: Math.max(height, form.implicitHeight + Theme.unit * 16)
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        Column {
            id: form
            anchors.horizontalCenter: parent.horizontalCenter
            y: view.isWide ? Math.max(Theme.unit * 8, (flick.height - implicitHeight) / 2) : Theme.unit * 2
            width: Math.min(flick.width - view.margin * 2, 460)
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
                onEdited: text => view.model.server = text
                onAccepted: username.forceActiveFocus(Qt.TabFocusReason)
                Binding on text { value: view.model.server }
            }
            Button {
                visible: view.model.lacksScheme
                kind: Button.Secondary
                symbol: "link"
                text: Texts.get("signIn.addScheme", "Acrescentar http://")
                onClicked: view.model.addScheme()
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
                onAccepted: if (view.model.isComplete) view.model.signIn()
                Binding on text { value: view.model.password }
            }
            Notice {
                width: parent.width
                visible: text !== ""
                text: view.model.resultText
                type: view.model.resultType
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
                    text: view.model.isChecking ? Texts.get("signIn.checking", "A testar...")
                                                : Texts.get("signIn.test", "Testar")
                    enabled: view.model.isComplete && !view.model.isChecking
                    onClicked: view.model.test()
                }
                Spinner {
                    width: 32
                    height: Theme.controlHeight
                    running: view.model.isChecking
                }
            }
            Notice {
                width: parent.width
                visible: !view.model.remembers
                type: 2
                text: Texts.get("signIn.notRemembered", "Este sistema não tem um porta-chaves ativo: a conta só fica guardada até fechares a aplicação.")
            }
        }
    }
}
