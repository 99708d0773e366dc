#include "tour/Tour.h"

#include "app/MainWindow.h"
#include "app/QtMessages.h"
#include "app/Services.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QQuickWindow>

#include <clocale>
#include <cstdio>

namespace {

constexpr QSize wide{1280, 800};
constexpr QSize narrow{412, 892};

void tour(const QString& server, const QString& folder) {
    ondavia::Services services(ondavia::MpvOutputs::Window);
    const ondavia::MainWindow main(services, "pt");
    QQuickWindow& window = main.window();
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
