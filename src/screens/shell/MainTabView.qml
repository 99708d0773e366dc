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
        { text: Texts.get("tab.home", "Inicio"), symbol: "house.fill", page: homePage },
        { text: Texts.get("tab.tv", "TV"), symbol: "tv.fill", page: livePage },
        { text: Texts.get("tab.movies", "Filmes"), symbol: "film.fill", page: moviesPage },
        { text: Texts.get("tab.series", "Series"), symbol: "play.rectangle.on.rectangle.fill", page: seriesPage },
        { text: Texts.get("tab.favorites", "Favoritos"), symbol: "heart.fill", page: favoritesPage }
    ]

    Component {
        id: homePage
        HomeView {
            models: view.models
        }
    }
    Component {
        id: livePage
        LiveView {
            model: view.models.live
        }
    }
    Component {
        id: moviesPage
        MoviesView {
            model: view.models.movies
        }
    }
    Component {
        id: seriesPage
        EmptyStateView {
            icon: "play.rectangle.on.rectangle.fill"
            title: Texts.get("series.title", "Series")
            message: Texts.get("series.notYet", "As séries ainda não podem ser vistas nesta versão.")
        }
    }
    Component {
        id: favoritesPage
        EmptyStateView {
            icon: "heart.fill"
            title: Texts.get("tab.favorites", "Favoritos")
            message: Texts.get("favorites.notYet", "Os favoritos ainda não podem ser guardados nesta versão.")
        }
    }

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

                anchors.fill: parent
                active: false
                visible: tab.isCurrent
                focus: tab.isCurrent
                enabled: tab.isCurrent
                onIsCurrentChanged: if (tab.isCurrent) tab.active = true
                Component.onCompleted: if (tab.isCurrent) tab.active = true
                sourceComponent: NavigationStack {
                    objectName: "stack" + tab.index
                    initialItem: tab.modelData.page
                    focus: true
                }
            }
        }
    }
}
