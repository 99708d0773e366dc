#pragma once

#include "screens/Screens.h"
#include "screens/browse/BrowserViewModel.h"
#include "screens/home/HomeViewModel.h"
#include "screens/player/PlayerViewModel.h"
#include "screens/shell/ContentViewModel.h"
#include "screens/shell/ToastTimer.h"
#include "screens/signin/SignInViewModel.h"

#include <QObject>
#include <qqmlregistration.h>

namespace ondavia {

/// The view-models of all screens, for as long as the engine that shows them. Main thread.
class ScreenModels final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(ondavia::ContentViewModel* content READ content CONSTANT)
    Q_PROPERTY(ondavia::HomeViewModel* home READ home CONSTANT)
    Q_PROPERTY(ondavia::SignInViewModel* signIn READ signIn CONSTANT)
    Q_PROPERTY(ondavia::BrowserViewModel* live READ live CONSTANT)
    Q_PROPERTY(ondavia::BrowserViewModel* movies READ movies CONSTANT)
    Q_PROPERTY(ondavia::PlayerViewModel* player READ player CONSTANT)

public:
    /// What `services` refers to must outlive the object.
    explicit ScreenModels(const ScreenServices& services, QObject* parent = nullptr);

    [[nodiscard]] ContentViewModel* content() { return &m_content; }
    [[nodiscard]] HomeViewModel* home() { return &m_home; }
    [[nodiscard]] SignInViewModel* signIn() { return &m_signIn; }
    [[nodiscard]] BrowserViewModel* live() { return &m_live; }
    [[nodiscard]] BrowserViewModel* movies() { return &m_movies; }
    [[nodiscard]] PlayerViewModel* player() { return &m_player; }

private:
    ContentViewModel& m_content;
    HomeViewModel m_home;
    SignInViewModel m_signIn;
    BrowserViewModel m_live;
    BrowserViewModel m_movies;
    PlayerViewModel m_player;
    ToastTimer m_toastTimer;
};

} // namespace ondavia
