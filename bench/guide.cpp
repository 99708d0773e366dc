#include "BareGuide.h"
#include "support/BenchSupport.h"

#include "guide/EPGService.h"
#include "platform/linux/CurlURLSession.h"
#include "store/LibraryStore.h"

#include <QCoreApplication>
#include <QEventLoop>
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

void timeQueries(const EPGService& service) {
    constexpr int rounds = 500;
    const auto channelOf = [](int round) { return "canal." + std::to_string(1000 + round * 37) + ".demo"; };
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
    return 0;
}

} // namespace
} // namespace ondavia::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        return ondavia::bench::runComparison();
    }
    const QTemporaryDir folder;
    const std::filesystem::path path(folder.path().toStdString());
    const std::string url = arguments[2].toStdString();
    return arguments[1] == QStringLiteral("ours") ? ondavia::bench::runOurs(url, path)
                                                  : ondavia::bench::runBare(url, path);
}
