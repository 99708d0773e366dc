#include "screens/shell/ScreenModels.h"

#include "base/LocalizedText.h"
#include "screens/shell/LossNotice.h"
#include "state/AppState.h"
#include "store/LibraryStore.h"

namespace ondavia {

ScreenModels::ScreenModels(const ScreenServices& services, QObject* parent)
    : QObject(parent)
    , m_content(services.content)
    , m_home(services.appState, {.addProvider = [this] { m_signIn.open(); },
                                 .load = [&content = services.content] { content.start(); }})
    , m_signIn(services.appState, services.keychain, services.makeSession,
               [&content = services.content] { content.signedIn(); })
    , m_live(BrowserKind::Live, services.appState, services.store, services.catalogue)
    , m_movies(BrowserKind::Movies, services.appState, services.store, services.catalogue)
    , m_players(services)
    , m_player(services.appState, [this](const Channel& item) { return m_players.make(item); })
    , m_miniPlayer(services.appState, services.playerManager)
    , m_toastTimer(services.content, services.scheduler)
    , m_loadingExit(services.appState, services.scheduler,
                    [&content = services.content] { content.leaveLoading(); })
    , m_lossNotice(ondavia::lossNotice(services.store.openReport())) {
    if (services.store.openReport().isDiskFull) {
        services.appState.showToast(
            localizedText("store.diskFull", "O disco está cheio. Nada de novo fica guardado."),
            ToastType::warning);
    }
}

} // namespace ondavia
