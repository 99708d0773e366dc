pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// The channels of one category. A tap plays.
FocusScope {
    id: view
    required property BrowserViewModel model
    readonly property real margin: Theme.marginFor(view.width)

    SectionHeader {
        id: header
        x: view.margin
        y: Theme.unit * 3
        width: view.width - view.margin * 2
        title: view.model.categoryName
        canGoBack: true
        onBack: {
            const stack = view.parent as NavigationStack
            stack.goBack()
        }
    }
    CardGrid {
        id: grid
        objectName: "liveChannels"
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        x: view.margin
        width: view.width - view.margin * 2 + gap
        clip: true
        focus: true
        minimumCellWidth: 340
        cellHeight: 80 + gap
        edge: view.margin - gap
        bottomMargin: view.margin
        model: view.model.titles
        delegate: FocusScope {
            id: cell
            required property int index
            required property string name
            required property url picture
            width: grid.cellWidth
            height: grid.cellHeight
            ChannelRow {
                anchors.fill: parent
                anchors.rightMargin: grid.gap
                anchors.bottomMargin: grid.gap
                focus: true
                text: cell.name
                picture: cell.picture
                onClicked: {
                    grid.currentIndex = cell.index
                    view.model.play(cell.index)
                }
            }
        }
    }
    EmptyStateView {
        anchors.fill: parent
        visible: grid.count === 0 && !view.model.isLoading
        icon: "tv.fill"
        title: Texts.get("live.empty", "Sem canais")
        message: Texts.get("live.emptyCategory", "O provedor não tem canais nesta categoria.")
    }
}
