import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// One choice of a row of choices.
T.Button {
    id: chip

    checkable: false
    implicitHeight: 40
    implicitWidth: Math.min(implicitContentWidth + leftPadding + rightPadding, 280)
    leftPadding: Theme.unit * 4
    rightPadding: Theme.unit * 4
    opacity: enabled ? 1 : 0.4
    focusPolicy: Qt.ClickFocus
    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    Accessible.checked: highlighted
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Text {
        text: chip.text
        color: chip.highlighted ? Theme.accentText : Theme.text
        textFormat: Text.PlainText
        elide: Text.ElideRight
        font.family: Theme.fontFamily
        font.pixelSize: Theme.bodySize
        font.weight: chip.highlighted ? Font.DemiBold : Font.Medium
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignHCenter
    }
    background: Rectangle {
        radius: height / 2
        color: chip.highlighted ? (chip.down ? Theme.accentPressed : Theme.accent)
            : chip.down || chip.hovered ? Theme.surfacePressed : Theme.surfaceRaised
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
        FocusRing { control: chip; radius: height / 2 }
    }
}
