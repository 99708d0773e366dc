#include "app/MainWindow.h"

#include "app/Services.h"
#include "platform/linux/GraphicsDriver.h"
#include "screens/Screens.h"

#include <QQuickWindow>

#include <stdexcept>

namespace ondavia {

MainWindow::MainWindow(Services& services, const std::string& language)
    : m_content(services.syncEnvironment(), services.guideEnvironment()) {
    // While the window is made, which takes longer.
    services.catalogue.prefetch();
    m_window = loadScreens(m_engine, {.appState = services.appState,
                                      .store = *services.store,
                                      .catalogue = services.catalogue,
                                      .playerManager = services.playerManager,
                                      .defaults = *services.defaults,
                                      .keychain = services.keychain,
                                      .makeSession = services.makeSession,
                                      .scheduler = *services.scheduler,
                                      .content = m_content,
                                      .cacheFolder = services.folders.cache,
                                      .language = language,
                                      .readGraphicsDriver = readGraphicsDriver});
    if (m_window == nullptr) {
        throw std::runtime_error("the window cannot be opened");
    }
}

} // namespace ondavia
