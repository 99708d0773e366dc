pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// The live tab's root: the provider's categories with their numbers of channels.
FocusScope {
    id: view
    required property BrowserViewModel model
    readonly property real margin: Theme.marginFor(view.width)

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
        minimumCellWidth: 300
        cellHeight: 64 + gap
        edge: view.margin - gap
        bottomMargin: view.margin
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
                    const stack = view.parent as NavigationStack
                    stack.open(Qt.resolvedUrl("LiveCategoryView.qml"), { model: view.model })
                }
            }
        }
    }
    EmptyStateView {
        anchors.fill: parent
        visible: grid.count === 0 && !view.model.isLoading
        icon: "tv.fill"
        title: Texts.get("live.empty", "Sem canais")
        message: Texts.get("live.emptyMessage", "Os canais aparecem aqui assim que o catálogo do provedor for carregado.")
    }
}
