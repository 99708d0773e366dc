import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A button with a text, and a symbol before it if one is given.
T.Button {
    id: button

    enum Kind { Primary, Secondary, Plain }

    property int kind: Button.Primary
    property string symbol
    readonly property color foreground: button.kind === Button.Primary ? Theme.accentText
        : button.kind === Button.Plain ? Theme.accent : Theme.text

    implicitHeight: Theme.controlHeight
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: button.kind === Button.Plain ? Theme.unit * 3 : Theme.unit * 6
    rightPadding: leftPadding
    opacity: enabled ? 1 : 0.4
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()
    // A key that is held down on what leads here must not press this too.
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) clicked() }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) clicked() }

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight
        Row {
            id: row
            anchors.centerIn: parent
            spacing: Theme.unit * 2
            Icon {
                visible: button.symbol !== ""
                symbol: button.symbol
                size: 20
                color: button.foreground
                anchors.verticalCenter: parent.verticalCenter
            }
            Text {
                text: button.text
                color: button.foreground
                textFormat: Text.PlainText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.bodySize
                font.weight: Font.DemiBold
                anchors.verticalCenter: parent.verticalCenter
            }
        }
    }

    background: Rectangle {
        radius: Theme.cardRadius
        border.width: button.kind === Button.Secondary ? 1 : 0
        border.color: Theme.hairline
        color: {
            if (button.kind === Button.Primary)
                return button.down ? Theme.accentPressed : button.hovered ? Theme.accentHover : Theme.accent
            if (button.kind === Button.Secondary)
                return button.down ? Theme.surfacePressed : button.hovered ? Theme.surfacePressed : Theme.surfaceRaised
            return button.down ? Theme.surfacePressed : button.hovered ? Theme.surfaceRaised : "transparent"
        }
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
        FocusRing { control: button; radius: parent.radius + distance }
    }
}
