import QtQuick
import QtQuick.Templates as T
import Ondavia

/// A virtual grid whose number of columns follows its width. Each cell leaves `gap` at its right and
/// bottom edge.
GridView {
    id: grid
    property real minimumCellWidth: 160
    property int minimumColumns: 1
    property real gap: Theme.unit * 4
    readonly property int columns: Math.max(grid.minimumColumns, Math.floor((grid.width + 1) / grid.minimumCellWidth))

    cellWidth: Math.floor(grid.width / grid.columns)
    activeFocusOnTab: count > 0
    keyNavigationEnabled: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: Theme.motion
    currentIndex: 0
    Accessible.role: Accessible.List

    // The first arrow key should land on what the user sees, not on a row far above it.
    onActiveFocusChanged: {
        if (activeFocus && currentItem === null && count > 0)
            currentIndex = Math.max(0, indexAt(1, contentY + 1))
    }
    // Cards beyond the view wait for the first frame of those in it.
    cacheBuffer: Environment.hasShownFrame ? Math.max(0, height) : 0
    T.ScrollBar.vertical: ScrollBar {}
}
