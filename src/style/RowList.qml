import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A virtual list from top to bottom. Keys move the current row by rows, pages and to both ends; an arrow key
/// that leads out of the list is left to whoever stands around it.
ListView {
    id: list
    /// A pointer has moved the view since the last key.
    property bool isCarriedAway: false

    clip: true
    activeFocusOnTab: true
    // The view's own knows no pages, and does not see that the current row is out of sight.
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    // Rows differ in height: a view that moves by itself to a far one ends beside it.
    highlightFollowsCurrentItem: false
    // A panel may go at any time, and rows that Qt 6.4 makes beforehand are written to when their list has gone.
    cacheBuffer: 0
    Accessible.role: Accessible.List
    Keys.onPressed: event => event.accepted = list.move(event.key)
    onMovementStarted: list.isCarriedAway = true

    /// Begins anew with this row in sight, and one before it.
    function startAt(row: int) {
        list.isCarriedAway = false
        list.currentIndex = Math.max(0, row)
        list.positionViewAtIndex(Math.max(0, row - 1), ListView.Beginning)
    }
    /// Whether the key means something here. One for pages and ends does so also where nothing is left to move.
    function move(key: int): bool {
        const isArrow = key === Qt.Key_Up || key === Qt.Key_Down
        const isLost = list.isCarriedAway && !list.isInSight(list.currentItem)
        const target = isArrow && isLost ? list.rowInSight() : list.targetOf(key)
        if (target < 0 || target >= list.count)
            return false
        if (target === list.currentIndex)
            return !isArrow
        list.isCarriedAway = false
        list.currentIndex = target
        list.positionViewAtIndex(target, ListView.Contain)
        // A row that was far away is as high as the others until it is made, and has no title above it.
        list.positionViewAtIndex(target, ListView.Contain)
        return true
    }
    /// The row that a key leads to; outside of the list for keys that mean nothing here.
    function targetOf(key: int): int {
        const row = list.currentItem
        const page = row === null || row.height <= 0 ? 1 : Math.max(1, Math.floor(list.height / row.height))
        switch (key) {
        case Qt.Key_Up: return list.currentIndex - 1
        case Qt.Key_Down: return list.currentIndex + 1
        case Qt.Key_PageUp: return Math.max(0, list.currentIndex - page)
        case Qt.Key_PageDown: return Math.min(list.count - 1, list.currentIndex + page)
        case Qt.Key_Home: return 0
        case Qt.Key_End: return list.count - 1
        default: return -1
        }
    }
    function isInSight(row: Item): bool {
        return row !== null && row.y >= list.contentY && row.y + row.height <= list.contentY + list.height
    }
    /// A row in the middle of what is seen.
    function rowInSight(): int {
        return list.indexAt(list.width / 2, list.contentY + list.height / 2)
    }

    T.ScrollBar.vertical: ScrollBar { onPressedChanged: if (pressed) list.isCarriedAway = true }
}
