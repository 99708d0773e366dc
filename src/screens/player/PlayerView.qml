import QtQuick
import Ondavia

/// The full-screen player: the picture, and controls that step back while it plays.
FocusScope {
    id: view
    required property PlayerViewModel model
    readonly property real margin: Theme.marginFor(view.width)
    readonly property bool showsControls: view.model.showsControls

    Keys.onEscapePressed: view.model.leave()
    Keys.onBackPressed: view.model.leave()
    Keys.onSpacePressed: view.model.togglePlayPause()
    onShowsControlsChanged: if (view.showsControls) playPause.forceActiveFocus()
    Accessible.role: Accessible.Pane
    Accessible.name: view.model.title

    Connections {
        target: FocusGuide
        function onKeyPressed() {
            view.model.wakeControls()
        }
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
    }
    PlayerSurface {
        anchors.fill: parent
        model: view.model
    }
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: view.showsControls ? Qt.ArrowCursor : Qt.BlankCursor
        onPositionChanged: view.model.wakeControls()
        onClicked: view.model.toggleControls()
        Accessible.ignored: true
    }

    Column {
        anchors.centerIn: parent
        spacing: Theme.unit * 4
        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 56
            height: 56
            running: view.model.isBuffering
        }
        Label {
            visible: view.model.isBuffering && !view.model.isPlaying
            text: Texts.get("player.preparing", "A preparar reproducao...")
            color: Theme.textMuted
        }
    }
    FocusScope {
        id: controls
        anchors.fill: parent
        focus: true
        enabled: view.showsControls
        opacity: view.showsControls ? 1 : 0
        visible: opacity > 0
        Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }

        Rectangle {
            width: parent.width
            height: 160
            gradient: Gradient {
                GradientStop { position: 0; color: Qt.rgba(0, 0, 0, 0.75) }
                GradientStop { position: 1; color: "transparent" }
            }
        }
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 200
            gradient: Gradient {
                GradientStop { position: 0; color: "transparent" }
                GradientStop { position: 1; color: Qt.rgba(0, 0, 0, 0.85) }
            }
        }
        EmptyStateView {
            anchors.fill: parent
            visible: view.model.error !== ""
            icon: "exclamationmark.triangle.fill"
            title: Texts.get("player.cannotPlay", "Não foi possível reproduzir")
            message: view.model.error
            Button {
                text: Texts.get("player.retry", "Tentar novamente")
                symbol: "arrow.clockwise"
                onClicked: view.model.retry()
            }
        }
        IconButton {
            id: back
            x: view.margin - Theme.unit * 3
            y: Theme.unit * 4
            symbol: "chevron.left"
            symbolSize: 32
            text: Texts.get("common.back", "Voltar")
            onClicked: view.model.leave()
        }
        Column {
            anchors.left: back.right
            anchors.leftMargin: Theme.unit * 2
            anchors.right: parent.right
            anchors.rightMargin: view.margin
            anchors.verticalCenter: back.verticalCenter
            spacing: Theme.unit / 2
            Label {
                width: parent.width
                text: view.model.title
                font.pixelSize: Theme.headingSize
                font.weight: Font.DemiBold
                elide: Text.ElideRight
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: view.model.subtitle
                color: Theme.textMuted
                elide: Text.ElideRight
            }
        }
        Row {
            id: bottom
            x: view.margin - Theme.unit * 2
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.unit * 5
            width: view.width - view.margin * 2 + Theme.unit * 4
            spacing: Theme.unit * 2
            IconButton {
                id: playPause
                focus: true
                anchors.verticalCenter: parent.verticalCenter
                diameter: 56
                symbolSize: 36
                symbol: view.model.isPlaying ? "pause.fill" : "play.fill"
                text: view.model.isPlaying ? Texts.get("player.pause", "Pausa") : Texts.get("player.play", "Reproduzir")
                onClicked: view.model.togglePlayPause()
            }
            IconButton {
                id: mute
                anchors.verticalCenter: parent.verticalCenter
                symbol: view.model.isMuted ? "speaker.slash.fill" : "speaker.wave.2.fill"
                text: view.model.isMuted ? Texts.get("player.unmute", "Ligar o som") : Texts.get("player.mute", "Silenciar")
                onClicked: view.model.toggleMute()
            }
            Label {
                id: position
                visible: view.model.canSeek
                anchors.verticalCenter: parent.verticalCenter
                text: view.model.positionText
            }
            SeekBar {
                visible: view.model.canSeek
                anchors.verticalCenter: parent.verticalCenter
                width: bottom.width - x - duration.width - Theme.unit * 4
                position0: view.model.position
                duration: view.model.duration
                onSought: seconds => view.model.seek(seconds)
            }
            Label {
                id: duration
                visible: view.model.canSeek
                anchors.verticalCenter: parent.verticalCenter
                text: view.model.durationText
                color: Theme.textMuted
            }
            Rectangle {
                visible: view.model.isLive
                anchors.verticalCenter: parent.verticalCenter
                width: liveLabel.width + Theme.unit * 5
                height: Theme.unit * 7
                radius: height / 2
                color: Qt.rgba(0.85, 0.16, 0.16, 0.9)
                Label {
                    id: liveLabel
                    anchors.centerIn: parent
                    text: Texts.get("AO VIVO", "AO VIVO")
                    font.pixelSize: Theme.captionSize
                    font.weight: Font.Bold
                }
            }
        }
    }
}
