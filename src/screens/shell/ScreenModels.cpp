#include "screens/shell/ScreenModels.h"

namespace ondavia {

ScreenModels::ScreenModels(const ScreenServices& services, QObject* parent)
    : QObject(parent)
    , m_content(services.content)
    , m_home(services.appState)
    , m_signIn(services.appState, services.keychain, services.makeSession,
               [&content = services.content] { content.signedIn(); })
    , m_live(BrowserKind::Live, services.appState, services.store, services.catalogue)
    , m_movies(BrowserKind::Movies, services.appState, services.store, services.catalogue)
    , m_player(services.appState, services.playerManager, services.content, services.scheduler)
    , m_toastTimer(services.content, services.scheduler) {}

} // namespace ondavia
