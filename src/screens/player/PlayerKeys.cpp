#include "screens/player/PlayerKeys.h"

#include "screens/player/PlayerScreen.h"
#include "style/Texts.h"

#include <algorithm>

namespace ondavia {

void PlayerKeys::bind(Binding binding) {
    m_bindings.push_back(std::move(binding));
}

void PlayerKeys::bindPlayback(PlayerScreen& player) {
    bind({{Qt::Key_Space, Qt::Key_K, Qt::Key_MediaPlay, Qt::Key_MediaPause, Qt::Key_MediaTogglePlayPause},
          textFor("player.keys.space", "Espaço") + QStringLiteral(", K"),
          textFor("player.keys.playPause", "Reproduzir ou pausar"),
          Repeat::No,
          [&player](int) { player.togglePlayPause(); },
          Layers::Any});
}

void PlayerKeys::bindSound(PlayerScreen& player) {
    bind({{Qt::Key_Up},
          QStringLiteral("↑"),
          textFor("player.keys.louder", "Aumentar o volume"),
          Repeat::Yes,
          [&player](int) { player.levels()->changeVolume(1); }});
    bind({{Qt::Key_Down},
          QStringLiteral("↓"),
          textFor("player.keys.quieter", "Baixar o volume"),
          Repeat::Yes,
          [&player](int) { player.levels()->changeVolume(-1); }});
    bind({{Qt::Key_M},
          QStringLiteral("M"),
          textFor("player.keys.mute", "Silenciar ou ligar o som"),
          Repeat::No,
          [&player](int) { player.toggleMute(); },
          Layers::Any});
}

void PlayerKeys::bindLayers(PlayerScreen& player) {
    bind({{Qt::Key_F},
          QStringLiteral("F"),
          textFor("player.keys.fullScreen", "Ecrã inteiro"),
          Repeat::No,
          [&player](int) { player.toggleFullScreen(); }});
    bind({{Qt::Key_S},
          QStringLiteral("S"),
          textFor("player.settings", "Definições"),
          Repeat::No,
          [&player](int) { player.showSettings() ? player.closeSettings() : player.openSettings(); },
          Layers::Any});
    bind({{Qt::Key_I},
          QStringLiteral("I"),
          textFor("information.title", "Informação"),
          Repeat::No,
          [&player](int) { player.information()->toggle(); },
          Layers::Any});
    bind({{Qt::Key_Question},
          QStringLiteral("?"),
          textFor("player.keys.list", "Esta lista"),
          Repeat::No,
          [&player](int) { player.setShowKeys(!player.showKeys()); },
          Layers::Any});
}

bool PlayerKeys::press(int key, bool isAutoRepeat) {
    const Binding* binding = find(key);
    if (binding == nullptr || (binding->layers == Layers::Below && m_isCovered())) {
        return false;
    }
    if (!isAutoRepeat || binding->repeat == Repeat::Yes) {
        // A copy: the key may end the view.
        const auto run = binding->run;
        run(key);
    }
    return true;
}

const PlayerKeys::Binding* PlayerKeys::find(int key) const {
    const auto found = std::ranges::find_if(
        m_bindings, [key](const Binding& binding) { return std::ranges::count(binding.keys, key) > 0; });
    return found != m_bindings.end() ? &*found : nullptr;
}

QVariantList PlayerKeys::lines() const {
    QVariantList lines;
    for (const Binding& binding : m_bindings) {
        lines.append(
            QVariantMap{{QStringLiteral("keys"), binding.names}, {QStringLiteral("action"), binding.action}});
    }
    lines.append(
        QVariantMap{{QStringLiteral("keys"), QStringLiteral("Esc")}, {QStringLiteral("action"), m_leaving}});
    return lines;
}

} // namespace ondavia
