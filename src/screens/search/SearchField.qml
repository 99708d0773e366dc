import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// Where a search is typed.
FocusScope {
    id: field
    property alias text: input.text
    property string name
    property string placeholder
    signal edited(string text)
    signal accepted()

    implicitHeight: Theme.controlHeight + Theme.unit

    /// What stands there is typed over.
    function begin() {
        input.forceActiveFocus(Qt.TabFocusReason)
        input.selectAll()
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.cardRadius
        color: hover.hovered || input.activeFocus ? Theme.surfaceRaised : Theme.surface
        border.width: input.activeFocus ? 2 : 1
        border.color: input.activeFocus ? Theme.accent : Theme.hairline
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
    }
    HoverHandler { id: hover; cursorShape: Qt.IBeamCursor }
    Icon {
        id: glass
        x: Theme.unit * 4
        anchors.verticalCenter: parent.verticalCenter
        symbol: "magnifyingglass"
        size: 22
        color: input.activeFocus ? Theme.accent : Theme.textFaint
    }
    T.TextField {
        id: input
        objectName: "searchText"
        anchors.fill: parent
        anchors.leftMargin: glass.x + glass.width
        anchors.rightMargin: clear.visible ? clear.width + Theme.unit : 0
        leftPadding: Theme.unit * 3
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
        inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
        Accessible.role: Accessible.EditableText
        Accessible.name: field.name
        Accessible.searchEdit: true
        onTextEdited: field.edited(text)
        onAccepted: field.accepted()

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
    IconButton {
        id: clear
        visible: input.text !== ""
        anchors.right: parent.right
        anchors.rightMargin: Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        diameter: 44
        symbolSize: 20
        symbol: "xmark.circle.fill"
        text: Texts.get("search.clear", "Limpar")
        onClicked: {
            field.edited("")
            field.begin()
        }
    }
}
