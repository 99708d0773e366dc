import QtQuick
import Ondavia.Player
import Ondavia.Style

/// The large one in the middle of a picture.
PlayerButton {
    id: button
    required property PlayerScreen model

    hasDisc: true
    diameter: 80
    symbolSize: Math.round(button.diameter * 0.6)
    symbol: button.model.isPlaying ? "pause.fill" : "play.fill"
    text: button.model.isPlaying ? Texts.get("player.pause", "Pausa") : Texts.get("player.play", "Reproduzir")
    onClicked: button.model.togglePlayPause()
}
