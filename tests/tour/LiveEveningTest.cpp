// An evening before the television: the whole application in its window, the demo provider, real streams.
#include "app/MainWindow.h"
#include "app/Services.h"
#include "demo/DemoProvider.h"
#include "personal/FavoritesService.h"
#include "tour/Tour.h"

#include <QDateTime>
#include <QQuickItem>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <clocale>

namespace ondavia::testing {
namespace {

/// Steps of an evening. Each waits for what a viewer would see.
class Evening final : public Tour {
public:
    using Tour::Tour;

    void openFirstChannel() {
        selectTab(1);
        click(row(QStringLiteral("liveCategories"), 0));
        waitFor(QStringLiteral("the channels"), [this] { return isShown(QStringLiteral("liveChannels")); });
        settle();
        click(row(QStringLiteral("liveChannels"), 0));
        seePicture();
    }
    /// Through the whole category; how many channels it has.
    int zapAround() {
        const std::string first = onAir();
        int zaps = 0;
        do {
            press(Qt::Key_PageUp);
            seePicture();
            ++zaps;
        } while (onAir() != first && zaps < 50);
        return zaps;
    }
    void goTo(const Channel& channel) {
        for (const char digit : std::to_string(channel.num)) {
            press(Qt::Key_0 + (digit - '0'));
        }
        press(Qt::Key_Return);
        seePicture();
    }
    void playYesterdaysFirst() {
        press(Qt::Key_G);
        waitFor(QStringLiteral("the guide"), [this] { return isShown(QStringLiteral("guideHeader")); });
        settle();
        click(find(QStringLiteral("guideHeader")));
        click(row(QStringLiteral("guideDays"), 1));
        waitFor(QStringLiteral("the programmes"),
                [this] { return isShown(QStringLiteral("guidePrograms")); });
        settle();
        click(row(QStringLiteral("guidePrograms"), 0));
        seePicture();
    }
    void favour() { press(Qt::Key_H); }
    void minimise() {
        while (!services().appState.showMiniPlayer()) {
            press(Qt::Key_Escape);
            settle();
        }
    }
    void browseFilms() {
        selectTab(2);
        settle();
    }
    void dragToTheOtherSide() {
        const QPoint from = middleOfMini();
        QTest::mousePress(&window(), Qt::LeftButton, {}, from);
        for (int step = 1; step <= 10; ++step) {
            QTest::mouseMove(&window(), from - QPoint(from.x() * step / 12, 0));
        }
        QTest::mouseRelease(&window(), Qt::LeftButton, {}, from - QPoint(from.x() * 10 / 12, 0));
        waitFor(QStringLiteral("the other side"),
                [this] { return middleOfMini().x() < window().width() / 4; });
        settle();
    }
    void expand() {
        QTest::mouseClick(&window(), Qt::LeftButton, {}, middleOfMini());
        waitFor(QStringLiteral("the whole player"), [this] { return isShown(QStringLiteral("zapList")); });
        settle();
    }
    void close() {
        minimise();
        click(find(QStringLiteral("miniClose")));
    }
    void watchOn(double seconds) {
        const double from = manager().currentTime();
        waitFor(QStringLiteral("the next seconds"),
                [&] { return manager().currentTime() >= from + seconds; });
    }
    [[nodiscard]] std::string onAir() { return manager().currentItem().value_or(Channel()).id; }
    [[nodiscard]] PlayerManager& manager() { return services().playerManager; }

private:
    void seePicture() {
        waitFor(QStringLiteral("the picture"),
                [this] { return manager().hasLoggedFirstFrameTracks() && manager().isPlaying(); });
    }
    [[nodiscard]] QPoint middleOfMini() const {
        const QQuickItem& mini = find(QStringLiteral("miniPlayer"));
        return mini.mapToScene(QPointF(mini.width() / 2, mini.height() / 2)).toPoint();
    }
};

TEST(LiveEvening, FromTheFirstChannelToTheLastClick) {
    std::setlocale(LC_NUMERIC, "C");
    demo::DemoOptions options;
    options.maxConnections = 1;
    demo::DemoProvider provider(options);
    const QString address = QString::fromStdString(provider.start());
    const QTemporaryDir folder;
    qputenv("ONDAVIA_DATA_DIR", folder.path().toUtf8());
    qputenv("ONDAVIA_VAULT", "file");
    Services services(MpvOutputs::Window);
    const MainWindow main(services, "pt");
    main.window().resize(1280, 800);
    Evening evening(main.window(), services, folder.path(), QStringLiteral("picture-"));
    StoreContext& context = services.store->mainContext();

    evening.signIn(address, QStringLiteral("demo"), QStringLiteral("demo"));
    evening.openFirstChannel();
    EXPECT_EQ(evening.zapAround(), 8) << "round the category";

    const auto channel = context.fetchFirst<Channel>(
        {.where = field(&Channel::type) == "live" && field(&Channel::tvArchive) == true,
         .sort = {descending(&Channel::num)}});
    ASSERT_TRUE(channel);
    evening.goTo(*channel);
    EXPECT_EQ(evening.onAir(), channel->id);
    evening.playYesterdaysFirst();
    const std::string prefix = channel->id + "_catchup_";
    ASSERT_TRUE(evening.onAir().starts_with(prefix));
    const auto programme = context.fetchFirst<EPGProgram>(
        {.where = field(&EPGProgram::id) == evening.onAir().substr(prefix.size())});
    ASSERT_TRUE(programme);
    EXPECT_LT(programme->stop, currentDate());
    const auto start = std::chrono::floor<std::chrono::milliseconds>(programme->start).time_since_epoch();
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(programme->stop - programme->start);
    EXPECT_EQ(provider.lastStream(), "/timeshift/demo/demo/" + std::to_string(minutes.count()) + "/" +
                                         QDateTime::fromMSecsSinceEpoch(start.count(), Qt::UTC)
                                             .toString(QStringLiteral("yyyy-MM-dd:HH-mm"))
                                             .toStdString() +
                                         "/" + std::to_string(channel->streamId) + ".ts");

    evening.favour();
    EXPECT_TRUE(FavoritesService(context, "main").isFavorite(channel->id))
        << "the channel, not its recording";
    const auto engine = evening.manager().player();
    evening.watchOn(1);
    evening.minimise();
    evening.browseFilms();
    evening.watchOn(1);
    evening.dragToTheOtherSide();
    evening.watchOn(1);
    evening.expand();
    evening.watchOn(1);
    EXPECT_EQ(evening.manager().player(), engine) << "the same stream all the time";
    EXPECT_TRUE(provider.lastStream().starts_with("/timeshift/")) << "nothing was asked for again";
    EXPECT_EQ(provider.openStreams(), 1);
    evening.close();
    EXPECT_FALSE(services.appState.isPlaying());
    EXPECT_EQ(provider.mostStreams(), 1) << "one connection at a time, all evening";
    evening.manager().stop();
}

} // namespace
} // namespace ondavia::testing
