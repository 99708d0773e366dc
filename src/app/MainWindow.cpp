#include "app/MainWindow.h"

#include "app/Services.h"
#include "platform/linux/GraphicsDriver.h"

#include <QGuiApplication>
#include <QQuickWindow>

namespace ondavia {

namespace {

/// Where OpenGL is drawn by the processor, Qt draws with the processor itself: it draws only what has
/// changed, and a film costs it a fraction. Who says otherwise in the environment has it so.
void chooseDrawing() {
    const bool isChosen =
        qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || qEnvironmentVariableIsSet("QSG_RHI_BACKEND");
    if (!isChosen && isOpenGlSoftware()) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

ScreenServices screenServices(Services& services, ContentViewModel& content, const std::string& language) {
    return {.appState = services.appState,
            .store = *services.store,
            .catalogue = services.catalogue,
            .search = services.search,
            .playerManager = services.playerManager,
            .audioSession = *services.audioSession,
            .systemVolume = services.systemVolume,
            .screenBrightness = *services.screenBrightness,
            .remoteCommands = services.remoteCommandCenter,
            .defaults = *services.defaults,
            .keychain = services.keychain,
            .makeSession = services.makeSession,
            .scheduler = *services.scheduler,
            .refresh = services.refresh,
            .guide = services.guideEnvironment(),
            .content = content,
            .cacheFolder = services.folders.cache,
            .language = language,
            .readGraphicsDriver = [] { readGraphicsDriver(QGuiApplication::platformName().toStdString()); },
            .chooseDrawing = chooseDrawing};
}

} // namespace

MainWindow::MainWindow(Services& services, const std::string& language)
    : m_content(services.appState, services.refresh) {
    // While the window is made, which takes longer.
    services.catalogue.prefetch();
    // A sound server that says nothing is known as one before the first film asks it.
    (void)services.systemVolume.outputVolume();
    m_screens.emplace(screenServices(services, m_content, language));
    // While the first page is looked at: the first search waits for nothing, nor does the first page for it.
    QObject::connect(
        &window(), &QQuickWindow::frameSwapped, &window(), [&services] { services.search.prefetch(); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

} // namespace ondavia
