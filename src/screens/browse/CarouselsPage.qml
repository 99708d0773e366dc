pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Ondavia.Browse
import Ondavia.Style

/// The categories of films or series as rows of cards, one below the other. Up and down lead from row to row and
/// stay below each other, left and right lead through a row, and on from its last card to the row's header.
FocusScope {
    id: page
    required property BrowserViewModel browser
    /// What its parts are called by: "movie" or "series".
    required property string kind
    required property string title
    required property string symbol
    readonly property real margin: Theme.marginFor(page.width)
    readonly property real gap: page.width >= Theme.wideWindow ? Theme.unit * 5 : Theme.unit * 3
    /// Of all cards alike: a row is seen whole in a low window too, as far as its posters can be told apart.
    readonly property int cardWidth: Math.round(Math.min(
        page.width >= Theme.wideWindow ? Math.max(152, Math.min(240, page.width / 9)) : Math.max(112, page.width * 0.3),
        Math.max(88, (list.height - CarouselRow.Surroundings) / 1.5)))
    /// The browser has its category open: a page for it may be shown.
    signal categoryOpened()

    SectionHeader {
        id: header
        x: page.margin
        y: Theme.unit * 3
        width: page.width - page.margin * 2
        title: page.title
        actions: IconButton {
            symbol: "magnifyingglass"
            text: Texts.get("search.title", "Pesquisar")
            onClicked: page.browser.searchWanted()
        }
    }
    ListView {
        id: list
        objectName: page.kind + "Carousels"
        readonly property real rowHeight: Math.round(page.cardWidth * 1.5) + CarouselRow.Surroundings
        readonly property int rowsInView: Math.max(1, Math.floor(list.height / list.rowHeight))
        readonly property CarouselRow currentRow: list.currentItem as CarouselRow
        /// A pointer has moved the view, or a row of it, since the last key.
        property bool isCarriedAway: false
        readonly property var places: ({})

        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: page.width
        clip: true
        focus: true
        activeFocusOnTab: count > 0
        reuseItems: true
        // What it moves to is known better here: rows are of one height.
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false
        boundsBehavior: Flickable.StopAtBounds
        bottomMargin: page.margin
        // Rows beyond the view wait for the first frame of those in it.
        cacheBuffer: Environment.hasShownFrame ? list.rowHeight : 0
        currentIndex: 0
        Accessible.role: Accessible.List
        Accessible.name: page.title
        Keys.onPressed: event => event.accepted = list.move(event.key)
        onMovementStarted: list.isCarriedAway = true
        onActiveFocusChanged: {
            if (list.activeFocus && list.count > 0 && (list.currentItem === null || list.isCurrentLost()))
                list.enterView()
        }

        NumberAnimation {
            id: glide
            target: list
            property: "contentY"
            duration: Theme.motion
            easing.type: Theme.motionCurve
        }

        /// Whether the key means something here, and the focus has moved by it.
        function move(key: int): bool {
            if (list.currentRow === null)
                return false
            if (FocusGuide.isArrow(key) && list.isCurrentLost()) {
                list.enterView()
                list.reveal(list.currentIndex)
                return true
            }
            const moved = list.moveUpOrDown(key) || list.currentRow.move(key)
            list.isCarriedAway = list.isCarriedAway && !moved
            if (moved)
                list.reveal(list.currentIndex)
            return moved
        }
        function moveUpOrDown(key: int): bool {
            const last = list.count - 1
            const row = list.currentIndex
            switch (key) {
            case Qt.Key_Up: return row > 0 ? list.goTo(row - 1) : list.currentRow.enterHeader()
            case Qt.Key_Down: return list.currentRow.leaveHeader() || list.goTo(row + 1)
            case Qt.Key_PageUp: return list.goTo(Math.max(0, row - list.rowsInView))
            case Qt.Key_PageDown: return list.goTo(Math.min(last, row + list.rowsInView))
            // At the end of its row such a key goes on to the end of all rows.
            case Qt.Key_Home: return list.currentRow.isAtBeginning && list.goTo(0)
            case Qt.Key_End: return list.currentRow.isAtEnd && list.goTo(last)
            default: return false
            }
        }
        /// To the card of another row that is seen below or above the present one.
        function goTo(row: int): bool {
            if (row < 0 || row >= list.count || row === list.currentIndex)
                return false
            const place = list.currentRow.placeOfCurrent()
            list.currentRow.leaveHeader()
            list.currentIndex = row
            list.currentRow.enterAt(place)
            return true
        }
        function enterView() {
            const first = Math.ceil((list.contentY - list.originY - 1) / list.rowHeight)
            const whole = Math.max(first, Math.floor((list.contentY - list.originY + list.height) / list.rowHeight) - 1)
            const place = list.currentRow === null ? page.margin : list.currentRow.placeOfCurrent()
            list.isCarriedAway = false
            list.currentIndex = Math.max(0, Math.min(list.count - 1, Math.max(first, Math.min(list.currentIndex, whole))))
            list.currentRow.enterAt(place)
        }
        function isCurrentLost(): bool {
            if (!list.isCarriedAway || list.currentItem === null)
                return false
            const top = list.currentItem.y - list.contentY
            return top + list.rowHeight / 2 < 0 || top + list.rowHeight / 2 > list.height || list.currentRow.isCurrentLost()
        }
        function reveal(row: int) {
            const top = list.originY + row * list.rowHeight
            const lowest = list.originY + Math.max(0, list.count * list.rowHeight + list.bottomMargin - list.height)
            const goal = Math.min(lowest, Math.min(top, Math.max(top + list.rowHeight - list.height,
                                                                 glide.running ? glide.to : list.contentY)))
            glide.stop()
            if (goal !== list.contentY) {
                glide.from = list.contentY
                glide.to = goal
                glide.start()
            }
        }

        model: page.browser.carousels
        delegate: CarouselRow {
            id: row
            width: list.width
            height: list.rowHeight
            margin: page.margin
            gap: page.gap
            cardWidth: page.cardWidth
            carousels: page.browser.carousels
            onHeaderClicked: {
                list.currentIndex = row.index
                page.browser.openCategory(row.index)
                page.categoryOpened()
            }
            onCardClicked: (titles, card) => {
                list.currentIndex = row.index
                page.browser.openFrom(titles, card)
            }
            onCarried: list.isCarriedAway = true
            places: list.places
        }
        T.ScrollBar.vertical: ScrollBar { onPressedChanged: if (pressed) list.isCarriedAway = true }
    }
    // No words: a catalogue that cannot be read looks the same.
    Icon {
        anchors.centerIn: parent
        visible: list.count === 0
        symbol: page.symbol
        size: 72
        color: Theme.placeholderSymbol
    }
}
