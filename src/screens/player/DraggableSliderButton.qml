import QtQuick
import Ondavia.Player
import Ondavia.Style

/// A round button that is dragged up and down to change its value, or opens into a slider under a tap.
Item {
    id: button
    required property string icon
    /// What the button is called.
    required property string text
    required property SliderButtonModel model
    /// The slider stands at the right of the button, not at its left.
    property bool opensToTheRight: true
    readonly property bool isOpen: button.model.isOpen

    /// While the slider shows; else the key is somebody else's.
    function stepBy(steps: int, event: var) {
        event.accepted = button.isOpen
        if (button.isOpen)
            button.model.step(steps)
    }

    implicitWidth: 44
    implicitHeight: 44
    activeFocusOnTab: true
    Accessible.role: Accessible.Slider
    Accessible.name: button.text
    Accessible.description: Math.round(button.model.fraction * 100) + "%"
    Accessible.onPressAction: button.model.tap()
    Accessible.onIncreaseAction: button.model.step(1)
    Accessible.onDecreaseAction: button.model.step(-1)
    Keys.onUpPressed: event => button.stepBy(1, event)
    Keys.onDownPressed: event => button.stepBy(-1, event)
    Keys.onReturnPressed: button.model.tap()
    Keys.onEnterPressed: button.model.tap()
    onVisibleChanged: visible ? button.model.resume() : button.model.invalidate()
    Component.onDestruction: button.model.invalidate()

    Rectangle {
        anchors.centerIn: parent
        width: 44
        height: button.isOpen ? 24 : 44
        radius: height / 2
        opacity: button.isOpen ? 0.7 : 1
        color: area.pressed ? Theme.discPressed : area.containsMouse ? Theme.discHover : Theme.disc
        Behavior on height { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
        Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
        Icon {
            anchors.centerIn: parent
            symbol: button.icon
            size: 22
        }
        FocusRing { control: button; radius: parent.radius + distance }
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        Accessible.ignored: true
        onPressed: mouse => button.model.press(area.mapToItem(null, mouse.x, mouse.y))
        onPositionChanged: mouse => {
            if (area.pressed)
                button.model.moveTo(area.mapToItem(null, mouse.x, mouse.y))
        }
        onReleased: button.model.release()
        onCanceled: button.model.cancel()
    }
    VerticalSlider {
        x: button.opensToTheRight ? button.width + Theme.unit * 2 : -width - Theme.unit * 2
        anchors.verticalCenter: parent.verticalCenter
        model: button.model
        visible: opacity > 0
        opacity: button.isOpen ? 1 : 0
        scale: button.isOpen ? 1 : 0.8
        Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
        Behavior on scale { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
    }
}
