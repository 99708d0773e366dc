import QtQuick
import Ondavia.Style

/// A page over the page: rises from the bottom, takes the focus, and goes with Escape. What lies below
/// gets no input meanwhile. Backspace, which corrects what is typed elsewhere, throws nothing away here.
FocusScope {
    id: sheet
    property bool isOpen: false
    required property url page
    required property var pageProperties
    signal closeRequested()

    visible: loader.active
    enabled: sheet.isOpen
    onEnabledChanged: sheet.takeFocus()
    onVisibleChanged: sheet.takeFocus()
    Keys.onPressed: event => {
        if (FocusGuide.isBack(event.key) && event.isAutoRepeat) {
            event.accepted = true
        } else if (FocusGuide.isBack(event.key)) {
            event.accepted = true
            if (event.key !== Qt.Key_Backspace)
                sheet.closeRequested()
        }
    }

    function takeFocus() {
        if (sheet.enabled && sheet.visible)
            sheet.forceActiveFocus()
    }

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
        Component.onCompleted: setSource(sheet.page, sheet.pageProperties)
        // Until it has faded away.
        active: sheet.isOpen || loader.opacity > 0
        opacity: sheet.isOpen ? 1 : 0
        y: sheet.isOpen ? 0 : sheet.height * 0.08
        Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
        Behavior on y { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
    }
}
