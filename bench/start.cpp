#include "Frames.h"
#include "support/BenchSupport.h"

#include "app/MainWindow.h"
#include "app/Services.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <chrono>
#include <clocale>
#include <optional>
#include <stdexcept>

namespace ondavia::bench {
namespace {

/// What `showFrame` does, timed from the start of this program to the frame.
void runSide(const std::function<std::chrono::steady_clock::time_point()>& showFrame) {
    std::chrono::steady_clock::time_point shown;
    Measurement measurement = measure([&] { shown = showFrame(); });
    measurement.seconds = std::chrono::duration<double>(shown - startOfChild()).count();
    printForParent(measurement);
}

void runOurs() {
    std::optional<Services> services;
    std::optional<MainWindow> main;
    runSide([&] {
        services.emplace(MpvOutputs::Window);
        services->appState.setSelectedTab(AppTab::movies);
        main.emplace(*services, "pt");
        QQuickWindow& window = main->window();
        return awaitFrame(
            window, [&window] { return findVisible(*window.contentItem(), "ContentCardView") != nullptr; });
    });
}

void runBare() {
    QQmlApplicationEngine engine;
    runSide([&] { return awaitFrame(openEmptyWindow(engine), [] { return true; }); });
}

void runTool(const QStringList& arguments, const QByteArray& input = {}) {
    QProcess tool;
    tool.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    tool.start(QCoreApplication::applicationDirPath() + QStringLiteral("/ondavia-cli"), arguments);
    tool.write(input);
    tool.closeWriteChannel();
    constexpr int patience = 300'000;
    if (!tool.waitForFinished(patience) || tool.exitCode() != 0) {
        throw std::runtime_error("the catalogue cannot be prepared");
    }
}

int runComparison() {
    constexpr int rounds = 5;
    const QTemporaryDir folder;
    qputenv("ONDAVIA_DATA_DIR", folder.path().toUtf8());
    qputenv("ONDAVIA_VAULT", "file");
    // One way of drawing for both sides: ours would choose the cheaper one for itself.
    drawAlike();
    const ProviderProcess provider(
        {QStringLiteral("--scale"), QStringLiteral("180000"), QStringLiteral("--lazy-media")});
    runTool({QStringLiteral("signin"), QStringLiteral("--server"), provider.url(),
             QStringLiteral("--username"), QStringLiteral("demo")},
            "demo\n");
    runTool({QStringLiteral("sync")});
    // Neither is due then, and the start is left to itself.
    runTool({QStringLiteral("guide"), QStringLiteral("load")});
    compare(rounds, {QStringLiteral("ours")}, {QStringLiteral("bare")})
        .print("from the start of the program with a stored catalogue of 180,000 rows to its first frame "
               "with films, against an empty "
               "window with the same QML modules (best of 5)");
    return 0;
}

} // namespace
} // namespace ondavia::bench

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        return ondavia::bench::runComparison();
    }
    arguments[1] == QStringLiteral("ours") ? ondavia::bench::runOurs() : ondavia::bench::runBare();
    return 0;
}
