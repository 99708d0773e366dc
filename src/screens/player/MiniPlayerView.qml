import QtQuick
import Ondavia.Player
import Ondavia.Style

/// The floating window in which playback carries on: a tap brings it back to the whole screen, a drag moves
/// it, and it settles at a side.
Item {
    id: view
    required property MiniPlayerViewModel model
    property bool isPlaced: false

    function place() {
        view.model.setContainer(view.width, view.height)
        view.isPlaced = true
    }
    Component.onCompleted: view.place()
    onWidthChanged: if (view.isPlaced) view.place()
    onHeightChanged: if (view.isPlaced) view.place()

    FocusScope {
        id: mini
        objectName: "miniPlayer"
        readonly property bool settles: view.isPlaced && !area.isDragging
        x: view.model.corner.x
        y: view.model.corner.y
        width: view.model.windowWidth
        height: view.model.windowHeight
        // A spring of response 0.3 s and damping fraction 0.75, in steps of 16 ms: (2π / 0.3)² × 0.016, and
        // 2 × 0.75 × 2π / 0.3 × 0.016.
        Behavior on x { enabled: mini.settles; SpringAnimation { spring: 7.02; damping: 0.503; epsilon: 0.25 } }
        Behavior on y { enabled: mini.settles; SpringAnimation { spring: 7.02; damping: 0.503; epsilon: 0.25 } }

        Rectangle {
            anchors.fill: parent
            anchors.margins: -1
            color: Theme.stage
            border.width: 1
            border.color: Theme.handle
        }
        PlayerSurface {
            anchors.fill: parent
            manager: view.model.manager
        }
        Rectangle {
            anchors.fill: parent
            gradient: Gradient {
                GradientStop { position: 0; color: Theme.scrimMiddle }
                GradientStop { position: 0.5; color: Theme.miniVeil }
                GradientStop { position: 1; color: Theme.scrimMiddle }
            }
        }
        MouseArea {
            id: area
            property point start
            property bool isDragging: false

            function way(mouse: var): point {
                const now = area.mapToItem(view, mouse.x, mouse.y)
                return Qt.point(now.x - area.start.x, now.y - area.start.y)
            }
            anchors.fill: parent
            activeFocusOnTab: true
            preventStealing: true
            // What lies below is not pointed at.
            hoverEnabled: true
            cursorShape: Qt.PointingHandCursor
            Accessible.role: Accessible.Button
            Accessible.name: Texts.get("mini.expand", "Voltar ao ecrã inteiro") + ", " + view.model.name
            Accessible.onPressAction: view.model.expand()
            Keys.onReturnPressed: view.model.expand()
            Keys.onEnterPressed: view.model.expand()
            Keys.onSpacePressed: view.model.expand()
            onPressed: mouse => {
                area.start = area.mapToItem(view, mouse.x, mouse.y)
                area.isDragging = false
            }
            onPositionChanged: mouse => {
                if (!area.pressed)
                    return
                const moved = area.way(mouse)
                area.isDragging = area.isDragging || Math.hypot(moved.x, moved.y) >= view.model.dragDistance
                if (area.isDragging)
                    view.model.drag(moved.x, moved.y)
            }
            onReleased: mouse => {
                if (!area.isDragging) {
                    view.model.expand()
                    return
                }
                const moved = area.way(mouse)
                area.isDragging = false
                view.model.endDrag(moved.x, moved.y)
            }
            onCanceled: {
                if (area.isDragging)
                    view.model.endDrag(0, 0)
                area.isDragging = false
            }
            FocusRing { control: area; radius: Theme.unit }
        }
        Label {
            x: Theme.unit * 2
            y: Theme.unit * 2
            width: parent.width - close.width - Theme.unit * 4
            text: view.model.name
            font.pixelSize: Theme.captionSize
            font.weight: Font.Medium
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        PlayerButton {
            id: close
            objectName: "miniClose"
            anchors.right: parent.right
            anchors.rightMargin: Theme.unit
            y: Theme.unit
            diameter: 24
            symbolSize: 18
            symbol: "xmark"
            text: Texts.get("common.close", "Fechar")
            onClicked: view.model.close()
        }
        Spinner {
            anchors.centerIn: parent
            scale: 0.8
            running: view.model.isWaiting
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.unit
            spacing: Theme.unit * 4
            PlayerButton {
                diameter: 28
                symbolSize: 22
                symbol: view.model.isPlaying ? "pause.fill" : "play.fill"
                text: view.model.isPlaying ? Texts.get("player.pause", "Pausa") : Texts.get("player.play", "Reproduzir")
                onClicked: view.model.togglePlayPause()
            }
            PlayerButton {
                diameter: 28
                symbolSize: 20
                symbol: view.model.isMuted ? "speaker.slash.fill" : "speaker.wave.2.fill"
                text: view.model.isMuted ? Texts.get("player.unmute", "Ligar o som") : Texts.get("player.mute", "Silenciar")
                onClicked: view.model.toggleMute()
            }
        }
    }
}
