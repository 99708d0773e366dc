import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// One line of text under its label. A secret one shows dots, and an eye that reveals them.
FocusScope {
    id: field
    property string label
    property string placeholder
    property alias text: input.text
    property bool isSecret: false
    property int inputHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
    /// A word that could be added, offered inside the field to a pointer; empty for none.
    property string offer
    property string offerName
    signal edited(string text)
    signal accepted()
    signal exited()
    signal offerTaken()

    property bool isRevealed: false

    implicitHeight: caption.height + Theme.unit * 2 + frame.height

    Label {
        id: caption
        text: field.label
        color: input.activeFocus ? Theme.accent : Theme.textMuted
        font.pixelSize: Theme.captionSize
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }
    Rectangle {
        id: frame
        anchors.top: caption.bottom
        anchors.topMargin: Theme.unit * 2
        width: parent.width
        height: Theme.controlHeight + Theme.unit
        radius: Theme.cardRadius
        color: hover.hovered || input.activeFocus ? Theme.surfaceRaised : Theme.surface
        border.width: input.activeFocus ? 2 : 1
        border.color: input.activeFocus ? Theme.accent : Theme.hairline
        opacity: field.enabled ? 1 : 0.5
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }

        HoverHandler { id: hover; cursorShape: Qt.IBeamCursor }

        T.TextField {
            id: input
            anchors.fill: parent
            anchors.rightMargin: field.isSecret ? reveal.width + Theme.unit : offerChip.visible ? offerChip.width + Theme.unit : 0
            leftPadding: Theme.unit * 4
            rightPadding: Theme.unit * 4
            focus: true
            color: Theme.text
            selectionColor: Theme.accentPressed
            selectedTextColor: Theme.accentText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
            verticalAlignment: TextInput.AlignVCenter
            selectByMouse: true
            clip: true
            echoMode: field.isSecret && !field.isRevealed ? TextInput.Password : TextInput.Normal
            inputMethodHints: field.isSecret ? field.inputHints | Qt.ImhSensitiveData : field.inputHints
            Accessible.role: Accessible.EditableText
            Accessible.name: field.label
            // Qt keeps the name of a password field from assistive programs, though not its description.
            Accessible.description: field.label
            Accessible.passwordEdit: field.isSecret
            onTextEdited: field.edited(text)
            onAccepted: field.accepted()
            // Another window that comes to the front takes the focus only for a while.
            onActiveFocusChanged: if (!activeFocus && field.Window.active) field.exited()

            Label {
                anchors.fill: parent
                anchors.leftMargin: parent.leftPadding
                anchors.rightMargin: parent.rightPadding
                visible: input.text === "" && input.preeditText === ""
                text: field.placeholder
                color: Theme.textFaint
                elide: Text.ElideRight
                verticalAlignment: Text.AlignVCenter
                Accessible.ignored: true
            }
        }
        Chip {
            id: offerChip
            visible: field.offer !== ""
            anchors.right: parent.right
            anchors.rightMargin: Theme.unit * 2
            anchors.verticalCenter: parent.verticalCenter
            implicitHeight: 36
            focusPolicy: Qt.NoFocus
            text: field.offer
            Accessible.name: field.offerName
            Accessible.role: Accessible.Button
            onClicked: field.offerTaken()
        }
        IconButton {
            id: reveal
            visible: field.isSecret
            anchors.right: parent.right
            anchors.rightMargin: Theme.unit
            anchors.verticalCenter: parent.verticalCenter
            diameter: 44
            symbolSize: 20
            symbol: field.isRevealed ? "eye.slash" : "eye"
            text: field.isRevealed ? Texts.get("signIn.hidePassword", "Esconder palavra-passe")
                                   : Texts.get("signIn.showPassword", "Mostrar palavra-passe")
            onClicked: field.isRevealed = !field.isRevealed
        }
    }
}
