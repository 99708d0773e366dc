#include "tour/Tour.h"

#include "app/QtMessages.h"
#include "app/Services.h"
#include "screens/Screens.h"
#include "screens/shell/ContentViewModel.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QQmlApplicationEngine>

#include <clocale>
#include <cstdio>
#include <stdexcept>

namespace {

constexpr QSize wide{1280, 800};
constexpr QSize narrow{412, 892};

QQuickWindow& openWindow(QQmlApplicationEngine& engine, ondavia::Services& services,
                         ondavia::ContentViewModel& content) {
    ondavia::loadScreens(engine, {.appState = services.appState,
                                  .store = *services.store,
                                  .playerManager = services.playerManager,
                                  .defaults = *services.defaults,
                                  .keychain = services.keychain,
                                  .makeSession = services.makeSession,
                                  .scheduler = *services.scheduler,
                                  .content = content,
                                  .cacheFolder = services.folders.cache,
                                  .language = "pt"});
    auto* window =
        engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    if (window == nullptr) {
        throw std::runtime_error("the window did not open");
    }
    return *window;
}

void tour(const QString& server, const QString& folder) {
    ondavia::Services services(ondavia::MpvOutputs::Window);
    ondavia::ContentViewModel content(services.syncEnvironment());
    QQmlApplicationEngine engine;
    QQuickWindow& window = openWindow(engine, services, content);
    window.resize(wide);
    ondavia::Tour first(window, services, folder, QStringLiteral("wide-"));
    first.signIn(server, QStringLiteral("demo"), QStringLiteral("demo"));
    first.browse();
    window.resize(narrow);
    ondavia::Tour(window, services, folder, QStringLiteral("narrow-")).browse();
    services.appState.logout();
    ondavia::Tour(window, services, folder, QStringLiteral("narrow-"))
        .signIn(server, QStringLiteral("demo"), QStringLiteral("demo"));
}

} // namespace

int main(int argc, char** argv) {
    ondavia::routeQtMessages();
    const QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QCommandLineParser options;
    const QCommandLineOption server(QStringLiteral("server"), QStringLiteral("Address of the demo provider."),
                                    QStringLiteral("URL"));
    options.addOption(server);
    options.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("Where the pictures go."));
    options.process(application);
    try {
        tour(options.value(server), options.positionalArguments().value(0));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
        return 1;
    }
}
