pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Style

/// A row of choices that scrolls sideways, for a model with a `name`. Keys move the current chip by chips and
/// to both ends; one that leads out of the row is left to whoever stands around it.
ListView {
    id: row
    /// Row of the choice that counts; -1 for none.
    property int chosen: -1
    /// A pointer has moved the view since the last key.
    property bool isCarriedAway: false
    signal picked(int index)

    orientation: ListView.Horizontal
    spacing: Theme.unit * 2
    activeFocusOnTab: count > 0
    // The view's own does not see that the current chip is out of sight.
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: Theme.motion
    Accessible.role: Accessible.List
    Keys.onPressed: event => event.accepted = row.move(event.key)
    onMovementStarted: row.isCarriedAway = true
    // A view takes the wheel in its own direction only, and most mice have no other.
    WheelHandler {
        orientation: Qt.Vertical
        onWheel: event => {
            row.isCarriedAway = true
            const first = row.originX - row.leftMargin
            const last = row.originX + row.contentWidth + row.rightMargin - row.width
            row.contentX = Math.max(first, Math.min(last, row.contentX - event.angleDelta.y))
        }
    }
    // Keys and clicks write to it too.
    Binding on currentIndex { value: row.chosen }

    /// Whether the key means something here, and the current chip has moved by it.
    function move(key: int): bool {
        const isArrow = key === Qt.Key_Left || key === Qt.Key_Right
        const isLost = row.isCarriedAway && !row.isInSight(row.currentItem)
        const target = isArrow && isLost ? row.entry() : row.targetOf(key)
        if (target < 0 || target >= row.count || target === row.currentIndex)
            return false
        row.isCarriedAway = false
        row.currentIndex = target
        return true
    }
    /// The chip that a key leads to; outside of the row for keys that mean nothing here.
    function targetOf(key: int): int {
        switch (key) {
        case Qt.Key_Left: return row.currentIndex - 1
        case Qt.Key_Right: return row.currentIndex + 1
        case Qt.Key_Home: return 0
        case Qt.Key_End: return row.count - 1
        default: return -1
        }
    }
    function isInSight(chip: Item): bool {
        return chip !== null && chip.x >= row.contentX && chip.x + chip.width <= row.contentX + row.width
    }
    /// The first chip that is seen whole, on the side where the current one went out of sight.
    function entry(): int {
        const isBefore = row.currentItem === null || row.currentItem.x < row.contentX
        let index = isBefore ? 0 : row.count - 1
        while (index >= 0 && index < row.count && !row.isInSight(row.itemAtIndex(index)))
            index += isBefore ? 1 : -1
        return index
    }

    delegate: Chip {
        id: chip
        required property int index
        required property string name
        y: Theme.unit
        text: chip.name
        highlighted: chip.index === row.chosen
        onClicked: {
            row.currentIndex = chip.index
            row.picked(chip.index)
        }
    }
}
