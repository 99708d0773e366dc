#include "Frames.h"
#include "support/BenchSupport.h"

#include "app/MainWindow.h"
#include "app/Services.h"
#include "base/Heap.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QSGRendererInterface>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <ctime>
#include <stdexcept>
#include <vector>

namespace ondavia::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int films = 120'000;
constexpr int categories = 200;
/// Of the first category, which is opened whole.
constexpr int filmsOfTheFirst = 20'000;
/// The demo provider's first film.
constexpr int firstFilm = 100'001;
/// So many posters go round.
constexpr int posters = 400;
constexpr double flingSeconds = 10;

std::string categoryOf(int film) {
    return "Categoria " + std::to_string(film < filmsOfTheFirst ? 1 : 1 + film % categories);
}

void store(const QString& provider) {
    Services services(MpvOutputs::Null);
    std::vector<Channel> rows;
    for (int film = 0; film < films; ++film) {
        Channel row;
        row.id = "main_" + std::to_string(film);
        row.streamId = film;
        row.num = film;
        row.type = "movie";
        row.groupTitle = categoryOf(film);
        row.name = "O Filme que Vem do Mar, Parte " + std::to_string(film);
        row.rating = std::to_string(film % 10) + "." + std::to_string(film % 7);
        row.logo =
            provider.toStdString() + "/pictures/film/" + std::to_string(firstFilm + film % posters) + ".jpg";
        rows.push_back(std::move(row));
    }
    auto replacement = services.store->beginReplacement<Channel>();
    replacement.append(0, rows);
    replacement.commit();
    std::vector<std::string> order;
    for (int category = 1; category <= categories; ++category) {
        order.push_back("Categoria " + std::to_string(category));
    }
    services.defaults->setStringArray("ondavia_vod_cat_order", order);
    services.defaults->setStringArray("ondavia_live_cat_order", {});
    services.defaults->setDate("ondavia_last_sync", currentDate());
    services.defaults->setDate("ondavia_last_epg_load", currentDate());
    services.appState.saveCredentials(provider.toStdString(), "demo", "demo");
}

void runLoop(double seconds) {
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
    loop.exec();
}

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Processor time of the main thread, in milliseconds.
double workOfThisThread() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The frames of a movement: from one to the next, and what each cost the main thread.
struct Frames final {
    std::vector<double> intervals;
    std::vector<double> work;

    void print(const char* what) {
        std::ranges::sort(intervals);
        std::ranges::sort(work);
        const auto middle = static_cast<std::ptrdiff_t>(intervals.size() / 2);
        std::printf(
            "  %-36s %5zu frames   longest %6.1f ms, median %5.1f ms from frame to frame   longest %6.1f "
            "ms, median %5.1f ms of work\n",
            what, intervals.size(), intervals.back(), intervals[static_cast<std::size_t>(middle)],
            work.back(), work[static_cast<std::size_t>(middle)]);
    }
};

/// Flings a list to and fro, as a finger does that lands again as soon as it rests, or at one of its ends.
Frames fling(QQuickWindow& window, QQuickItem& list, double velocity) {
    Frames frames;
    Clock::time_point last;
    double lastWork = 0;
    const auto connection = QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&] {
        const double work = workOfThisThread();
        if (last != Clock::time_point()) {
            frames.intervals.push_back(millisecondsSince(last));
            frames.work.push_back(work - lastWork);
        }
        last = Clock::now();
        lastWork = work;
    });
    const auto start = Clock::now();
    while (millisecondsSince(start) < flingSeconds * 1000) {
        if (!list.property("moving").toBool()) {
            const bool isAtEnd = list.property("atYEnd").toBool();
            const bool isAtBeginning = list.property("atYBeginning").toBool();
            velocity = isAtEnd ? std::abs(velocity) : isAtBeginning ? -std::abs(velocity) : velocity;
            QMetaObject::invokeMethod(&list, "flick", Q_ARG(double, 0), Q_ARG(double, velocity));
            // The rest between two movements is no frame.
            last = {};
        }
        runLoop(0.02);
    }
    QObject::disconnect(connection);
    return frames;
}

