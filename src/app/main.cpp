#include "app/MainWindow.h"
#include "app/QtMessages.h"
#include "app/Services.h"

#include <QCommandLineParser>
#include <QGuiApplication>

#include <clocale>
#include <cstdio>

namespace {

int runApplication(const QString& language) {
    ondavia::Services services(ondavia::MpvOutputs::Window);
    const ondavia::MainWindow window(services, language.toStdString());
    return QGuiApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    ondavia::routeQtMessages();
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("ondavia"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Ondavia"));
    QGuiApplication::setDesktopFileName(QStringLiteral("ondavia"));
    // libmpv reads and writes numbers by the C locale.
    std::setlocale(LC_NUMERIC, "C");

    QCommandLineParser options;
    options.addHelpOption();
    const QCommandLineOption language(QStringLiteral("language"),
                                      QStringLiteral("Language of the interface: pt, en, es or fr."),
                                      QStringLiteral("code"));
    options.addOption(language);
    options.process(application);
    try {
        return runApplication(options.value(language));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
        return 1;
    }
}
