pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Browse
import Ondavia.Search
import Ondavia.Style

/// What both searches show: a field, and below it what was found, by groups. A tap on a row opens it.
FocusScope {
    id: page
    required property SearchViewModel model
    property alias canGoBack: header.canGoBack
    property alias actions: header.actions
    readonly property real margin: Theme.marginFor(page.width)
    /// Longer lines than this are not followed by an eye.
    readonly property real lineLength: Math.min(page.width - page.margin * 2, 880)

    objectName: "searchPage"

    function leave() {
        const stack = page.parent as NavigationStack
        stack.goBack()
    }

    Keys.onPressed: event => {
        event.accepted = FocusGuide.isSearch(event.key, event.modifiers)
        if (event.accepted)
            field.begin()
    }
    Component.onDestruction: if (page.model !== null) page.model.close()

    SectionHeader {
        id: header
        x: page.margin
        y: Theme.unit * 3
        width: page.width - page.margin * 2
        title: page.model.title
        onBack: page.leave()
    }
    SearchField {
        id: field
        objectName: "searchField"
        anchors.top: header.bottom
        x: page.margin
        width: page.lineLength
        focus: true
        name: page.model.title
        placeholder: Texts.get("search.placeholder", "Pesquisar...")
        text: page.model.searchText
        onEdited: text => page.model.searchText = text
        onAccepted: page.model.debouncedSearch()
    }
    ChipRow {
        id: chips
        objectName: "searchChips"
        anchors.top: field.bottom
        anchors.topMargin: Theme.unit * 2
        width: page.width
        height: count > 0 ? 60 : 0
        leftMargin: page.margin
        rightMargin: page.margin
        Accessible.name: Texts.get("search.types", "Tipos")
        model: page.model.chips
        chosen: page.model.chips.selectedRow
        onPicked: index => page.model.pickChip(index)
        delegate: FilterChip {
            id: chip
            required property int index
            y: Theme.unit
            isSelected: chip.index === chips.chosen
            onClicked: {
                chips.currentIndex = chip.index
                chips.picked(chip.index)
            }
        }
    }
    Item {
        id: content
        anchors.top: chips.bottom
        anchors.bottom: parent.bottom
        width: page.width

        Spinner {
            anchors.centerIn: parent
            running: page.model.content === SearchViewModel.Searching
        }
        EmptyStateView {
            anchors.fill: parent
            visible: page.model.content === SearchViewModel.Hint
            isLow: height < 280
            icon: "magnifyingglass"
            title: Texts.get("search.title", "Pesquisar")
            message: Texts.get("search.hint", "Escreve para encontrar canais, filmes ou series")
        }
        EmptyStateView {
            anchors.fill: parent
            visible: page.model.content === SearchViewModel.NoResults
            isLow: height < 280
            icon: "magnifyingglass"
            title: Texts.get("search.noResults", "Sem resultados")
        }
        Label {
            id: total
            x: page.margin
            width: page.lineLength
            height: Theme.unit * 8
            visible: list.visible
            text: page.model.countText
            color: Theme.textMuted
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
        }
        GroupTitles { id: groups }
        RowList {
            id: list
            objectName: "searchResults"
            anchors.top: total.bottom
            anchors.bottom: parent.bottom
            x: page.margin
            width: page.lineLength
            visible: page.model.content === SearchViewModel.Results
            spacing: Theme.unit * 2
            bottomMargin: page.margin
            Accessible.name: page.model.countText
            model: page.model.rows
            section.property: "group"
            section.delegate: groups.title
            delegate: FocusScope {
                id: cell
                required property int index
                required property string name
                required property url picture
                required property string detail
                required property bool isLive
                required property string symbol

                function open() {
                    list.currentIndex = cell.index
                    page.model.open(cell.index)
                }
                width: list.width
                height: cell.isLive ? channel.implicitHeight : title.implicitHeight
                ChannelRowView {
                    id: channel
                    anchors.fill: parent
                    visible: cell.isLive
                    focus: cell.isLive
                    text: cell.name
                    picture: cell.isLive ? cell.picture : ""
                    onClicked: cell.open()
                }
                TitleRow {
                    id: title
                    anchors.fill: parent
                    visible: !cell.isLive
                    focus: !cell.isLive
                    text: cell.name
                    detail: cell.detail
                    picture: cell.isLive ? "" : cell.picture
                    symbol: cell.symbol
                    onClicked: cell.open()
                }
            }
        }
    }
    Connections {
        target: page.model
        // What had the focus has gone.
        function onContentChanged() {
            if (page.model.content !== SearchViewModel.Results && (list.focus || chips.focus))
                field.focus = true
        }
    }
    Connections {
        target: page.model.rows
        function onModelReset() {
            restarting.restart()
        }
    }
    // In the next turn: then the list has its new rows too.
    Timer {
        id: restarting
        interval: 0
        onTriggered: list.startAt(0)
    }
}
