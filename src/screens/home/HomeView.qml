pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Home
import Ondavia.Style

/// The first page: a welcome that leads to the sign-in step, or what the catalogue holds.
FocusScope {
    id: view
    required property HomeViewModel model
    readonly property real margin: Theme.marginFor(view.width)
    readonly property bool isWide: view.width >= 720
    readonly property bool lacksAccount: !view.model.hasAccount && !view.model.isAwaitingAccount

    WaveBackdrop {
        anchors.fill: parent
        horizon: 0.6
    }

    ScrollPage {
        id: flick
        anchors.fill: parent
        contentHeight: Math.max(height, page.implicitHeight + view.margin * 2)

        Column {
            id: page
            x: view.margin
            y: Math.max(view.margin, (flick.height - implicitHeight) * 0.42)
            width: Math.min(flick.width - view.margin * 2, 960)
            spacing: Theme.unit * 5

            Wordmark { size: 24 }
            Label {
                width: parent.width
                text: view.model.title
                font.pixelSize: Theme.titleSize
                font.weight: Font.Bold
                wrapMode: Text.Wrap
                Accessible.role: Accessible.Heading
            }
            Label {
                width: Math.min(parent.width, 560)
                text: view.model.message
                color: Theme.textMuted
                lineHeight: 1.35
                wrapMode: Text.Wrap
            }
            Grid {
                visible: view.model.hasCatalogue
                width: parent.width
                topPadding: Theme.unit * 2
                columns: view.isWide ? 3 : 1
                spacing: Theme.unit * 4
                Repeater {
                    model: [
                        {
                            text: Texts.get("home.channels", "Canais"), symbol: "tv.fill",
                            open: () => view.model.openLive()
                        },
                        {
                            text: Texts.get("tab.movies", "Filmes"), symbol: "film.fill",
                            open: () => view.model.openMovies()
                        },
                        {
                            text: Texts.get("tab.series", "Series"), symbol: "play.rectangle.on.rectangle.fill",
                            open: () => view.model.openSeries()
                        }
                    ]
                    StatTile {
                        required property var modelData
                        required property int index
                        focus: view.model.hasCatalogue && index === 0
                        width: view.isWide ? (page.width - Theme.unit * 8) / 3 : page.width
                        height: view.isWide ? 120 : 88
                        text: modelData.text
                        symbol: modelData.symbol
                        figure: view.model.totals[index]
                        onClicked: modelData.open()
                    }
                }
            }
            Flow {
                width: parent.width
                topPadding: Theme.unit
                spacing: Theme.unit * 3
                Spinner { running: view.model.isAwaitingAccount }
                Button {
                    visible: view.lacksAccount
                    focus: view.lacksAccount
                    text: Texts.get("home.addProvider", "Adicionar provedor")
                    symbol: "plus"
                    onClicked: view.model.addProvider()
                }
                Button {
                    visible: view.model.lacksCatalogue
                    focus: view.model.lacksCatalogue
                    text: Texts.get("home.retry", "Tentar novamente")
                    symbol: "arrow.clockwise"
                    onClicked: view.model.load()
                }
                Button {
                    visible: view.model.lacksCatalogue
                    text: Texts.get("home.changeAccount", "Mudar de conta")
                    kind: Button.Secondary
                    symbol: "person"
                    onClicked: view.model.addProvider()
                }
            }
        }
    }
    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: view.margin - Theme.unit * 3
        y: Theme.unit * 6
        visible: view.model.hasCatalogue
        symbol: "magnifyingglass"
        text: Texts.get("search.title", "Pesquisar")
        onClicked: view.model.search()
    }
}
