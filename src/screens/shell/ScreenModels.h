#pragma once

#include "screens/browse/BrowserViewModel.h"
#include "screens/home/HomeViewModel.h"
#include "screens/live/LiveViewModel.h"
#include "screens/player/MiniPlayerViewModel.h"
#include "screens/player/PlayerPresentation.h"
#include "screens/search/SearchViewModel.h"
#include "screens/shell/ContentViewModel.h"
#include "screens/shell/DetailPages.h"
#include "screens/shell/FullScreenPlayers.h"
#include "screens/shell/LoadingExit.h"
#include "screens/shell/ScreenServices.h"
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
    Q_PROPERTY(ondavia::LiveViewModel* live READ live CONSTANT)
    Q_PROPERTY(ondavia::BrowserViewModel* movies READ movies CONSTANT)
    Q_PROPERTY(ondavia::BrowserViewModel* series READ series CONSTANT)
    Q_PROPERTY(ondavia::DetailPages* details READ details CONSTANT)
    Q_PROPERTY(ondavia::PlayerPresentation* player READ player CONSTANT)
    Q_PROPERTY(ondavia::MiniPlayerViewModel* miniPlayer READ miniPlayer CONSTANT)
    Q_PROPERTY(ondavia::LoadingExit* loadingExit READ loadingExit CONSTANT)
    /// What the start found lost of the user's own rows; empty when nothing was.
    Q_PROPERTY(QString lossNotice READ lossNotice CONSTANT)

public:
    /// What `services` refers to must outlive the object.
    explicit ScreenModels(const ScreenServices& services, QObject* parent = nullptr);

    [[nodiscard]] ContentViewModel* content() { return &m_content; }
    [[nodiscard]] HomeViewModel* home() { return &m_home; }
    [[nodiscard]] SignInViewModel* signIn() { return &m_signIn; }
    [[nodiscard]] LiveViewModel* live() { return &m_live; }
    [[nodiscard]] BrowserViewModel* movies() { return &m_movies; }
    [[nodiscard]] BrowserViewModel* series() { return &m_series; }
    [[nodiscard]] DetailPages* details() { return &m_details; }
    [[nodiscard]] PlayerPresentation* player() { return &m_player; }
    [[nodiscard]] MiniPlayerViewModel* miniPlayer() { return &m_miniPlayer; }
    [[nodiscard]] LoadingExit* loadingExit() { return &m_loadingExit; }
    [[nodiscard]] QString lossNotice() const { return m_lossNotice; }

    /// A search for one opening of its page, over "live", "movie" or "series", or over everything for an
    /// empty text. Lives until the page closes it.
    Q_INVOKABLE ondavia::SearchViewModel* makeSearch(const QString& type);

    /// The page of such a search is to be opened.
    Q_SIGNAL void searchWanted(const QString& type);

private:
    SearchServices m_search;
    ContentViewModel& m_content;
    HomeViewModel m_home;
    SignInViewModel m_signIn;
    DetailPages m_details;
    LiveViewModel m_live;
    BrowserViewModel m_movies;
    BrowserViewModel m_series;
    FullScreenPlayers m_players;
    PlayerPresentation m_player;
    MiniPlayerViewModel m_miniPlayer;
    ToastTimer m_toastTimer;
    LoadingExit m_loadingExit;
    QString m_lossNotice;
};

} // namespace ondavia
