// What the keys do in the live player.
#include "screens/liveplayer/LivePlayerViewModel.h"
#include "style/Texts.h"

namespace ondavia {

void LivePlayerViewModel::bindKeys() {
    using Repeat = PlayerKeys::Repeat;
    PlayerKeys& list = *keys();
    list.bindPlayback(*this);
    list.bind({{Qt::Key_PageUp, Qt::Key_ChannelUp},
               QStringLiteral("Page Up"),
               textFor("live.next", "Canal seguinte"),
               Repeat::No,
               [this](int) { switchToNextChannel(); }});
    list.bind({{Qt::Key_PageDown, Qt::Key_ChannelDown},
               QStringLiteral("Page Down"),
               textFor("live.previous", "Canal anterior"),
               Repeat::No,
               [this](int) { switchToPreviousChannel(); }});
    list.bind({{Qt::Key_0, Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5, Qt::Key_6, Qt::Key_7,
                Qt::Key_8, Qt::Key_9},
               QStringLiteral("0 – 9"),
               textFor("live.keys.number", "Ir para o canal com esse número"),
               Repeat::No,
               [this](int key) { m_number.type(key - Qt::Key_0); }});
    list.bind({{Qt::Key_Backspace},
               textFor("live.keys.backspace", "Retrocesso"),
               textFor("live.keys.before", "Voltar ao canal de antes"),
               Repeat::No,
               [this](int) { switchToChannelBefore(); }});
    list.bind({{Qt::Key_L},
               QStringLiteral("L"),
               textFor("live.keys.list", "Lista de canais"),
               Repeat::No,
               [this](int) { openList(); }});
    list.bind({{Qt::Key_G, Qt::Key_Guide},
               QStringLiteral("G"),
               textFor("player.guide", "Guia de programação"),
               Repeat::No,
               [this](int) { openGuide(); }});
    list.bind({{Qt::Key_H, Qt::Key_Favorites},
               QStringLiteral("H"),
               textFor("live.keys.favorite", "Favorito"),
               Repeat::No,
               [this](int) { toggleFavorite(); }});
    list.bindSound(*this);
    list.bindLayers(*this);
    list.setLeaving(textFor("player.minimize", "Minimizar"));
}

} // namespace ondavia
