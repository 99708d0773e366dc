pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Live
import Ondavia.Style

/// The provider's categories of channels, each with the number of channels that it has.
FocusScope {
    id: view
    required property LiveViewModel model
    readonly property real margin: Theme.marginFor(view.width)
    /// The model has its category open: a page for it may be shown.
    signal categoryOpened()

    SectionHeader {
        id: header
        x: view.margin
        y: Theme.unit * 3
        width: view.width - view.margin * 2
        title: Texts.get("live.title", "TV ao Vivo")
        actions: IconButton {
            symbol: "magnifyingglass"
            text: Texts.get("search.title", "Pesquisar")
            onClicked: view.model.searchWanted()
        }
    }
    CardGrid {
        id: grid
        objectName: "liveCategories"
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        x: view.margin
        width: view.width - view.margin * 2 + gap
        clip: true
        focus: true
        reuseItems: true
        minimumCellWidth: 300
        cellHeight: 64 + gap
        edge: view.margin - gap
        bottomMargin: view.margin
        Accessible.name: header.title
        model: view.model.categories
        delegate: FocusScope {
            id: cell
            required property int index
            required property string name
            required property string countText
            width: grid.cellWidth
            height: grid.cellHeight
            ListRow {
                anchors.fill: parent
                anchors.rightMargin: grid.gap
                anchors.bottomMargin: grid.gap
                focus: true
                text: cell.name
                detail: cell.countText
                onClicked: {
                    grid.currentIndex = cell.index
                    view.model.openCategory(cell.index)
                    view.categoryOpened()
                }
            }
        }
    }
    // No words: a catalogue that cannot be read looks the same.
    Icon {
        anchors.centerIn: parent
        visible: grid.count === 0
        symbol: "tv.fill"
        size: 72
        color: Theme.placeholderSymbol
    }
}
