import QtQuick
import Ondavia

/// A page over the page: rises from the bottom, takes the focus, and goes with Escape. What lies below
/// gets no input meanwhile.
FocusScope {
    id: sheet
    property bool isOpen: false
    property Component content
    signal closeRequested()

    visible: loader.item !== null
    enabled: sheet.isOpen
    Keys.onEscapePressed: sheet.closeRequested()
    Keys.onBackPressed: sheet.closeRequested()

    onIsOpenChanged: {
        if (sheet.isOpen) {
            loader.active = true
            sheet.forceActiveFocus()
        }
        movement.restart()
    }
    // Open from the start: there is nothing to rise from.
    Component.onCompleted: loader.active = sheet.isOpen

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
        Accessible.ignored: true
    }
    Loader {
        id: loader
        width: parent.width
        height: parent.height
        focus: true
        sourceComponent: sheet.content
        active: false
    }
    SequentialAnimation {
        id: movement
        ParallelAnimation {
            NumberAnimation {
                target: loader
                property: "y"
                from: sheet.isOpen ? sheet.height * 0.08 : 0
                to: sheet.isOpen ? 0 : sheet.height * 0.08
                duration: Theme.motion
                easing.type: Theme.motionCurve
            }
            NumberAnimation {
                target: loader
                property: "opacity"
                to: sheet.isOpen ? 1 : 0
                from: sheet.isOpen ? 0 : 1
                duration: Theme.motion
                easing.type: Theme.motionCurve
            }
        }
        ScriptAction { script: if (!sheet.isOpen) loader.active = false }
    }
}
