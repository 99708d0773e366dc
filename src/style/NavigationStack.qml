import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// The pages of one tab, one over the other. Escape and the back key leave the upper one.
T.StackView {
    id: stack
    required property url firstPage
    required property var firstProperties

    clip: true
    // The upper page has the keys, so that the first one pressed does something.
    onCurrentItemChanged: if (stack.currentItem) stack.currentItem.focus = true
    Component.onCompleted: stack.push(stack.firstPage, stack.firstProperties)
    Keys.onPressed: event => event.accepted = FocusGuide.isBack(event.key) && (event.isAutoRepeat || stack.goBack())

    /// Whether there was a page to go back to.
    function goBack(): bool {
        if (stack.depth < 2)
            return false
        stack.pop()
        stack.currentItem.forceActiveFocus()
        return true
    }
    /// Pages come by address: a component that is bound to where it was written cannot be made here.
    function open(page: url, properties: var): Item {
        const opened = stack.push(page, properties)
        opened.forceActiveFocus()
        return opened
    }
    /// At once: nobody has asked for it.
    function goToFirst() {
        if (stack.depth > 1)
            stack.pop(null, T.StackView.Immediate)
    }

    pushEnter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.motion; easing.type: Theme.motionCurve }
        NumberAnimation { property: "x"; from: stack.width * 0.06; to: 0; duration: Theme.motion; easing.type: Theme.motionCurve }
    }
    pushExit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.motionShort; easing.type: Theme.motionCurve }
    }
    popEnter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.motion; easing.type: Theme.motionCurve }
    }
    popExit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.motionShort; easing.type: Theme.motionCurve }
        NumberAnimation { property: "x"; from: 0; to: stack.width * 0.06; duration: Theme.motion; easing.type: Theme.motionCurve }
    }
}
