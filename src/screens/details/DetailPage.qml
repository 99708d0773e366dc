pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Details
import Ondavia.Style

/// The page of a film or of a series: a picture that fades into it, the poster, the facts, one main button, and
/// below them whatever the title has more.
FocusScope {
    id: page
    required property DetailViewModel detail
    /// In the place of a missing poster.
    required property string symbol
    /// Of what stands below the facts.
    property real furtherLength: 0
    default property alias further: furtherArea.data
    readonly property alias scroll: flick
    readonly property real furtherTop: furtherArea.y

    readonly property bool isWide: page.width >= 720
    readonly property real margin: Theme.marginFor(page.width)
    readonly property real backdropHeight: Math.round(page.isWide ? Math.min(page.height * 0.7, page.width * 0.5)
        : page.width * 9 / 16 + Theme.unit * 25)
    /// A picture of its own is let through above the words; colours alone are no reason for so much room.
    readonly property real factsTop: Math.round(!page.detail.hasBackdrop ? Theme.unit * 20
        : page.isWide ? page.backdropHeight * 0.42 : page.width * 0.32)
    readonly property real posterWidth: Math.round(page.isWide
        ? Math.max(160, Math.min(400, page.height * 0.3, page.width * 0.25)) : Math.min(128, page.width * 0.3))
    /// Some 75 letters: more are hard to follow from line to line.
    readonly property real measure: 600

    function showSight() {
        if (page.detail !== null)
            page.detail.isInSight = page.visible
    }
    Component.onCompleted: page.showSight()
    onVisibleChanged: page.showSight()

    // Where no control lies in the direction of an arrow, there may still be something to read.
    Keys.onPressed: event => event.accepted = page.moveOrScroll(event.key)
    function moveOrScroll(key: int): bool {
        if (key !== Qt.Key_Up && key !== Qt.Key_Down)
            return false
        if (FocusGuide.move(page, key))
            return true
        const before = flick.contentY
        const step = (key === Qt.Key_Down ? 1 : -1) * Theme.unit * 30
        flick.contentY = Math.max(0, Math.min(flick.lastY, before + step))
        return flick.contentY !== before
    }

    ScrollPage {
        id: flick
        objectName: "detailScroll"
        anchors.fill: parent
        contentHeight: furtherArea.y + page.furtherLength + page.margin

        DetailBackdrop {
            width: flick.width
            height: page.backdropHeight
            picture: page.detail.backdrop
            poster: page.detail.poster
            isBare: !page.detail.hasBackdrop && !page.detail.hasPoster
            clearness: page.detail.hasBackdrop ? 0.85 : 0.55
        }
        PictureView {
            id: poster
            objectName: "detailPoster"
            x: page.margin
            y: page.factsTop
            width: page.posterWidth
            height: width * 1.5
            source: page.detail.poster
            symbol: page.symbol
            radius: Theme.cardRadius
            RoundedCorners { anchors.fill: parent }
        }
        Column {
            id: head
            x: poster.x + poster.width + (page.isWide ? Theme.unit * 10 : Theme.unit * 4)
            y: poster.y
            width: Math.min(page.width - x - page.margin, page.isWide ? 800 : Infinity)
            spacing: Theme.unit * 3

            Label {
                width: parent.width
                text: page.detail.title
                font.pixelSize: page.isWide ? Theme.titleSize : Theme.headingSize
                font.weight: Font.Bold
                wrapMode: Text.Wrap
                maximumLineCount: page.isWide ? 3 : 5
                elide: Text.ElideRight
                Accessible.role: Accessible.Heading
            }
            Flow {
                width: parent.width
                spacing: Theme.unit * 2
                Repeater {
                    model: page.detail.badges
                    MetaBadge {
                        required property var modelData
                        width: Math.min(implicitWidth, head.width)
                        text: modelData.text
                        highlight: modelData.highlight
                    }
                }
            }
        }
        Column {
            id: body
            readonly property real headBottom: head.y + head.height
            x: page.isWide ? head.x : page.margin
            y: page.isWide ? body.headBottom + Theme.unit * 6
                : Math.max(body.headBottom, poster.y + poster.height) + Theme.unit * 5
            width: Math.min(page.width - x - page.margin, page.isWide ? page.measure : Infinity)
            spacing: Theme.unit * 5

            Row {
                id: actions
                width: parent.width
                spacing: Theme.unit * 3
                Button {
                    objectName: "detailPlay"
                    focus: true
                    width: page.isWide ? Math.max(200, implicitWidth) : actions.width - favorite.width - actions.spacing
                    opacity: page.detail.canPlay ? 1 : 0.5
                    symbol: "play.fill"
                    text: page.detail.playText
                    onClicked: page.detail.play()
                }
                SecondaryAction {
                    id: favorite
                    objectName: "detailFavorite"
                    symbol: isActive ? "heart.fill" : "heart"
                    text: Texts.get("detail.favorite", "Favorito")
                    isActive: page.detail.isFavorite
                    onClicked: page.detail.toggleFavorite()
                }
            }
            PlotText {
                width: parent.width
                visible: page.detail.plot !== ""
                detail: page.detail
            }
            DetailInfoRow {
                width: parent.width
                visible: value !== ""
                title: Texts.get("detail.cast", "Elenco")
                value: page.detail.cast
            }
            DetailInfoRow {
                width: parent.width
                visible: value !== ""
                title: Texts.get("detail.director", "Realizador")
                value: page.detail.director
            }
        }
        Item {
            id: furtherArea
            x: page.margin
            y: Math.ceil(Math.max(poster.y + poster.height, body.y + body.height) + Theme.unit * 8)
            width: page.width - page.margin * 2
        }
    }
    // What is scrolled up fades away behind the button.
    Rectangle {
        width: page.width
        height: Theme.unit * 24
        opacity: Math.min(1, flick.contentY / height)
        visible: opacity > 0
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.background }
            GradientStop { position: 1; color: Theme.backgroundClear }
        }
    }
    Rectangle {
        anchors.fill: backButton
        radius: height / 2
        color: Theme.disc
    }
    IconButton {
        id: backButton
        x: page.margin - Theme.unit
        y: Theme.unit * 4
        symbol: "chevron.left"
        symbolSize: 32
        text: Texts.get("common.back", "Voltar")
        onClicked: {
            const stack = page.parent as NavigationStack
            stack.goBack()
        }
    }
}
