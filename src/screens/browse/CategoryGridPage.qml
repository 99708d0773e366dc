pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// All titles of one category.
FocusScope {
    id: page
    required property BrowserViewModel browser
    /// What its parts are called by: "movie" or "series".
    required property string kind
    required property string symbol
    readonly property real margin: Theme.marginFor(page.width)

    SectionHeader {
        id: header
        x: page.margin
        y: Theme.unit * 3
        width: page.width - page.margin * 2
        title: page.browser.categoryName
        canGoBack: true
        onBack: {
            const stack = page.parent as NavigationStack
            stack.goBack()
        }
    }
    CardGrid {
        id: grid
        objectName: page.kind + "Grid"
        readonly property real posterShape: 1.5
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        // Half a gap on either side of a card leaves room for its frame, which a clip would cut.
        x: page.margin - gap / 2
        width: page.width - page.margin * 2 + gap
        clip: true
        focus: true
        reuseItems: true
        minimumColumns: 2
        minimumCellWidth: page.width >= Theme.wideWindow ? 176 : 124
        // A row is seen whole in a low window too, as far as its posters can still be told apart.
        maximumCellWidth: Math.max(110, (grid.height - bottomMargin - gap - Theme.posterCaption) / posterShape + gap)
        gap: 14
        edge: page.margin - gap / 2
        topMargin: Theme.unit * 3
        // With the last row's own gap the margin of a page.
        bottomMargin: page.margin - gap
        cellHeight: Math.round((cellWidth - gap) * posterShape) + Theme.posterCaption + gap
        Accessible.name: page.browser.categoryName
        model: page.browser.titles
        delegate: FocusScope {
            id: cell
            required property int index
            required property string name
            required property url picture
            required property string rating
            required property string symbol
            width: grid.cellWidth
            height: grid.cellHeight
            ContentCardView {
                anchors.fill: parent
                anchors.leftMargin: grid.gap / 2
                anchors.rightMargin: grid.gap / 2
                anchors.bottomMargin: grid.gap
                focus: true
                text: cell.name
                picture: cell.picture
                rating: cell.rating
                symbol: cell.symbol
                onClicked: {
                    grid.currentIndex = cell.index
                    page.browser.open(cell.index)
                }
            }
        }
    }
    Icon {
        anchors.centerIn: parent
        visible: grid.count === 0
        symbol: page.symbol
        size: 72
        color: Theme.placeholderSymbol
    }
}
