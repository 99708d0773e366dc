#include "screens/player/PlayerKeys.h"

#include "screens/player/PlayerViewModel.h"
#include "style/Texts.h"

#include <algorithm>

namespace ondavia {

PlayerKeys::PlayerKeys(PlayerViewModel& view)
    : m_view(view) {
    bindPlayback();
    bindLayers();
}

void PlayerKeys::bindPlayback() {
    const auto step = [this](bool forwards) {
        if (!m_view.isLive()) {
            m_view.skips()->step(forwards);
        }
    };
    m_bindings.push_back(
        {{Qt::Key_Space, Qt::Key_K, Qt::Key_MediaPlay, Qt::Key_MediaPause, Qt::Key_MediaTogglePlayPause},
         textFor("player.keys.space", "Espaço") + QStringLiteral(", K"),
         textFor("player.keys.playPause", "Reproduzir ou pausar"),
         Repeat::No,
         [this] { m_view.togglePlayPause(); }});
    m_bindings.push_back({{Qt::Key_Left, Qt::Key_J},
                          QStringLiteral("←, J"),
                          textFor("player.keys.back", "Recuar"),
                          Repeat::Yes,
                          [step] { step(false); }});
    m_bindings.push_back({{Qt::Key_Right, Qt::Key_L},
                          QStringLiteral("→, L"),
                          textFor("player.keys.forward", "Avançar"),
                          Repeat::Yes,
                          [step] { step(true); }});
    m_bindings.push_back({{Qt::Key_Up},
                          QStringLiteral("↑"),
                          textFor("player.keys.louder", "Aumentar o volume"),
                          Repeat::Yes,
                          [this] { m_view.levels()->changeVolume(1); }});
    m_bindings.push_back({{Qt::Key_Down},
                          QStringLiteral("↓"),
                          textFor("player.keys.quieter", "Baixar o volume"),
                          Repeat::Yes,
                          [this] { m_view.levels()->changeVolume(-1); }});
    m_bindings.push_back({{Qt::Key_M},
                          QStringLiteral("M"),
                          textFor("player.keys.mute", "Silenciar ou ligar o som"),
                          Repeat::No,
                          [this] { m_view.toggleMute(); }});
}

void PlayerKeys::bindLayers() {
    m_bindings.push_back({{Qt::Key_N, Qt::Key_MediaNext},
                          QStringLiteral("N"),
                          textFor("player.nextEpisode", "Proximo episodio"),
                          Repeat::No,
                          [this] {
                              if (m_view.offersNextEpisode()) {
                                  m_view.playNextEpisode();
                              }
                          }});
    m_bindings.push_back({{Qt::Key_F},
                          QStringLiteral("F"),
                          textFor("player.keys.fullScreen", "Ecrã inteiro"),
                          Repeat::No,
                          [this] { m_view.toggleFullScreen(); }});
    m_bindings.push_back(
        {{Qt::Key_S}, QStringLiteral("S"), textFor("player.settings", "Definições"), Repeat::No, [this] {
             m_view.showSettings() ? m_view.closeSettings() : m_view.openSettings();
         }});
    m_bindings.push_back(
        {{Qt::Key_I}, QStringLiteral("I"), textFor("information.title", "Informação"), Repeat::No, [this] {
             m_view.information()->toggle();
         }});
    m_bindings.push_back({{Qt::Key_Question},
                          QStringLiteral("?"),
                          textFor("player.keys.list", "Esta lista"),
                          Repeat::No,
                          [this] { m_view.setShowKeys(!m_view.showKeys()); }});
}

bool PlayerKeys::press(int key, bool isAutoRepeat) {
    const Binding* binding = find(key);
    if (binding == nullptr) {
        return false;
    }
    if (!isAutoRepeat || binding->repeat == Repeat::Yes) {
        // A copy: the key may end the view.
        const auto run = binding->run;
        run();
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
    lines.append(QVariantMap{{QStringLiteral("keys"), QStringLiteral("Esc")},
                             {QStringLiteral("action"), textFor("player.keys.leave", "Sair")}});
    return lines;
}

} // namespace ondavia
