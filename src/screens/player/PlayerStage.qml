import QtQuick
import Ondavia.Player
import Ondavia.Style

/// The picture of a player, and what stands in its place while there is none: what it waits for, or what went
/// wrong. Keys steer the player while the picture has the focus.
FocusScope {
    id: stage
    required property PlayerScreen model
    /// Nothing else shall stand in the middle.
    readonly property bool needsMiddle: stage.isWaiting || stage.model.error !== ""
    readonly property bool isWaiting: stage.model.isBuffering && !stage.model.isPlaying && stage.model.error === ""
    readonly property bool hasFocus: picture.activeFocus
    /// Too little room for large words.
    readonly property bool isSmall: stage.height < 320
    /// How much of the picture's bottom controls lie over.
    property real coveredBottom: 0
    /// How much of its sides a message leaves free.
    property real messageMargin: 0
    /// Lies right over the picture.
    default property alias overlays: overlay.data
    signal tapped(real x, real y)
    /// With a mouse, and after both of its taps.
    signal doubleClicked()

    function takeFocus() {
        picture.forceActiveFocus()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.stage
    }
    PlayerSurface {
        anchors.fill: parent
        manager: stage.model.manager
        coveredBottom: stage.coveredBottom
    }
    Item {
        id: overlay
        anchors.fill: parent
    }
    FocusScope {
        id: picture
        objectName: "stage"
        anchors.fill: parent
        focus: true
        Accessible.role: Accessible.Pane
        Accessible.name: stage.model.title
        TapHandler {
            onTapped: eventPoint => stage.tapped(eventPoint.position.x, eventPoint.position.y)
        }
        TapHandler {
            acceptedDevices: PointerDevice.Mouse
            onDoubleTapped: stage.doubleClicked()
        }
        WheelHandler {
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: event => stage.model.levels.changeVolume(event.angleDelta.y / 120)
        }
    }

    Rectangle {
        anchors.centerIn: parent
        visible: spinner.running
        width: stage.isWaiting ? Math.max(200, preparing.width + Theme.unit * 12, slow.visible ? slow.width + Theme.unit * 12 : 0) : 124
        height: stage.isWaiting ? (slow.visible ? 176 : 148) : width
        radius: stage.isWaiting ? Theme.cardRadius : width / 2
        scale: stage.isSmall ? 0.8 : 1
        color: Theme.disc
        Spinner {
            id: spinner
            anchors.horizontalCenter: parent.horizontalCenter
            y: stage.isWaiting ? Theme.unit * 6 : (parent.height - height) / 2
            width: stage.isWaiting ? 56 : 100
            height: width
            running: stage.model.isBuffering && stage.model.error === ""
        }
        Label {
            id: preparing
            anchors.horizontalCenter: parent.horizontalCenter
            y: 104
            visible: stage.isWaiting
            text: Texts.get("player.preparing", "A preparar reproducao...")
        }
        Label {
            id: slow
            anchors.horizontalCenter: parent.horizontalCenter
            y: 132
            visible: stage.isWaiting && stage.model.isSlow
            text: Texts.get("player.slow", "O servidor está a demorar.")
            font.pixelSize: Theme.captionSize
            color: Theme.textMuted
        }
    }
    // Else a picture that stands still looks like one that hangs.
    Rectangle {
        anchors.centerIn: parent
        visible: !stage.model.isPlaying && !stage.model.isBuffering && stage.model.error === ""
            && !stage.model.controls.showControls
        width: 64
        height: width
        radius: width / 2
        color: Theme.disc
        Icon {
            anchors.centerIn: parent
            symbol: "pause.fill"
            size: 32
        }
    }
    Rectangle {
        anchors.fill: parent
        visible: stage.model.error !== ""
        color: Theme.errorVeil
        EmptyStateView {
            anchors.fill: parent
            anchors.leftMargin: stage.messageMargin
            anchors.rightMargin: stage.messageMargin
            isLow: stage.isSmall
            icon: "exclamationmark.triangle.fill"
            title: Texts.get("player.cannotPlay", "Não foi possível reproduzir")
            message: stage.model.error
            Button {
                text: Texts.get("player.retry", "Tentar novamente")
                symbol: "arrow.clockwise"
                focusPolicy: Qt.TabFocus
                onVisibleChanged: if (visible) forceActiveFocus()
                onClicked: stage.model.retry()
            }
        }
    }
}
