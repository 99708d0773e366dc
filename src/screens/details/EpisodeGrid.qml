pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Details
import Ondavia.Style

/// The episodes of a season. They scroll with the page that they stand on, and only those in sight are made:
/// the grid is as high as the window and goes along with it.
CardGrid {
    id: grid
    required property EpisodeListModel episodes
    required property ScrollPage page
    /// Where the first row stands on the page, and where among the siblings of the grid.
    required property real firstRowOnPage
    required property real firstRow
    readonly property real length: Math.ceil(grid.count / grid.columns) * grid.cellHeight
    readonly property real passed: Math.max(0, grid.page.contentY - grid.firstRowOnPage)

    function follow() {
        grid.contentY = grid.originY + grid.passed
    }
    onPassedChanged: grid.follow()
    // A list that changes, or is laid out anew, goes to its own beginning.
    onCountChanged: following.restart()
    onContentHeightChanged: following.restart()
    // The page looks as soon as a row has the focus, and one that was far away has neither place nor size then.
    onCurrentIndexChanged: {
        if (grid.activeFocus && FocusGuide.isKeyboardInUse)
            grid.page.reveal(grid.firstRowOnPage + Math.floor(grid.currentIndex / grid.columns) * grid.cellHeight,
                             grid.cellHeight - grid.gap)
    }

    y: grid.firstRow + grid.passed
    height: grid.page.height
    // What is scrolled past the last row is the page's margin.
    bottomMargin: grid.page.height
    interactive: false
    highlightFollowsCurrentItem: false
    // The page may go at any time, and rows that Qt 6.4 makes beforehand are written to when their list has gone.
    cacheBuffer: 0
    minimumCellWidth: 400
    gap: Theme.unit * 3
    cellHeight: 104 + gap
    model: grid.episodes
    delegate: FocusScope {
        id: cell
        required property int index
        required property string label
        required property string title
        required property string duration
        required property url picture
        width: grid.cellWidth
        height: grid.cellHeight
        EpisodeRow {
            anchors.fill: parent
            anchors.rightMargin: grid.gap
            anchors.bottomMargin: grid.gap
            focus: true
            label: cell.label
            text: cell.title
            duration: cell.duration
            picture: cell.picture
            onClicked: {
                grid.currentIndex = cell.index
                grid.episodes.play(cell.index)
            }
        }
    }
    // In the next turn: then it has done so.
    Timer {
        id: following
        interval: 0
        onTriggered: grid.follow()
    }
    Connections {
        target: grid.page
        function onMovementStarted() { grid.isCarriedAway = true }
    }
}
