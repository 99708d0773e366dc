import QtQuick
import Ondavia.Player
import Ondavia.Style

/// What lies over the picture while it is steered: who plays and the ways out above, play and skips in the
/// middle, position and the rest below, brightness and volume at the sides.
FocusScope {
    id: controls
    required property PlayerViewModel model
    /// Something else stands in the middle.
    property bool hidesMiddle: false
    readonly property real margin: Theme.marginFor(controls.width)
    /// Brightness and volume stand above the middle where their sliders would cover it.
    readonly property real sidesOffset: controls.width < 600 ? -Math.max(0, Math.min(150, controls.height / 2 - 160)) : 0

    /// From the bottom to above the seek bar.
    readonly property real bottomHeight: controls.height - seekBar.y

    /// The keyboard steps in.
    function takeFocus() {
        if (!controls.hidesMiddle)
            playPause.forceActiveFocus(Qt.TabFocusReason)
        else
            close.forceActiveFocus(Qt.TabFocusReason)
    }
    /// Whether an arrow key steers the film here, and does not lead to another control.
    function steersWith(key: int): bool {
        return seekBar.activeFocus && (key === Qt.Key_Left || key === Qt.Key_Right)
    }

    Scrims { anchors.fill: parent }

    PlayerButton {
        id: close
        x: controls.margin - Theme.unit * 3
        y: Theme.unit * 4
        symbol: "xmark"
        symbolSize: 28
        text: Texts.get("common.close", "Fechar")
        onClicked: controls.model.close()
    }
    Column {
        anchors.left: close.right
        anchors.leftMargin: Theme.unit * 2
        anchors.right: ways.left
        anchors.rightMargin: Theme.unit * 2
        anchors.verticalCenter: close.verticalCenter
        spacing: Theme.unit / 2
        Label {
            width: parent.width
            text: controls.model.title
            font.pixelSize: Theme.headingSize
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            maximumLineCount: controls.width < Theme.wideWindow && controls.model.episodeLine === "" ? 2 : 1
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            visible: text !== ""
            text: controls.model.episodeLine
            elide: Text.ElideRight
        }
    }
    Row {
        id: ways
        anchors.right: parent.right
        anchors.rightMargin: controls.margin - Theme.unit * 3
        y: close.y
        PlayerButton {
            symbol: "pip.enter"
            text: Texts.get("player.minimize", "Minimizar")
            onClicked: controls.model.minimizeToMini()
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
        spacing: controls.width < Theme.wideWindow ? Theme.unit * 6 : Theme.unit * 12
        SkipButton {
            anchors.verticalCenter: parent.verticalCenter
            symbol: controls.model.skips.backSymbol
            text: Texts.get("player.skipBack", "Recuar %1 segundos").arg(controls.model.skips.skipInterval)
            onClicked: controls.model.skips.back()
        }
        PlayPauseButton {
            id: playPause
            anchors.verticalCenter: parent.verticalCenter
            focus: true
            model: controls.model
        }
        SkipButton {
            anchors.verticalCenter: parent.verticalCenter
            symbol: controls.model.skips.forwardSymbol
            text: Texts.get("player.skipForward", "Avançar %1 segundos").arg(controls.model.skips.skipInterval)
            onClicked: controls.model.skips.forward()
        }
    }
    DraggableSliderButton {
        x: controls.margin - Theme.unit * 2
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: controls.sidesOffset
        icon: "sun.max.fill"
        text: Texts.get("player.brightness", "Brilho")
        model: controls.model.levels.brightness
    }
    DraggableSliderButton {
        anchors.right: parent.right
        anchors.rightMargin: controls.margin - Theme.unit * 2
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: controls.sidesOffset
        icon: "speaker.wave.2.fill"
        opensToTheRight: false
        text: Texts.get("player.volume", "Volume")
        model: controls.model.levels.volume
    }

    TabularText {
        id: position
        visible: seekBar.visible
        x: controls.margin
        anchors.verticalCenter: seekBar.verticalCenter
        text: controls.model.seekBar.positionText
    }
    VODSeekBar {
        id: seekBar
        anchors.left: position.right
        anchors.leftMargin: Theme.unit * 4
        anchors.right: duration.left
        anchors.rightMargin: Theme.unit * 4
        anchors.bottom: below.top
        model: controls.model.seekBar
        onStepped: forwards => controls.model.skips.step(forwards)
    }
    TabularText {
        id: duration
        visible: seekBar.visible
        anchors.right: parent.right
        anchors.rightMargin: controls.margin
        anchors.verticalCenter: seekBar.verticalCenter
        text: controls.model.seekBar.durationText
        color: Theme.textMuted
    }

    Row {
        id: below
        x: controls.margin - Theme.unit * 3
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.unit * 4
        height: Theme.controlHeight
        spacing: Theme.unit * 2
        MuteButton { model: controls.model }
        Pill {
            visible: text !== ""
            anchors.verticalCenter: parent.verticalCenter
            text: controls.model.speedText
            color: Theme.disc
        }
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: controls.margin - Theme.unit * 3
        anchors.bottom: below.bottom
        height: below.height
        spacing: Theme.unit * 2
        Button {
            visible: controls.model.offersNextEpisode
            text: Texts.get("player.nextEpisode", "Proximo episodio")
            symbol: "forward.end.fill"
            kind: Button.Secondary
            // They fade as one.
            opacity: 1
            focusPolicy: Qt.TabFocus
            onClicked: controls.model.playNextEpisode()
        }
        PlayerButton {
            readonly property bool fills: controls.Window.visibility === Window.FullScreen
            symbol: fills ? "arrow.down.right.and.arrow.up.left" : "arrow.up.left.and.arrow.down.right"
            text: fills ? Texts.get("player.leaveFullScreen", "Sair do ecrã inteiro")
                : Texts.get("player.keys.fullScreen", "Ecrã inteiro")
            onClicked: controls.model.toggleFullScreen()
        }
    }
}
