import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A page that is longer than its window: scrolls under a finger, a wheel, the bar and the page keys, and
/// brings whatever gets the focus into sight.
Flickable {
    id: page
    readonly property Item focused: page.Window.activeFocusItem

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    // A pointer sees what it presses, and that must stay where it is.
    onFocusedChanged: if (FocusGuide.isKeyboardInUse) page.revealItem(page.focused)
    onHeightChanged: page.revealItem(page.focused)
    Keys.onPressed: event => event.accepted = page.scroll(event.key)

    function revealItem(item: Item) {
        let ancestor = item
        while (ancestor !== null && ancestor !== page.contentItem)
            ancestor = ancestor.parent
        // A scope that holds everything says nothing about a place.
        if (ancestor === null || item === page.contentItem || item.height > page.height)
            return
        page.reveal(item.mapToItem(page.contentItem, 0, 0).y, item.height)
    }
    // In whole pixels: a Flickable moves what stands between two as soon as its content changes.
    readonly property real lastY: Math.max(0, Math.floor(page.contentHeight - page.height))
    function reveal(top: real, length: real) {
        const margin = Theme.unit * 8
        page.contentY = Math.max(0, Math.min(page.lastY, Math.ceil(Math.max(
            top + length + margin - page.height, Math.min(page.contentY, top - margin)))))
    }
    /// Whether the key is one that scrolls, where there is more than is seen.
    function canScroll(key: int): bool {
        switch (key) {
        case Qt.Key_PageDown:
        case Qt.Key_PageUp:
        case Qt.Key_Home:
        case Qt.Key_End:
        case Qt.Key_Up:
        case Qt.Key_Down:
            return page.lastY > 0
        default:
            return false
        }
    }
    function scroll(key: int): bool {
        const last = page.lastY
        const step = Math.floor(page.height * 0.9)
        const target = key === Qt.Key_PageDown ? Math.min(last, page.contentY + step)
            : key === Qt.Key_PageUp ? Math.max(0, page.contentY - step)
            : key === Qt.Key_Home ? 0 : key === Qt.Key_End ? last : page.contentY
        const moves = target !== page.contentY
        page.contentY = target
        return moves
    }

    T.ScrollBar.vertical: ScrollBar {}
}
