#include "PlayerSides.h"
#include "support/BenchSupport.h"

#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <map>
#include <stdexcept>
#include <vector>

namespace ondavia::bench {
namespace {

constexpr int channels = 10;
constexpr int measuredZaps = 100;
constexpr int manyZaps = 1000;
constexpr int rounds = 3;
/// A channel shows this long before the next one is wanted, in seconds.
constexpr double look = 0.3;

/// Figures of many zaps; seconds, and milliseconds for the stall.
struct Zaps final {
    double median = 0;
    double late = 0;
    double stall = 0;
};

Channel demoChannel(const QString& provider, int number) {
    return itemAt(QStringLiteral("%1/live/demo/demo/%2.ts").arg(provider).arg(1001 + number % channels),
                  "live");
}

template<class Player> Zaps zap(const QString& provider) {
    Player player;
    for (int number = 0; number < channels; ++number) {
        player.start(demoChannel(provider, number));
        runLoop(look);
    }
    std::vector<double> seconds;
    const StallMeter stall;
    for (int number = 0; number < measuredZaps; ++number) {
        seconds.push_back(player.start(demoChannel(provider, number)));
        runLoop(look);
    }
    std::ranges::sort(seconds);
    return {seconds.at(measuredZaps / 2), seconds.at(measuredZaps * 95 / 100), stall.longestMilliseconds()};
}

void zapManyTimes(const QString& provider) {
    std::printf("%d zaps\n", manyZaps);
    OurPlayer player;
    for (int number = 1; number <= manyZaps; ++number) {
        player.start(demoChannel(provider, number));
        if (number == 10 || number == manyZaps) {
            runLoop(5);
            Holdings::now().print(number);
        }
    }
}

Zaps zapsOf(const QString& side, const QString& provider) {
    const auto figures = runChildForFigures({side, provider});
    return {figures.at(0), figures.at(1), figures.at(2)};
}

/// The best of several runs of each side, taken in turns.
Zaps better(const Zaps& left, const Zaps& right) {
    return {std::min(left.median, right.median), std::min(left.late, right.late),
            std::max(left.stall, right.stall)};
}

void print(const char* what, const Zaps& zaps) {
    std::printf("  %-5s median %6.1f ms   95th percentile %6.1f ms   longest main-thread stall %5.1f ms\n",
                what, zaps.median * 1000, zaps.late * 1000, zaps.stall);
}

int runComparison() {
    const QTemporaryDir folder;
    qputenv("ONDAVIA_DATA_DIR", folder.path().toUtf8());
    qputenv("ONDAVIA_VAULT", "file");
    // An overlap of two connections would be refused, and seen.
    const ProviderProcess provider(
        {QStringLiteral("--max-connections"), QStringLiteral("1"), QStringLiteral("--lazy-media")});
    const QString ours = QStringLiteral("ours");
    const QString bare = QStringLiteral("bare");
    Zaps ourZaps = zapsOf(ours, provider.url());
    Zaps bareZaps = zapsOf(bare, provider.url());
    for (int round = 1; round < rounds; ++round) {
        ourZaps = better(ourZaps, zapsOf(ours, provider.url()));
        bareZaps = better(bareZaps, zapsOf(bare, provider.url()));
    }
    std::printf(
        "%d zaps among %d channels, one connection at a time, from `play` to the first frame (best of %d)\n",
        measuredZaps, channels, rounds);
    print("ours", ourZaps);
    print("bare", bareZaps);
    std::printf("  ratio median %6.2f      95th percentile %6.2f\n", ourZaps.median / bareZaps.median,
                ourZaps.late / bareZaps.late);
    std::fflush(stdout);
    return QProcess::execute(QCoreApplication::applicationFilePath(),
                             {QStringLiteral("many"), provider.url()});
}

void runSide(const QString& side, const QString& provider) {
    if (side == QStringLiteral("many")) {
        zapManyTimes(provider);
        return;
    }
    const Zaps zaps = side == QStringLiteral("ours") ? zap<OurPlayer>(provider) : zap<BarePlayer>(provider);
    std::printf("%.6f %.6f %.3f\n", zaps.median, zaps.late, zaps.stall);
}

} // namespace
} // namespace ondavia::bench

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        return ondavia::bench::runComparison();
    }
    ondavia::bench::drawAsTheApplication();
    ondavia::bench::runSide(arguments[1], arguments[2]);
    return 0;
}
