pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Details
import Ondavia.Style

/// A series: its seasons to choose from, and the episodes of the chosen one.
DetailPage {
    id: view
    required property SeriesDetailViewModel model
    readonly property real seasonsHeight: seasons.count > 0 ? Theme.unit * 15 : 0

    objectName: "seriesDetail"
    detail: view.model
    symbol: "play.rectangle.fill"
    furtherLength: view.seasonsHeight + (episodes.count > 0 ? episodes.length : Theme.unit * 12)

    ChipRow {
        id: seasons
        objectName: "seasons"
        x: -view.margin
        width: view.width
        height: view.seasonsHeight
        leftMargin: view.margin
        rightMargin: view.margin
        Accessible.name: Texts.get("series.seasons", "Temporadas")
        model: view.model.seasons
        chosen: view.model.seasons.selectedRow
        onPicked: index => view.model.chooseSeason(index)
        // Of two seasons of one number both are chosen.
        delegate: Chip {
            id: season
            required property int index
            required property string name
            required property bool isSelected
            y: Theme.unit
            text: season.name
            highlighted: season.isSelected
            onClicked: {
                seasons.currentIndex = season.index
                seasons.picked(season.index)
            }
        }
    }
    Row {
        y: view.seasonsHeight
        visible: view.model.isLoading
        spacing: Theme.unit * 3
        Spinner {
            width: 24
            height: 24
            running: view.model.isLoading
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: Texts.get("series.loadingEpisodes", "A carregar episodios...")
            color: Theme.textMuted
        }
    }
    Label {
        y: view.seasonsHeight
        visible: !view.model.isLoading && episodes.count === 0
        text: Texts.get("series.noEpisodes", "Sem episódios")
        color: Theme.textMuted
    }
    EpisodeGrid {
        id: episodes
        objectName: "episodes"
        visible: !view.model.isLoading
        width: view.width - view.margin * 2 + gap
        episodes: view.model.episodes
        page: view.scroll
        firstRow: view.seasonsHeight
        firstRowOnPage: view.furtherTop + view.seasonsHeight
    }
}
