#include "support/BenchSupport.h"

#include "PlayerSides.h"
#include "app/MainWindow.h"
#include "base/Heap.h"

#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <httplib.h>
#include <sys/resource.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <map>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace ondavia::bench {
namespace {

constexpr double warmUpSeconds = 8;
constexpr double measuredSeconds = 10;
constexpr int startsAndStops = 1000;

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Processor time for each second of a film that plays already.
double processorWhilePlaying() {
    runLoop(warmUpSeconds);
    const double before = processorSeconds();
    const auto start = Clock::now();
    runLoop(measuredSeconds);
    return (processorSeconds() - before) / std::chrono::duration<double>(Clock::now() - start).count();
}

Channel film(const QString& url) {
    return itemAt(url, "movie");
}

/// The middle one of several starts in a process that has played before.
template<class Player> double startTime(const QString& url) {
    constexpr int starts = 9;
    Player player;
    player.start(film(url));
    std::vector<double> seconds;
    for (int number = 0; number < starts; ++number) {
        player.stop();
        // What the one before leaves behind is not this one's.
        runLoop(0.5);
        seconds.push_back(player.start(film(url)));
    }
    std::ranges::sort(seconds);
    return seconds.at(starts / 2);
}

/// The whole application, whose controls have gone by then.
double ourProcessor(const QString& url) {
    Services services(MpvOutputs::Window);
    MainWindow main(services, "pt");
    main.window().resize(windowSize);
    main.window().show();
    await([&main] { return main.window().isExposed(); });
    services.appState.playChannel(film(url));
    await([&services] { return services.playerManager.isPlaying(); });
    return processorWhilePlaying();
}

double bareProcessor(const QString& url) {
    BarePlayer player;
    player.start(film(url));
    return processorWhilePlaying();
}

/// Engines end in their own time.
Holdings afterRest() {
    runLoop(5);
    return Holdings::now();
}

void runManyStarts(const QString& url) {
    std::printf("%d starts and stops in a row\n", startsAndStops);
    OurPlayer player;
    for (int number = 1; number <= startsAndStops; ++number) {
        player.start(film(url));
        player.stop();
        if (number == 10 || number == startsAndStops) {
            afterRest().print(number);
        }
    }
}

void runSide(const QString& side, const QString& url) {
    const std::map<QString, std::function<double()>> sides{
        {QStringLiteral("start-ours"), [&url] { return startTime<OurPlayer>(url); }},
        {QStringLiteral("start-bare"), [&url] { return startTime<BarePlayer>(url); }},
        {QStringLiteral("processor-ours"), [&url] { return ourProcessor(url); }},
        {QStringLiteral("processor-bare"), [&url] { return bareProcessor(url); }},
    };
    Measurement measurement;
    measurement.seconds = sides.at(side)();
    printForParent(measurement);
}

/// A film of 1080p over HTTP with ranges.
class FilmServer final {
public:
    FilmServer() {
        makeFilm();
        m_server.Get("/film.mp4", [this](const httplib::Request&, httplib::Response& response) {
            response.set_content_provider(
                static_cast<std::size_t>(m_bytes.size()), "video/mp4",
                [this](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
                    return sink.write(m_bytes.constData() + offset, std::min<std::size_t>(length, 262144));
                });
        });
        m_port = m_server.bind_to_any_port("127.0.0.1");
        m_thread = std::thread([this] { m_server.listen_after_bind(); });
    }
    ~FilmServer() {
        m_server.stop();
        m_thread.join();
    }
    FilmServer(const FilmServer&) = delete;
    FilmServer& operator=(const FilmServer&) = delete;

    [[nodiscard]] QString url() const { return QStringLiteral("http://127.0.0.1:%1/film.mp4").arg(m_port); }

private:
    void makeFilm() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("film.mp4"));
        const QString recipe = QStringLiteral(
            "-v error -nostdin -f lavfi -i testsrc2=s=1920x1080:r=25:d=60 -f lavfi -i sine=f=440:d=60 "
            "-c:v libx264 -preset veryfast -b:v 5M -g 50 -pix_fmt yuv420p -c:a aac -movflags +faststart");
        QStringList arguments = recipe.split(QLatin1Char(' '));
        arguments.append(path);
        QFile file(path);
        if (QProcess::execute(QStringLiteral("ffmpeg"), arguments) != 0 || !file.open(QIODevice::ReadOnly)) {
            throw std::runtime_error("ffmpeg makes no film");
        }
        m_bytes = file.readAll();
    }

    QByteArray m_bytes;
    httplib::Server m_server;
    int m_port = 0;
    std::thread m_thread;
};

int runComparison() {
    const QTemporaryDir folder;
    qputenv("ONDAVIA_DATA_DIR", folder.path().toUtf8());
    qputenv("ONDAVIA_VAULT", "file");
    const FilmServer server;
    const auto sides = [&server](const char* what, int rounds) {
        return compare(rounds, {QStringLiteral("%1-ours").arg(QLatin1String(what)), server.url()},
                       {QStringLiteral("%1-bare").arg(QLatin1String(what)), server.url()});
    };
    sides("start", 3)
        .print("from `play` to the first frame of a film over HTTP (1080p; the middle of 9 starts, "
               "best of 3)");
    sides("processor", 3)
        .print("processor seconds for a second of 1080p, the application against mpv in a "
               "plain window (best of 3)");
    return QProcess::execute(QCoreApplication::applicationFilePath(), {QStringLiteral("many"), server.url()});
}

} // namespace
} // namespace ondavia::bench

int main(int argc, char** argv) {
    // As the application; the bare library's side has the heap as it comes.
    if (!std::string_view(argc > 1 ? argv[1] : "").ends_with("bare")) {
        ondavia::keepHeapSmall();
    }
    const QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        return ondavia::bench::runComparison();
    }
    ondavia::bench::drawAsTheApplication();
    if (arguments[1] == QStringLiteral("many")) {
        ondavia::bench::runManyStarts(arguments[2]);
    } else {
        ondavia::bench::runSide(arguments[1], arguments[2]);
    }
    return 0;
}
