pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Details
import Ondavia.Shell
import Ondavia.Style

/// The five tabs: a rail at the left of a wide window, a bar below a narrow one. A tab's pages are made at
/// its first visit and stay, so that it keeps its place and its own way back.
FocusScope {
    id: view
    required property ScreenModels models
    readonly property bool isWide: view.width >= Theme.wideWindow
    /// What the bar takes from the bottom of the window.
    readonly property real barHeight: view.isWide ? 0 : navigation.height
    /// What the rail takes from its left.
    readonly property real railWidth: view.isWide ? navigation.width : 0
    readonly property int current: view.models.content.selectedTab

    /// The pages of a tab; null before its first visit.
    function stackOf(index: int): NavigationStack {
        const tab = stacks.itemAt(index) as Loader
        return tab === null ? null : tab.item as NavigationStack
    }

    Connections {
        target: view.models.details
        function onOpened(model: DetailViewModel) {
            const page = model.isSeries ? "../Details/SeriesDetailView.qml" : "../Details/MovieDetailView.qml"
            const stack = view.stackOf(view.tabs.findIndex(entry => entry.tab === view.current))
            model.belongTo(stack.open(Qt.resolvedUrl(page), { model: model }))
        }
        function onAllOutdated() {
            for (let index = 0; index < stacks.count; ++index) {
                const stack = view.stackOf(index)
                if (stack !== null)
                    stack.goToFirst()
            }
        }
    }

    readonly property var tabs: [
        {
            tab: ContentViewModel.Home, text: Texts.get("tab.home", "Inicio"), symbol: "house.fill",
            page: Qt.resolvedUrl("../Home/HomeView.qml"), properties: { model: view.models.home }
        },
        {
            tab: ContentViewModel.Live, text: Texts.get("tab.tv", "TV"), symbol: "tv.fill",
            page: Qt.resolvedUrl("../Live/LiveView.qml"), properties: { model: view.models.live }
        },
        {
            tab: ContentViewModel.Movies, text: Texts.get("tab.movies", "Filmes"), symbol: "film.fill",
            page: Qt.resolvedUrl("../Movies/MoviesView.qml"), properties: { model: view.models.movies }
        },
        {
            tab: ContentViewModel.Series, text: Texts.get("tab.series", "Series"),
            symbol: "play.rectangle.on.rectangle.fill",
            page: Qt.resolvedUrl("../Series/SeriesView.qml"), properties: { model: view.models.series }
        },
        {
            tab: ContentViewModel.Favorites, text: Texts.get("tab.favorites", "Favoritos"), symbol: "heart.fill",
            page: Qt.resolvedUrl("../Favorites/FavoritesView.qml"), properties: {}
        }
    ]

    Rectangle {
        id: navigation
        width: view.isWide ? 96 : view.width
        height: view.isWide ? view.height : 72
        y: view.isWide ? 0 : view.height - height
        color: view.isWide ? Theme.rail : Theme.bar
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
                    width: view.isWide ? navigation.width : navigation.width / 5
                    // A low window has less room for all of them below the sign.
                    height: view.isWide ? Math.min(72, (navigation.height - Theme.unit * 34) / 5) : 72
                    text: modelData.text
                    symbol: modelData.symbol
                    isCurrent: view.current === modelData.tab
                    onClicked: view.models.content.selectedTab = modelData.tab
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
            id: stacks
            model: view.tabs
            Loader {
                id: tab
                required property var modelData
                readonly property bool isCurrent: view.current === tab.modelData.tab

                function visit() {
                    if (tab.isCurrent && tab.item === null)
                        // At its final size from the start, so that no page is laid out twice.
                        tab.setSource(Qt.resolvedUrl("../Style/NavigationStack.qml"), {
                            width: tab.width, height: tab.height, focus: true,
                            firstPage: tab.modelData.page, firstProperties: tab.modelData.properties
                        })
                }

                function openSearch(type: string) {
                    const stack = tab.item as NavigationStack
                    // A search over a search would find the same.
                    if (stack.currentItem.objectName === "searchPage")
                        stack.currentItem.forceActiveFocus(Qt.TabFocusReason)
                    else
                        stack.open(Qt.resolvedUrl(type === "" ? "../Search/SearchView.qml" : "../Search/FilteredSearchView.qml"),
                                   { model: view.models.makeSearch(type) })
                }

                anchors.fill: parent
                visible: tab.isCurrent
                focus: tab.isCurrent
                enabled: tab.isCurrent
                onIsCurrentChanged: tab.visit()
                Component.onCompleted: tab.visit()
                Connections {
                    target: view.models
                    enabled: tab.isCurrent
                    function onSearchWanted(type) { tab.openSearch(type) }
                }
            }
        }
    }
}
