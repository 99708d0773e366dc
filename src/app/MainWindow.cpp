#include "app/MainWindow.h"

#include "app/Services.h"
#include "platform/linux/GraphicsDriver.h"

namespace ondavia {

namespace {

ScreenServices screenServices(Services& services, ContentViewModel& content, const std::string& language) {
    return {.appState = services.appState,
            .store = *services.store,
            .catalogue = services.catalogue,
            .playerManager = services.playerManager,
            .defaults = *services.defaults,
            .keychain = services.keychain,
            .makeSession = services.makeSession,
            .scheduler = *services.scheduler,
            .content = content,
            .cacheFolder = services.folders.cache,
            .language = language,
            .readGraphicsDriver = readGraphicsDriver};
}

} // namespace

MainWindow::MainWindow(Services& services, const std::string& language)
    : m_content(services.syncEnvironment(), services.guideEnvironment()) {
    // While the window is made, which takes longer.
    services.catalogue.prefetch();
    m_screens.emplace(screenServices(services, m_content, language));
}

} // namespace ondavia
