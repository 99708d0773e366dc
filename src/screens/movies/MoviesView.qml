pragma ComponentBehavior: Bound
import QtQuick
import Ondavia

/// The films: the provider's categories as a row of chips, the chosen one as a grid of posters. A tap
/// plays.
FocusScope {
    id: view
    required property BrowserViewModel model
    readonly property real margin: Theme.marginFor(view.width)

    SectionHeader {
        id: header
        x: view.margin
        y: Theme.unit * 3
        width: view.width - view.margin * 2
        title: Texts.get("movies.title", "Filmes")
    }
    ListView {
        id: chips
        objectName: "movieCategories"
        anchors.top: header.bottom
        width: view.width
        height: count > 0 ? 60 : 0
        leftMargin: view.margin
        rightMargin: view.margin
        orientation: ListView.Horizontal
        spacing: Theme.unit * 2
        activeFocusOnTab: count > 0
        keyNavigationEnabled: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: Theme.motion
        Accessible.role: Accessible.List
        Accessible.name: Texts.get("movies.categories", "Categorias")
        model: view.model.categories
        currentIndex: view.model.categoryRow
        delegate: Chip {
            id: chip
            required property int index
            required property string name
            y: Theme.unit
            text: chip.name
            highlighted: chip.index === view.model.categoryRow
            onClicked: {
                chips.currentIndex = chip.index
                view.model.openCategory(chip.index)
            }
        }
    }
    CardGrid {
        id: grid
        objectName: "movieGrid"
        anchors.top: chips.bottom
        anchors.bottom: parent.bottom
        // Half a gap on either side of a card leaves room for its frame, which a clip would cut.
        x: view.margin - gap / 2
        width: view.width - view.margin * 2 + gap
        clip: true
        focus: true
        minimumColumns: 2
        minimumCellWidth: view.width >= Theme.wideWindow ? 190 : 150
        gap: view.width >= Theme.wideWindow ? Theme.unit * 6 : Theme.unit * 4
        topMargin: Theme.unit * 3
        bottomMargin: view.margin
        cellHeight: (cellWidth - gap) * 1.5 + 56 + gap
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
                onClicked: {
                    grid.currentIndex = cell.index
                    view.model.play(cell.index)
                }
            }
        }
    }
    EmptyStateView {
        anchors.fill: parent
        visible: grid.count === 0
        icon: "film.fill"
        title: Texts.get("movies.empty", "Sem filmes")
        message: Texts.get("movies.emptyMessage", "Os filmes aparecem aqui assim que o catálogo do provedor for carregado.")
    }
}
