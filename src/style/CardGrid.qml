import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A virtual grid whose number of columns follows its width. Each cell leaves `gap` at its right and
/// bottom edge. Keys move the current card by cards, pages and to both ends; an arrow key that leads out of
/// the grid is left to whoever stands around it.
GridView {
    id: grid
    property real minimumCellWidth: 160
    /// Goes before the minimum.
    property real maximumCellWidth: Infinity
    property int minimumColumns: 1
    property real gap: Theme.unit * 4
    /// How far the page goes on at the right of the grid: the scroll bar stands at its edge.
    property real edge: 0
    readonly property int columns: Math.max(grid.minimumColumns, Math.floor((grid.width + 1) / grid.minimumCellWidth),
                                            Math.ceil(grid.width / grid.maximumCellWidth))
    /// Whole rows that fit into the view.
    readonly property int rowsInView: Math.max(1, Math.floor(grid.height / grid.cellHeight))
    /// A pointer has moved the view since the last key. While keys are in use it may lag behind them.
    property bool isCarriedAway: false

    cellWidth: Math.floor(grid.width / grid.columns)
    activeFocusOnTab: count > 0
    // The view's own would go from a row's first card to the end of the row above it.
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: Theme.motion
    currentIndex: 0
    Accessible.role: Accessible.List
    Keys.onPressed: event => event.accepted = grid.move(event.key)
    onMovementStarted: grid.isCarriedAway = true

    onActiveFocusChanged: {
        const isLost = currentItem === null || grid.isCarriedAway && !grid.isCurrentInSight()
        if (activeFocus && count > 0 && isLost)
            grid.enterView()
    }

    /// Whether the key means something here, and the current card has moved by it.
    function move(key: int): bool {
        if (grid.count === 0)
            return false
        const isArrow = key === Qt.Key_Left || key === Qt.Key_Right || key === Qt.Key_Up || key === Qt.Key_Down
        if (isArrow && grid.isCarriedAway && !grid.isCurrentInSight()) {
            grid.enterView()
            return true
        }
        const target = grid.targetOf(key)
        if (target < 0 || target === grid.currentIndex)
            return false
        grid.isCarriedAway = false
        grid.currentIndex = target
        return true
    }
    /// The card that a key leads to; -1 for keys that mean nothing here.
    function targetOf(key: int): int {
        const index = grid.currentIndex
        const column = index % grid.columns
        const page = grid.rowsInView * grid.columns
        const lastRow = Math.floor((grid.count - 1) / grid.columns)
        switch (key) {
        case Qt.Key_Left: return column > 0 ? index - 1 : -1
        case Qt.Key_Right: return column < grid.columns - 1 ? Math.min(index + 1, grid.count - 1) : -1
        case Qt.Key_Up: return index - grid.columns
        // The last row may be too short to have a card below this one.
        case Qt.Key_Down: return index < lastRow * grid.columns ? Math.min(index + grid.columns, grid.count - 1) : -1
        case Qt.Key_PageUp: return Math.max(column, index - page)
        case Qt.Key_PageDown: return Math.min(index + page, grid.count - 1)
        case Qt.Key_Home: return 0
        case Qt.Key_End: return grid.count - 1
        default: return -1
        }
    }
    function isCurrentInSight(): bool {
        const top = Math.floor(grid.currentIndex / grid.columns) * grid.cellHeight
        const scrolled = grid.contentY - grid.originY
        return top + grid.cellHeight > scrolled && top < scrolled + grid.height
    }
    /// Makes a card current that can be seen whole, on the side where the last one went out of sight.
    function enterView() {
        const column = Math.max(0, grid.currentIndex) % grid.columns
        const scrolled = grid.contentY - grid.originY
        const first = Math.ceil((scrolled - 1) / grid.cellHeight)
        const last = Math.max(first, Math.floor((scrolled + grid.height) / grid.cellHeight) - 1)
        grid.isCarriedAway = false
        const isAbove = Math.floor(grid.currentIndex / grid.columns) < first
        grid.currentIndex = Math.min(grid.count - 1, Math.max(0, isAbove ? first : last) * grid.columns + column)
    }

    // Cards beyond the view wait for the first frame of those in it.
    cacheBuffer: Environment.hasShownFrame ? Math.max(0, height) : 0
    T.ScrollBar.vertical: ScrollBar {
        parent: grid.parent
        x: grid.x + grid.width + grid.edge - width
        y: grid.y
        height: grid.height
        // A grid that somebody else moves has none of its own.
        visible: grid.interactive && size < 1
        onPressedChanged: if (pressed) grid.isCarriedAway = true
    }
}
