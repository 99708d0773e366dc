pragma ComponentBehavior: Bound
import QtQuick
import Ondavia

/// The first page: a welcome that leads to the sign-in step, or what the catalogue holds.
FocusScope {
    id: view
    required property ScreenModels models
    readonly property HomeViewModel model: view.models.home
    readonly property real margin: Theme.marginFor(view.width)
    readonly property bool isWide: view.width >= 720

    WaveBackdrop {
        anchors.fill: parent
        horizon: 0.6
    }

    Flickable {
        id: flick
        anchors.fill: parent
        contentHeight: Math.max(height, page.implicitHeight + view.margin * 2)
        boundsBehavior: Flickable.StopAtBounds

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
                        { text: Texts.get("home.channels", "Canais"), symbol: "tv.fill", tab: 1 },
                        { text: Texts.get("tab.movies", "Filmes"), symbol: "film.fill", tab: 2 },
                        { text: Texts.get("tab.series", "Series"), symbol: "play.rectangle.on.rectangle.fill", tab: 3 }
                    ]
                    StatTile {
                        required property var modelData
                        required property int index
                        width: view.isWide ? (page.width - Theme.unit * 8) / 3 : page.width
                        height: view.isWide ? 120 : 88
                        text: modelData.text
                        symbol: modelData.symbol
                        figure: view.model.totals[index]
                        onClicked: view.models.content.selectedTab = modelData.tab
                    }
                }
            }
            Flow {
                width: parent.width
                topPadding: Theme.unit
                spacing: Theme.unit * 3
                Button {
                    visible: !view.model.hasAccount
                    focus: !view.model.hasAccount
                    text: Texts.get("home.addProvider", "Adicionar provedor")
                    symbol: "plus"
                    onClicked: view.models.signIn.open()
                }
                Button {
                    visible: view.model.hasAccount && !view.model.hasCatalogue
                    text: Texts.get("home.retry", "Tentar novamente")
                    symbol: "arrow.clockwise"
                    onClicked: view.models.content.start()
                }
                Button {
                    visible: view.model.hasAccount && !view.model.hasCatalogue
                    text: Texts.get("home.changeAccount", "Mudar de conta")
                    kind: Button.Secondary
                    symbol: "person"
                    onClicked: view.models.signIn.open()
                }
            }
        }
    }
}
