#pragma once

#include "screens/player/PlayerScreen.h"

#include <QObject>
#include <qqmlregistration.h>

#include <functional>
#include <memory>

namespace ondavia {

class AppState;

/// The root view's full-screen presentation: while a session is open and not in the mini player there is a
/// player for it, made anew each time. Main thread.
class PlayerPresentation final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    /// Null while nothing is presented. Stays alive until what shows it has gone.
    Q_PROPERTY(ondavia::PlayerScreen* player READ player NOTIFY playerChanged)
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY playerChanged)

public:
    /// Makes the player that an item is shown in.
    using MakePlayer = std::function<std::unique_ptr<PlayerScreen>(const Channel&)>;

    /// `appState` must outlive the object, and what the players work with too.
    PlayerPresentation(AppState& appState, MakePlayer makePlayer, QObject* parent = nullptr);
    ~PlayerPresentation() override;

    [[nodiscard]] PlayerScreen* player() const { return m_player.get(); }
    [[nodiscard]] bool isPresented() const { return m_player != nullptr; }

    Q_SIGNAL void playerChanged();

private:
    void sessionChanged();
    void present();
    void dismiss();

    AppState& m_appState;
    MakePlayer m_makePlayer;
    std::unique_ptr<PlayerScreen> m_player;
};

} // namespace ondavia
