import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A round button that shows a symbol alone; `text` is what it is called.
T.Button {
    id: button
    required property string symbol
    property int symbolSize: 24
    property int diameter: Theme.controlHeight

    implicitWidth: button.diameter
    implicitHeight: button.diameter
    opacity: enabled ? 1 : 0.4
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Icon {
        symbol: button.symbol
        size: button.symbolSize
    }
    background: Rectangle {
        radius: width / 2
        color: button.down ? Theme.buttonPressed : button.hovered ? Theme.buttonHover : "transparent"
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
        FocusRing { control: button; distance: -1; radius: width / 2 }
    }
}
