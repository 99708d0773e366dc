pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Ondavia.Browse
import Ondavia.Style

/// A category: a header that leads to all of it, and its first titles side by side. Goes from category to
/// category as its page scrolls, and keeps its cards.
FocusScope {
    id: row
    required property int index
    required property string name
    property CarouselListModel carousels
    property real margin
    property real gap
    property int cardWidth
    /// Where each category stands, by its name: while its row shows others, and when it is made anew.
    property var places: ({})
    readonly property real pitch: row.cardWidth + row.gap
    readonly property bool isHeaderCurrent: header.focus
    readonly property bool isAtBeginning: !header.focus && cards.currentIndex === 0
    readonly property bool isAtEnd: !header.focus && cards.currentIndex === cards.count - 1
    signal headerClicked()
    signal cardClicked(ChannelListModel titles, int card)
    /// A pointer has moved the cards.
    signal carried()

    /// What a row has around its posters.
    enum Measure { HeaderHeight = 52, RowGap = 16, Surroundings = 124 }

    Component.onCompleted: row.takePlace()
    ListView.onReused: row.takePlace()
    onPitchChanged: row.takePlace()

    CarouselTitles {
        id: titles
        carousels: row.carousels
        row: row.index
    }
    T.AbstractButton {
        id: header
        objectName: "carouselHeader"
        x: row.margin - Theme.unit * 2
        y: Theme.unit
        width: Math.min(implicitWidth, row.width - row.margin * 2 + Theme.unit * 4)
        height: CarouselRow.HeaderHeight - Theme.unit * 3
        implicitWidth: label.implicitWidth + chevron.width + Theme.unit * 5
        focusPolicy: Qt.ClickFocus
        text: row.name
        Accessible.role: Accessible.Button
        Accessible.name: header.text
        Accessible.onPressAction: header.clicked()
        Keys.onReturnPressed: header.clicked()
        Keys.onEnterPressed: header.clicked()
        onClicked: row.headerClicked()
        contentItem: Item {
            Label {
                id: label
                x: Theme.unit * 2
                width: Math.min(implicitWidth, parent.width - chevron.width - Theme.unit * 5)
                anchors.verticalCenter: parent.verticalCenter
                text: header.text
                elide: Text.ElideRight
                font.pixelSize: Theme.headingSize
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
            Icon {
                id: chevron
                anchors.left: label.right
                anchors.leftMargin: header.isWanted ? Theme.unit * 2 : Theme.unit
                anchors.verticalCenter: parent.verticalCenter
                symbol: "chevron.right"
                color: header.isWanted ? Theme.accent : Theme.textFaint
                Behavior on anchors.leftMargin { NumberAnimation { duration: Theme.motionShort; easing.type: Theme.motionCurve } }
            }
        }
        readonly property bool isWanted: header.hovered || header.activeFocus && FocusGuide.isKeyboardInUse
        opacity: header.down ? 0.7 : 1
        background: Item {
            FocusRing { control: header; distance: 0; radius: Theme.unit * 2 }
        }
    }
    ListView {
        id: cards
        objectName: "carousel"
        y: CarouselRow.HeaderHeight
        width: row.width
        height: row.height - y
        orientation: ListView.Horizontal
        focus: true
        reuseItems: true
        leftMargin: row.margin
        rightMargin: row.margin
        spacing: row.gap
        cacheBuffer: 0
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false
        boundsBehavior: Flickable.StopAtBounds
        currentIndex: 0
        Accessible.role: Accessible.List
        Accessible.name: row.name
        onMovementStarted: row.carried()
        onMovementEnded: row.keepPlace()
        // Sideways by a wheel that only turns up and down.
        WheelHandler {
            acceptedModifiers: Qt.ShiftModifier
            orientation: Qt.Vertical
            onWheel: event => {
                row.carried()
                slide.stop()
                cards.contentX = cards.bounded(cards.contentX - event.angleDelta.y)
                row.keepPlace()
            }
        }
        NumberAnimation {
            id: slide
            target: cards
            property: "contentX"
            duration: Theme.motion
            easing.type: Theme.motionCurve
        }
        function bounded(x: real): real {
            const first = cards.originX - row.margin
            return Math.max(first, Math.min(first + cards.count * row.pitch - row.gap + row.margin * 2 - cards.width, x))
        }
        model: titles.list
        delegate: FocusScope {
            id: cell
            required property int index
            required property string name
            required property url picture
            required property string rating
            required property string symbol
            width: row.cardWidth
            height: Math.round(row.cardWidth * 1.5) + Theme.posterCaption
            ContentCardView {
                anchors.fill: parent
                focus: true
                text: cell.name
                picture: cell.picture
                rating: cell.rating
                symbol: cell.symbol
                onClicked: {
                    cards.currentIndex = cell.index
                    row.leaveHeader()
                    row.keepPlace()
                    row.cardClicked(titles.list, cell.index)
                }
            }
        }
    }

    /// Whether the key moved the focus within the row.
    function move(key: int): bool {
        const last = cards.count - 1
        if (header.focus)
            return (key === Qt.Key_Home || key === Qt.Key_End) && row.leaveHeader()
        switch (key) {
        case Qt.Key_Left: return row.goTo(cards.currentIndex - 1)
        case Qt.Key_Right: return cards.currentIndex < last ? row.goTo(cards.currentIndex + 1) : row.enterHeader()
        case Qt.Key_Home: return row.goTo(0)
        case Qt.Key_End: return row.goTo(last)
        default: return false
        }
    }
    function goTo(card: int): bool {
        if (card < 0 || card >= cards.count || card === cards.currentIndex)
            return false
        cards.currentIndex = card
        row.reveal(card)
        return true
    }
    function reveal(card: int) {
        const left = cards.originX + card * row.pitch
        const from = slide.running ? slide.to : cards.contentX
        const goal = cards.bounded(Math.min(left - row.margin,
                                            Math.max(left + row.cardWidth + row.margin - cards.width, from)))
        slide.stop()
        if (goal !== cards.contentX) {
            slide.from = cards.contentX
            slide.to = goal
            slide.start()
        }
        row.keepPlace()
    }
    /// Whether the header has the focus since then, and had not before.
    function enterHeader(): bool {
        const isNew = !header.focus
        if (isNew)
            header.forceActiveFocus(Qt.TabFocusReason)
        return isNew
    }
    /// The same for the cards.
    function leaveHeader(): bool {
        const isNew = header.focus
        cards.focus = true
        return isNew
    }
    /// Where the current card stands in the window, or will when the row has come to rest.
    function placeOfCurrent(): real {
        return cards.originX + cards.currentIndex * row.pitch - (slide.running ? slide.to : cards.contentX)
    }
    /// Makes the card current that stands there, of those that are seen whole.
    function enterAt(place: real) {
        const scrolled = cards.contentX - cards.originX
        const first = Math.ceil((scrolled - 1) / row.pitch)
        const last = Math.max(first, Math.floor((scrolled + cards.width - row.cardWidth + 1) / row.pitch))
        const nearest = Math.round((scrolled + place) / row.pitch)
        cards.currentIndex = Math.max(0, Math.min(cards.count - 1, Math.max(first, Math.min(nearest, last))))
        cards.focus = true
        row.reveal(cards.currentIndex)
    }
    function isCurrentLost(): bool {
        const left = row.placeOfCurrent()
        return left + row.cardWidth / 2 < 0 || left + row.cardWidth / 2 > cards.width
    }
    /// In cards, for rows whose cards have another size then.
    function keepPlace() {
        const scrolled = (slide.running ? slide.to : cards.contentX) - cards.originX
        row.places[row.name] = { first: (scrolled + row.margin) / row.pitch, card: cards.currentIndex }
    }
    function takePlace() {
        const kept = row.places[row.name]
        slide.stop()
        cards.focus = true
        cards.currentIndex = kept === undefined ? 0 : Math.max(0, Math.min(kept.card, cards.count - 1))
        cards.contentX = cards.bounded(cards.originX - row.margin + (kept === undefined ? 0 : kept.first * row.pitch))
    }
}
