#include "PlayerSides.h"
#include "support/BenchSupport.h"

#include "base/Heap.h"
#include "screens/QmlModules.h"
#include "screens/liveplayer/LivePlayerViewModel.h"

#include <QGuiApplication>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTemporaryDir>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <map>
#include <stdexcept>
#include <string_view>
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
    const int place = number % channels;
    Channel channel =
        itemAt(QStringLiteral("%1/live/demo/demo/%2.ts").arg(provider).arg(1001 + place), "live");
    channel.id = "main_" + std::to_string(place);
    channel.num = place + 1;
    channel.name = "Canal " + std::to_string(place + 1);
    channel.groupTitle = "Todos";
    channel.epgChannelId = "guia." + std::to_string(place);
    return channel;
}

/// The live player as viewers have it: its screen in a window, its list, favourites and a guide of one day.
class LivePlayer final {
public:
    LivePlayer() {
        StoreContext& context = m_services.store->mainContext();
        for (int place = 0; place < channels; ++place) {
            context.insert(demoChannel(QString(), place));
            keepDay(context, place);
        }
        context.save();
        provideScreens(m_engine);
        QObject::connect(&m_services.playerManager, &PlayerManager::isBufferingChanged, &m_engine, [this] {
            if (!m_services.playerManager.isBuffering() && m_services.playerManager.player()) {
                m_firstFrame = Clock::now();
            }
        });
    }
    /// In place of what plays. Seconds to the first frame.
    double start(const Channel& item) {
        m_firstFrame = {};
        const auto begin = Clock::now();
        if (m_model == nullptr) {
            open(item);
        } else {
            m_model->switchChannel(item);
        }
        await([this] { return m_firstFrame != Clock::time_point(); });
        return std::chrono::duration<double>(m_firstFrame - begin).count();
    }

private:
    static void keepDay(StoreContext& context, int place) {
        const Date midnight = std::chrono::floor<std::chrono::days>(currentDate());
        for (int half = 0; half < 48; ++half) {
            const Date start = midnight + half * std::chrono::minutes(30);
            context.insert(EPGProgram{std::to_string(place) + "-" + std::to_string(half),
                                      "guia." + std::to_string(place), "Programa " + std::to_string(half),
                                      std::nullopt, start, start + std::chrono::minutes(30), std::nullopt});
        }
    }
    void open(const Channel& item) {
        m_services.appState.setCurrentChannel(item);
        m_model = std::make_unique<LivePlayerViewModel>(
            LivePlayerServices{.player = {.appState = m_services.appState,
                                          .modelContext = m_services.store->mainContext(),
                                          .playerManager = m_services.playerManager,
                                          .scheduler = *m_services.scheduler,
                                          .audioSession = *m_services.audioSession,
                                          .systemVolume = m_services.systemVolume,
                                          .screenBrightness = *m_services.screenBrightness},
                               .remoteCommands = m_services.remoteCommandCenter,
                               .defaults = *m_services.defaults,
                               .guide = EPGService(m_services.guideEnvironment()),
                               .loadGuide = {}},
            item, std::make_shared<LiveChannels>(LiveChannels::fetch(m_services.store->mainContext())));
        QQmlComponent screen(&m_engine,
                             QUrl(QStringLiteral("qrc:/qt/qml/Ondavia/LivePlayer/LivePlayerView.qml")));
        m_view.reset(qobject_cast<QQuickItem*>(
            screen.createWithInitialProperties({{QStringLiteral("model"), QVariant::fromValue(m_model.get())},
                                                {QStringLiteral("width"), windowSize.width()},
                                                {QStringLiteral("height"), windowSize.height()}})));
        if (m_view == nullptr) {
            throw std::runtime_error(screen.errorString().toStdString());
        }
        m_view->setParentItem(m_window.window().contentItem());
        m_model->appear();
    }

    Services m_services{MpvOutputs::Window};
    PlainWindow m_window;
    QQmlEngine m_engine;
    std::unique_ptr<LivePlayerViewModel> m_model;
    std::unique_ptr<QQuickItem> m_view;
    Clock::time_point m_firstFrame;
};

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
    LivePlayer player;
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
    std::printf("%d zaps among %d channels, one connection at a time, from `switchChannel` to the first "
                "frame (best of %d)\n",
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
    const Zaps zaps = side == QStringLiteral("ours") ? zap<LivePlayer>(provider) : zap<BarePlayer>(provider);
    std::printf("%.6f %.6f %.3f\n", zaps.median, zaps.late, zaps.stall);
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
    ondavia::bench::runSide(arguments[1], arguments[2]);
    return 0;
}
