pragma ComponentBehavior: Bound
import QtQuick
import Ondavia

/// The five tabs: a rail at the left of a wide window, a bar below a narrow one. A tab's pages are made at
/// its first visit and stay, so that it keeps its place and its own way back.
FocusScope {
    id: view
    required property ScreenModels models
    readonly property bool isWide: view.width >= Theme.wideWindow
    /// What the bar takes from the bottom of the window.
    readonly property real barHeight: view.isWide ? 0 : navigation.height
    readonly property int current: view.models.content.selectedTab

    readonly property var tabs: [
        {
            text: Texts.get("tab.home", "Inicio"), symbol: "house.fill",
            page: Qt.resolvedUrl("../home/HomeView.qml"), properties: { models: view.models }
        },
        {
            text: Texts.get("tab.tv", "TV"), symbol: "tv.fill",
            page: Qt.resolvedUrl("../live/LiveView.qml"), properties: { model: view.models.live }
        },
        {
            text: Texts.get("tab.movies", "Filmes"), symbol: "film.fill",
            page: Qt.resolvedUrl("../movies/MoviesView.qml"), properties: { model: view.models.movies }
        },
        {
            text: Texts.get("tab.series", "Series"), symbol: "play.rectangle.on.rectangle.fill",
            page: Qt.resolvedUrl("../series/SeriesView.qml"), properties: {}
        },
        {
            text: Texts.get("tab.favorites", "Favoritos"), symbol: "heart.fill",
            page: Qt.resolvedUrl("../favorites/FavoritesView.qml"), properties: {}
        }
    ]

    Rectangle {
        id: navigation
        width: view.isWide ? 96 : view.width
        height: view.isWide ? view.height : 72
        y: view.isWide ? 0 : view.height - height
        color: view.isWide ? "#0c0f15" : "#0e1219"
        Accessible.role: Accessible.PageTabList
        Accessible.name: Texts.get("tab.list", "Separadores")

        Rectangle {
            width: view.isWide ? 1 : parent.width
            height: view.isWide ? parent.height : 1
            x: view.isWide ? parent.width - 1 : 0
            color: Theme.hairline
        }
        WaveGlyph {
            visible: view.isWide
            anchors.horizontalCenter: parent.horizontalCenter
            y: Theme.unit * 6
            size: 34
        }
        Grid {
            anchors.horizontalCenter: parent.horizontalCenter
            y: view.isWide ? Math.max(Theme.unit * 24, (parent.height - height) / 2) : 0
            columns: view.isWide ? 1 : 5
            rowSpacing: Theme.unit * 2
            Repeater {
                id: items
                model: view.tabs
                NavigationItem {
                    required property var modelData
                    required property int index
                    width: view.isWide ? navigation.width : navigation.width / 5
                    height: 72
                    text: modelData.text
                    symbol: modelData.symbol
                    isCurrent: view.current === index
                    onClicked: view.models.content.selectedTab = index
                }
            }
        }
    }

    FocusScope {
        id: pages
        focus: true
        x: view.isWide ? navigation.width : 0
        width: view.width - x
        height: view.height - view.barHeight

        Repeater {
            model: view.tabs
            Loader {
                id: tab
                required property var modelData
                required property int index
                readonly property bool isCurrent: view.current === tab.index

                function visit() {
                    if (tab.isCurrent && tab.item === null)
                        // At its final size from the start, so that no page is laid out twice.
                        tab.setSource(Qt.resolvedUrl("../style/NavigationStack.qml"), {
                            width: tab.width, height: tab.height, focus: true,
                            firstPage: tab.modelData.page, firstProperties: tab.modelData.properties
                        })
                }

                anchors.fill: parent
                visible: tab.isCurrent
                focus: tab.isCurrent
                enabled: tab.isCurrent
                onIsCurrentChanged: tab.visit()
                Component.onCompleted: tab.visit()
            }
        }
    }
}
