import QtQuick
import Ondavia.Player
import Ondavia.Style

PlayerButton {
    id: button
    required property PlayerScreen model

    symbol: button.model.isMuted ? "speaker.slash.fill" : "speaker.wave.2.fill"
    text: button.model.isMuted ? Texts.get("player.unmute", "Ligar o som") : Texts.get("player.mute", "Silenciar")
    onClicked: button.model.toggleMute()
}
