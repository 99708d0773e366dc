import QtQuick
import Ondavia.LivePlayer
import Ondavia.Player
import Ondavia.Style

/// What lies over a channel's picture while it is steered. Over the picture alone on the screen the channel's name
/// heads it, and brightness and volume stand at its sides.
FocusScope {
    id: controls
    required property LivePlayerViewModel model
    /// What stands in the middle in the place of the button.
    property bool isWaiting: false
    property bool hidesMiddle: false
    readonly property bool hasError: controls.model.error !== ""
    readonly property bool isFull: controls.model.isFullscreen
    readonly property real margin: controls.isFull ? Theme.marginFor(controls.width) : Theme.unit * 4
    readonly property bool isSmall: controls.height < 320
    /// Brightness and volume stand above the middle where their sliders would cover it.
    readonly property real sidesOffset: controls.width <= 640 ? -Math.max(0, Math.min(150, controls.height / 2 - 160)) : 0
    /// From the picture's edge to what stands beside a message: brightness and volume may stand there too.
    readonly property real edge: controls.isFull && controls.sidesOffset > -56 ? controls.margin + 44 : controls.margin
    /// What a message leaves free at either side.
    readonly property real sides: controls.edge + next.width

    /// The keyboard steps in.
    function takeFocus() {
        (controls.hasError || controls.isWaiting ? next : playPause).forceActiveFocus(Qt.TabFocusReason)
    }

    Scrims {
        anchors.fill: parent
        // A message lies on a veil of its own.
        visible: !controls.hasError
    }
    PlayerButton {
        id: back
        x: controls.margin - Theme.unit * 3
        y: Theme.unit * 2
        visible: !controls.isFull
        symbol: "chevron.left"
        symbolSize: 32
        text: Texts.get("player.minimize", "Minimizar")
        onClicked: controls.model.minimizeToMini()
    }
    Label {
        x: controls.margin
        width: ways.x - x - Theme.unit * 3
        anchors.verticalCenter: ways.verticalCenter
        visible: controls.isFull
        text: controls.model.title
        font.pixelSize: Theme.headingSize
        font.weight: Font.DemiBold
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
    }
    Row {
        id: ways
        anchors.right: parent.right
        anchors.rightMargin: controls.margin - Theme.unit * 3
        y: controls.isFull ? Theme.unit * 4 : back.y
        MuteButton { model: controls.model }
        PlayerButton {
            symbol: controls.model.isFavorite ? "heart.fill" : "heart"
            text: controls.model.isFavorite ? Texts.get("favorites.remove", "Remover dos favoritos")
                : Texts.get("favorites.add", "Adicionar aos favoritos")
            onClicked: controls.model.toggleFavorite()
        }
        PlayerButton {
            symbol: "gearshape"
            text: Texts.get("player.settings", "Definições")
            onClicked: controls.model.openSettings()
        }
    }

    Row {
        id: middle
        anchors.centerIn: parent
        visible: !controls.hidesMiddle
        spacing: controls.isFull && controls.width >= Theme.wideWindow ? Theme.unit * 12 : Theme.unit * 6
        PlayerButton {
            anchors.verticalCenter: parent.verticalCenter
            hasDisc: true
            diameter: controls.isSmall ? 48 : 60
            symbolSize: Math.round(diameter * 0.6)
            symbol: "backward.end.fill"
            text: Texts.get("live.previous", "Canal anterior")
            onClicked: controls.model.switchToPreviousChannel()
        }
        Item {
            anchors.verticalCenter: parent.verticalCenter
            // Beside a message they step aside, in a narrow picture as far as its edges.
            width: controls.hasError ? Math.min(440, controls.width - (controls.sides + middle.spacing) * 2)
                : controls.isWaiting ? 240 : playPause.width
            height: playPause.height
            PlayPauseButton {
                id: playPause
                anchors.centerIn: parent
                focus: true
                visible: !controls.hasError && !controls.isWaiting
                diameter: controls.isSmall ? 64 : 80
                model: controls.model
            }
        }
        PlayerButton {
            id: next
            anchors.verticalCenter: parent.verticalCenter
            hasDisc: true
            diameter: controls.isSmall ? 48 : 60
            symbolSize: Math.round(diameter * 0.6)
            symbol: "forward.end.fill"
            text: Texts.get("live.next", "Canal seguinte")
            onClicked: controls.model.switchToNextChannel()
        }
    }
    DraggableSliderButton {
        x: controls.margin - Theme.unit * 2
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: controls.sidesOffset
        visible: controls.isFull
        icon: "sun.max.fill"
        text: Texts.get("player.brightness", "Brilho")
        model: controls.model.levels.brightness
    }
    DraggableSliderButton {
        anchors.right: parent.right
        anchors.rightMargin: controls.margin - Theme.unit * 2
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: controls.sidesOffset
        visible: controls.isFull
        icon: "speaker.wave.2.fill"
        opensToTheRight: false
        text: Texts.get("player.volume", "Volume")
        model: controls.model.levels.volume
    }
    Column {
        x: controls.margin
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.unit * 4
        width: controls.width - x * 2 - Theme.controlHeight - Theme.unit * 2
        spacing: Theme.unit * 2
        visible: controls.model.isRecording
        Label {
            width: parent.width
            visible: !controls.isSmall
            text: controls.model.recordingTitle
            elide: Text.ElideRight
        }
        Button {
            text: Texts.get("live.returnToLive", "Voltar ao direto")
            symbol: "arrow.clockwise"
            kind: Button.Secondary
            // They fade as one.
            opacity: 1
            focusPolicy: Qt.TabFocus
            onClicked: controls.model.returnToLive()
        }
    }
    PlayerButton {
        anchors.right: parent.right
        anchors.rightMargin: controls.margin - Theme.unit * 3
        anchors.bottom: parent.bottom
        anchors.bottomMargin: controls.isFull ? Theme.unit * 4 : Theme.unit * 2
        symbol: controls.isFull ? "arrow.down.right.and.arrow.up.left" : "arrow.up.left.and.arrow.down.right"
        text: controls.isFull ? Texts.get("player.leaveFullScreen", "Sair do ecrã inteiro")
            : Texts.get("player.keys.fullScreen", "Ecrã inteiro")
        onClicked: controls.model.toggleFullScreen()
    }
}
