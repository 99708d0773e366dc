pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// Titles with pages of their own: the provider's categories as a row of chips, the chosen one as a grid of
/// posters.
FocusScope {
    id: view
    required property BrowserViewModel model
    /// What its parts are called by: "movie" or "series".
    required property string kind
    required property string title
    required property string symbol
    required property string emptyTitle
    required property string emptyMessage
    readonly property real margin: Theme.marginFor(view.width)

    SectionHeader {
        id: header
        x: view.margin
        y: Theme.unit * 3
        width: view.width - view.margin * 2
        title: view.title
        actions: IconButton {
            symbol: "magnifyingglass"
            text: Texts.get("search.title", "Pesquisar")
            onClicked: view.model.searchWanted()
        }
    }
    ChipRow {
        id: chips
        objectName: view.kind + "Categories"
        anchors.top: header.bottom
        width: view.width
        height: count > 0 ? 60 : 0
        leftMargin: view.margin
        rightMargin: view.margin
        Accessible.name: Texts.get("movies.categories", "Categorias")
        model: view.model.categories
        chosen: view.model.categoryRow
        onPicked: index => view.model.openCategory(index)
    }
    CardGrid {
        id: grid
        objectName: view.kind + "Grid"
        readonly property real posterShape: 1.5
        anchors.top: chips.bottom
        anchors.bottom: parent.bottom
        // Half a gap on either side of a card leaves room for its frame, which a clip would cut.
        x: view.margin - gap / 2
        width: view.width - view.margin * 2 + gap
        clip: true
        focus: true
        minimumColumns: 2
        minimumCellWidth: view.width >= Theme.wideWindow ? 190 : 150
        // A row is seen whole in a low window too, as far as its posters can still be told apart.
        maximumCellWidth: Math.max(110, (grid.height - bottomMargin - gap - Theme.posterCaption) / posterShape + gap)
        gap: view.width >= Theme.wideWindow ? Theme.unit * 6 : Theme.unit * 4
        edge: view.margin - gap / 2
        topMargin: Theme.unit * 3
        // With the last row's own gap the margin of a page.
        bottomMargin: view.margin - gap
        cellHeight: (cellWidth - gap) * posterShape + Theme.posterCaption + gap
        model: view.model.titles
        delegate: FocusScope {
            id: cell
            required property int index
            required property string name
            required property url picture
            required property string rating
            width: grid.cellWidth
            height: grid.cellHeight
            PosterCard {
                anchors.fill: parent
                anchors.leftMargin: grid.gap / 2
                anchors.rightMargin: grid.gap / 2
                anchors.bottomMargin: grid.gap
                focus: true
                text: cell.name
                picture: cell.picture
                rating: cell.rating
                symbol: view.symbol
                onClicked: {
                    grid.currentIndex = cell.index
                    view.model.open(cell.index)
                }
            }
        }
    }
    EmptyStateView {
        anchors.fill: parent
        visible: grid.count === 0 && !view.model.isLoading
        icon: view.symbol
        title: view.emptyTitle
        message: view.emptyMessage
    }
}
