pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Browse
import Ondavia.Live
import Ondavia.Style

/// The channels of one category, with what is on. A tap plays.
FocusScope {
    id: view
    required property LiveViewModel model
    readonly property real margin: Theme.marginFor(view.width)

    function showSight() {
        if (view.visible)
            view.model.loadCurrentEPG()
    }
    Component.onCompleted: view.showSight()
    onVisibleChanged: view.showSight()

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
        reuseItems: true
        minimumCellWidth: 340
        cellHeight: 80 + gap
        edge: view.margin - gap
        bottomMargin: view.margin
        Accessible.name: view.model.categoryName
        model: view.model.titles
        delegate: FocusScope {
            id: cell
            required property int index
            required property string name
            required property url picture
            required property string currentProgram
            width: grid.cellWidth
            height: grid.cellHeight
            ChannelRowView {
                anchors.fill: parent
                anchors.rightMargin: grid.gap
                anchors.bottomMargin: grid.gap
                focus: true
                text: cell.name
                picture: cell.picture
                currentProgram: cell.currentProgram
                onClicked: {
                    grid.currentIndex = cell.index
                    view.model.play(cell.index)
                }
            }
        }
    }
    Icon {
        anchors.centerIn: parent
        visible: grid.count === 0
        symbol: "tv.fill"
        size: 72
        color: Theme.placeholderSymbol
    }
}