const char* rendererOf(const QQuickWindow& window) {
    switch (window.rendererInterface()->graphicsApi()) {
    case QSGRendererInterface::Software:
        return "Qt Quick's software renderer";
    case QSGRendererInterface::OpenGL:
        return "OpenGL";
    default:
        return "another one";
    }
}

/// What is drawn under that name: pages made by address have no QObject parent in the window.
QQuickItem* findNamed(QQuickItem& item, const QString& name) {
    if (!item.isVisible() || item.objectName() == name) {
        return item.isVisible() ? &item : nullptr;
    }
    for (QQuickItem* child : item.childItems()) {
        if (QQuickItem* found = findNamed(*child, name)) {
            return found;
        }
    }
    return nullptr;
}

QQuickItem& named(QQuickWindow& window, const char* name) {
    QQuickItem* found = findNamed(*window.contentItem(), QLatin1String(name));
    if (found == nullptr) {
        throw std::runtime_error(std::string("nothing is called ") + name);
    }
    return *found;
}

void openTab(Services& services, QQuickWindow& window, double bareMemory) {
    awaitFrame(window, [] { return true; });
    // The start is over, and what the first page counts is known.
    runLoop(2);
    std::printf("  memory %.1f MiB over an empty window (%.1f MiB) on the home page\n",
                residentMemory() - bareMemory, bareMemory);
    const auto start = Clock::now();
    services.appState.setSelectedTab(AppTab::movies);
    const auto isOpen = [&window] {
        return findVisible(*window.contentItem(), "ContentCardView") != nullptr;
    };
    const auto drawn = awaitFrame(window, isOpen);
    std::printf("  the tab opens in %.1f ms, from the choice to the frame with its first cards\n",
                std::chrono::duration<double, std::milli>(drawn - start).count());
}

void runOurs(double bareMemory) {
    Services services(MpvOutputs::Window);
    const MainWindow main(services, "pt");
    QQuickWindow& window = main.window();
    openTab(services, window, bareMemory);
    runLoop(2);
    std::printf("  drawn by %s; %d films in %d categories, %d x %d\n", rendererOf(window), films, categories,
                window.width(), window.height());
    std::printf("  memory %.1f MiB over it with the tab open\n", residentMemory() - bareMemory);
    constexpr double velocity = -5000;
    fling(window, named(window, "movieCarousels"), velocity).print("carousels, flung");
    auto& carousels = named(window, "movieCarousels");
    QMetaObject::invokeMethod(&carousels, "positionViewAtBeginning");
    runLoop(1);
    QMetaObject::invokeMethod(&named(window, "carouselHeader"), "clicked");
    runLoop(1);
    fling(window, named(window, "movieGrid"), velocity).print("a whole category, flung");
    std::printf("  memory %.1f MiB over the empty window after all that\n", residentMemory() - bareMemory);
}

void runBare() {
    QQmlApplicationEngine engine;
    awaitFrame(openEmptyWindow(engine), [] { return true; });
    runLoop(2);
    printForParent({0, residentMemory(), 0});
}

int runSides() {
    const QTemporaryDir folder;
    qputenv("ONDAVIA_DATA_DIR", folder.path().toUtf8());
    qputenv("ONDAVIA_VAULT", "file");
    qputenv("QT_QUICK_BACKEND", "software");
    const ProviderProcess provider({QStringLiteral("--lazy-media")});
    store(provider.url());
    const double bareMemory = runChild({QStringLiteral("bare")}).memory;
    QProcess ours;
    ours.setProcessChannelMode(QProcess::ForwardedChannels);
    ours.start(QCoreApplication::applicationFilePath(),
               {QStringLiteral("ours"), QString::number(bareMemory)});
    constexpr int patience = 300'000;
    ours.waitForFinished(patience);
    return ours.exitCode();
}

} // namespace
} // namespace ondavia::bench

int main(int argc, char** argv) {
    // As the application.
    ondavia::keepHeapSmall();
    const QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const QStringList arguments = QCoreApplication::arguments();
    const QString side = arguments.value(1);
    if (side.isEmpty()) {
        return ondavia::bench::runSides();
    }
    side == QStringLiteral("ours") ? ondavia::bench::runOurs(arguments.value(2).toDouble())
                                   : ondavia::bench::runBare();
    return 0;
}
