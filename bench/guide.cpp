#include "BareGuide.h"
#include "support/BenchSupport.h"

#include "app/Services.h"
#include "guide/EPGService.h"
#include "platform/linux/CurlURLSession.h"
#include "screens/QmlModules.h"
#include "screens/guide/EPGPanelViewModel.h"
#include "store/LibraryStore.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace ondavia::bench {
namespace {

QCoro::Task<void> load(EPGService service, std::string url, QEventLoop& loop, bool& succeeded) {
    try {
        co_await service.loadEPG(url);
        succeeded = true;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
    }
    loop.quit();
}

/// Milliseconds that this thread has worked. A query neither waits nor has help, and other programs at
/// work on the machine are none of its business.
double workedMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double median(std::vector<double>& times) {
    std::ranges::sort(times);
    return times.at(times.size() / 2);
}

template<class Query> void timeQuery(const char* what, int rounds, Query&& query) {
    std::vector<double> wall;
    std::vector<double> work;
    std::size_t results = 0;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer clock;
        clock.start();
        const double before = workedMilliseconds();
        results += query(round);
        work.push_back(workedMilliseconds() - before);
        wall.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    }
    std::fprintf(stderr, "  %-32s median %7.3f ms wall, %7.3f ms work   (%zu results in all)\n", what,
                 median(wall), median(work), results);
}

std::string channelOf(int round) {
    return "canal." + std::to_string(1000 + round * 37) + ".demo";
}

void timeQueries(const EPGService& service) {
    constexpr int rounds = 500;
    const Date now = currentDate();
    timeQuery("programme of a channel, now", rounds, [&](int round) {
        return service.getCurrentProgram(channelOf(round), now) ? std::size_t{1} : std::size_t{0};
    });
    timeQuery("programmes of a channel and day", rounds,
              [&](int round) { return service.getProgramsForChannel(channelOf(round), now).size(); });
    timeQuery("titles of all channels, now", 20, [&](int) { return service.getCurrentTitles(now).size(); });
}

int runOurs(const std::string& url, const std::filesystem::path& folder) {
    const auto store = LibraryStore::open(folder / "store");
    CountedThreads workers;
    const EPGService service(
        {*store,
         [](const URLSessionConfiguration& configuration) { return makeCurlURLSession(configuration); },
         folder / "cache", workers});
    bool succeeded = false;
    const Measurement measurement = measure([&] {
        QEventLoop loop;
        const auto task = load(service, url, loop, succeeded);
        loop.exec();
    });
    printForParent(measurement);
    timeQueries(service);
    return succeeded ? 0 : 1;
}

void awaitFrame(QQuickWindow& window) {
    QEventLoop loop;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    window.update();
    loop.exec();
}

/// Opens the panel over and over, each time on another channel, until its rows are on screen.
void timePanel(EPGPanelViewModel& model) {
    constexpr int rounds = 100;
    QQmlEngine engine;
    provideScreens(engine);
    QQmlComponent panel(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Ondavia/Guide/EPGPanelView.qml")));
    QQuickWindow window;
    window.resize(420, 800);
    window.show();
    awaitFrame(window);
    timeQuery("panel of a channel, to its frame", rounds, [&](int round) {
        Channel channel;
        channel.epgChannelId = channelOf(round);
        model.setChannel(channel);
        const std::unique_ptr<QObject> made(
            panel.createWithInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&model)},
                                               {QStringLiteral("width"), window.width()},
                                               {QStringLiteral("height"), window.height()}}));
        auto* item = qobject_cast<QQuickItem*>(made.get());
        item->setParentItem(window.contentItem());
        awaitFrame(window);
        return model.programs()->programs().size();
    });
}

int runPanel(const std::string& url, const std::filesystem::path& folder) {
    qputenv("ONDAVIA_DATA_DIR", QByteArray::fromStdString(folder.string()));
    qputenv("ONDAVIA_VAULT", "file");
    Services services(MpvOutputs::Null);
    const EPGService service(services.guideEnvironment());
    bool succeeded = false;
    QEventLoop loop;
    const auto task = load(service, url, loop, succeeded);
    loop.exec();
    EPGPanelViewModel model(service, services.appState);
    timePanel(model);
    printForParent({});
    return succeeded ? 0 : 1;
}

int runBare(const std::string& url, const std::filesystem::path& folder) {
    printForParent(measure([&] { runBareGuide(url, folder / "bare.db"); }));
    return 0;
}

int runComparison() {
    constexpr int rounds = 3;
    const ProviderProcess provider(
        {QStringLiteral("--guide-programmes"), QStringLiteral("1000000"), QStringLiteral("--lazy-media")});
    const QString url = provider.url() + QStringLiteral("/xmltv.php?username=demo&password=demo");
    compare(rounds, {QStringLiteral("ours"), url}, {QStringLiteral("bare"), url})
        .print("guide of 1,000,000 programmes over loopback HTTP: download, parse, store (best of 3)");
    runChild({QStringLiteral("panel"), url});
    return 0;
}

} // namespace
} // namespace ondavia::bench

int main(int argc, char** argv) {
    const bool hasWindow = argc > 1 && std::string_view(argv[1]) == "panel";
    const std::unique_ptr<QCoreApplication> application(hasWindow ? new QGuiApplication(argc, argv)
                                                                  : new QCoreApplication(argc, argv));
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        return ondavia::bench::runComparison();
    }
    const QTemporaryDir folder;
    const std::filesystem::path path(folder.path().toStdString());
    const std::string url = arguments[2].toStdString();
    if (hasWindow) {
        return ondavia::bench::runPanel(url, path);
    }
    return arguments[1] == QStringLiteral("ours") ? ondavia::bench::runOurs(url, path)
                                                  : ondavia::bench::runBare(url, path);
}
