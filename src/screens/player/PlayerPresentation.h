#pragma once

#include "screens/player/PlayerScreenServices.h"
#include "screens/player/PlayerViewModel.h"

#include <QObject>
#include <qqmlregistration.h>

#include <memory>

namespace ondavia {

/// The root view's full-screen presentation: while a session is open and not in the mini player there is a
/// player for it, made anew each time. Main thread.
class PlayerPresentation final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    /// Null while nothing is presented. Stays alive until what shows it has gone.
    Q_PROPERTY(ondavia::PlayerViewModel* player READ player NOTIFY playerChanged)
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY playerChanged)

public:
    explicit PlayerPresentation(const PlayerScreenServices& services, QObject* parent = nullptr);
    ~PlayerPresentation() override;

    [[nodiscard]] PlayerViewModel* player() const { return m_player.get(); }
    [[nodiscard]] bool isPresented() const { return m_player != nullptr; }

    Q_SIGNAL void playerChanged();

private:
    void sessionChanged();
    void present();
    void dismiss();

    PlayerScreenServices m_services;
    std::unique_ptr<PlayerViewModel> m_player;
};

} // namespace ondavia
