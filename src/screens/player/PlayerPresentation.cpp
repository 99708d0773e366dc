#include "screens/player/PlayerPresentation.h"

#include "state/AppState.h"

namespace ondavia {

PlayerPresentation::PlayerPresentation(AppState& appState, MakePlayer makePlayer, QObject* parent)
    : QObject(parent)
    , m_appState(appState)
    , m_makePlayer(std::move(makePlayer)) {
    connect(&appState, &AppState::isPlayingChanged, this, &PlayerPresentation::sessionChanged);
    connect(&appState, &AppState::currentChannelChanged, this, &PlayerPresentation::sessionChanged);
    // In the next turn: an item chosen over the mini player ends that first, and the old item must not
    // fill the screen, and play, for the blink of an eye.
    connect(&appState, &AppState::showMiniPlayerChanged, this, &PlayerPresentation::sessionChanged,
            Qt::QueuedConnection);
    sessionChanged();
}

// A window that closes leaves its player as somebody who leaves does: what was watched is kept.
PlayerPresentation::~PlayerPresentation() {
    m_appState.disconnect(this);
    if (m_player) {
        m_player->disappear();
    }
}

void PlayerPresentation::sessionChanged() {
    const bool presents = m_appState.presentsPlayer();
    if (presents && !isPresented()) {
        present();
    } else if (!presents && isPresented()) {
        dismiss();
    }
}

void PlayerPresentation::present() {
    m_player = m_makePlayer(*m_appState.currentChannel());
    connect(m_player.get(), &PlayerScreen::dismissed, this, &PlayerPresentation::dismiss);
    m_player->appear();
    Q_EMIT playerChanged();
}

void PlayerPresentation::dismiss() {
    PlayerScreen* leaving = m_player.release();
    if (leaving == nullptr) {
        return;
    }
    leaving->disappear();
    Q_EMIT playerChanged();
    m_appState.playerDismissed();
    // After what shows it, which goes in the next turn too; but never after what it works with.
    leaving->setParent(this);
    leaving->deleteLater();
}

} // namespace ondavia
