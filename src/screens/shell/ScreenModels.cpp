#include "screens/shell/ScreenModels.h"

#include "base/LocalizedText.h"
#include "screens/shell/LossNotice.h"
#include "state/AppState.h"
#include "store/LibraryStore.h"

namespace ondavia {

ScreenModels::ScreenModels(const ScreenServices& services, QObject* parent)
    : QObject(parent)
    , m_search{services.appState, services.store, services.search, services.scheduler}
    , m_content(services.content)
    , m_home(services.appState, {.addProvider = [this] { m_signIn.open(); },
                                 .load = [&content = services.content] { content.start(); },
                                 .search = [this] { Q_EMIT searchWanted({}); }})
    , m_signIn(services.appState, services.keychain, services.makeSession,
               [&content = services.content] { content.signedIn(); })
    , m_details({services.appState, services.store.mainContext()})
    , m_live(services.appState, services.store, services.catalogue)
    , m_movies(BrowserKind::Movies, services.appState, services.store, services.catalogue,
               [this](const Channel& title) { m_details.open(title); })
    , m_series(BrowserKind::Series, services.appState, services.store, services.catalogue,
               [this](const Channel& title) { m_details.open(title); })
    , m_players(services)
    , m_player(services.appState, [this](const Channel& item) { return m_players.make(item); })
    , m_miniPlayer(services.appState, services.playerManager)
    , m_toastTimer(services.content, services.scheduler)
    , m_loadingExit(services.appState, services.scheduler,
                    [&content = services.content] { content.leaveLoading(); })
    , m_lossNotice(ondavia::lossNotice(services.store.openReport())) {
    connect(&m_live, &CatalogueBrowser::searchWanted, this,
            [this] { Q_EMIT searchWanted(QStringLiteral("live")); });
    connect(&m_movies, &CatalogueBrowser::searchWanted, this,
            [this] { Q_EMIT searchWanted(QStringLiteral("movie")); });
    connect(&m_series, &CatalogueBrowser::searchWanted, this,
            [this] { Q_EMIT searchWanted(QStringLiteral("series")); });
    if (services.store.openReport().isDiskFull) {
        services.appState.showToast(
            localizedText("store.diskFull", "O disco está cheio. Nada de novo fica guardado."),
            ToastType::warning);
    }
}

SearchViewModel* ScreenModels::makeSearch(const QString& type) {
    const auto fixedType = type.isEmpty() ? std::nullopt : std::optional(type.toStdString());
    auto* search = new SearchViewModel(fixedType, m_search, this);
    connect(search, &SearchViewModel::detailWanted, &m_details, &DetailPages::open);
    return search;
}

} // namespace ondavia
