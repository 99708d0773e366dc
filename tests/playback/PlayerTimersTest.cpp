#include "PlayerManagerFixture.h"

#include <QSignalSpy>

#include <cmath>
#include <limits>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

class PlayerTimers : public PlayerManagerTest {
protected:
    /// Puts the engine somewhere and lets the manager read it.
    void reach(double time, double length) {
        engine().time = time;
        engine().length = length;
        scheduler.advance(0.5);
    }
};

TEST_F(PlayerTimers, ReadsPositionAndDurationEveryHalfSecond) {
    start(movie());
    engine().time = 3;
    engine().length = 100;
    scheduler.advance(0.499);
    EXPECT_EQ(manager->currentTime(), 0);
    EXPECT_EQ(manager->duration(), 0);
    scheduler.advance(0.001);
    EXPECT_EQ(manager->currentTime(), 3);
    EXPECT_EQ(manager->duration(), 100);
    engine().time = 3.5;
    scheduler.advance(0.5);
    EXPECT_EQ(manager->currentTime(), 3.5);
}

TEST_F(PlayerTimers, IgnoresPositionsThatAreNone) {
    start(movie());
    reach(3, 100);
    for (const double time : {-0.5, std::nan(""), std::numeric_limits<double>::infinity()}) {
        reach(time, 100);
        EXPECT_EQ(manager->currentTime(), 3);
    }
    reach(0, 100);
    EXPECT_EQ(manager->currentTime(), 0);
}

TEST_F(PlayerTimers, KeepsTheLastDurationThatWasOne) {
    start(movie());
    reach(3, 100);
    for (const double length : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        reach(3, length);
        EXPECT_EQ(manager->duration(), 100);
    }
    reach(3, 101);
    EXPECT_EQ(manager->duration(), 101);
}

TEST_F(PlayerTimers, APausedPlayerWakesNoScreen) {
    start(movie());
    reach(3, 100);
    QSignalSpy time(manager.get(), &PlayerManager::currentTimeChanged);
    QSignalSpy length(manager.get(), &PlayerManager::durationChanged);
    reach(3.009, 100);
    scheduler.advance(60);
    EXPECT_EQ(time.count(), 0);
    EXPECT_EQ(length.count(), 0);
    reach(3.02, 100);
    EXPECT_EQ(time.count(), 1);
    EXPECT_EQ(length.count(), 0);
}

TEST_F(PlayerTimers, SurvivesAScreenThatStopsAtATick) {
    start(movie());
    QObject::connect(manager.get(), &PlayerManager::currentTimeChanged, manager.get(),
                     [this] { manager->stop(); });
    reach(3, 100);
    EXPECT_EQ(manager->player(), nullptr);
    EXPECT_EQ(manager->duration(), 0);
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST_F(PlayerTimers, ReportsProgressOfAMovieEveryFiveSeconds) {
    std::vector<std::pair<double, double>> reports;
    manager->setOnProgressUpdate(
        [&](double position, double length) { reports.emplace_back(position, length); });
    start(movie());
    reach(20, 100);
    scheduler.advance(4.4);
    EXPECT_TRUE(reports.empty());
    scheduler.advance(0.1);
    EXPECT_THAT(reports, ElementsAre(Pair(20.0, 100.0)));
    scheduler.advance(10);
    EXPECT_EQ(reports.size(), 3U);
}

TEST_F(PlayerTimers, ReportsNothingOutsideItsBounds) {
    int reports = 0;
    manager->setOnProgressUpdate([&](double, double) { ++reports; });
    start(movie());
    const auto reportsAt = [&](double time, double length) {
        engine().time = time;
        engine().length = length;
        reports = 0;
        scheduler.advance(5);
        return reports;
    };
    EXPECT_EQ(reportsAt(60, 0), 0) << "the duration is not known";
    EXPECT_EQ(reportsAt(10, 100), 0) << "the first ten seconds";
    EXPECT_EQ(reportsAt(10.5, 100), 1);
    EXPECT_EQ(reportsAt(94.9, 100), 1);
    EXPECT_EQ(reportsAt(95, 100), 0) << "the end";
    EXPECT_EQ(reportsAt(96, 100), 0) << "the end";
    EXPECT_EQ(reportsAt(50, 100), 1);
}

TEST_F(PlayerTimers, ReportsNothingWithoutAnItem) {
    int reports = 0;
    manager->setOnProgressUpdate([&](double, double) { ++reports; });
    start(movie());
    reach(50, 100);
    manager->setCurrentItem(std::nullopt);
    scheduler.advance(10);
    EXPECT_EQ(reports, 0);
    manager->setCurrentItem(movie());
    scheduler.advance(5);
    EXPECT_EQ(reports, 1);
}

TEST_F(PlayerTimers, ReadNothingWithoutAnEngine) {
    start(movie());
    reach(50, 100);
    const auto kept = lastEngine.lock();
    manager->setPlayer(nullptr);
    kept->time = 60;
    kept->length = 200;
    scheduler.advance(2);
    EXPECT_EQ(manager->currentTime(), 50);
    EXPECT_EQ(manager->duration(), 100);
}

TEST_F(PlayerTimers, ReportsNothingForLiveChannels) {
    int reports = 0;
    manager->setOnProgressUpdate([&](double, double) { ++reports; });
    start(liveChannel());
    reach(50, 100);
    EXPECT_EQ(scheduler.activeTimers(), 1);
    scheduler.advance(30);
    EXPECT_EQ(reports, 0);
    EXPECT_EQ(manager->currentTime(), 50);
}

TEST_F(PlayerTimers, ReportsWithoutAListenerAndToOneThatLeaves) {
    start(movie());
    reach(20, 100);
    scheduler.advance(5);
    manager->setOnProgressUpdate([this](double, double) {
        manager->setOnProgressUpdate(nullptr);
        manager->stop();
    });
    scheduler.advance(5);
    EXPECT_EQ(manager->player(), nullptr);
    EXPECT_FALSE(manager->onProgressUpdate());
}

TEST_F(PlayerTimers, HaveOneTimerOfEachKindAfterAChangeOfItem) {
    start(movie());
    start(movie());
    EXPECT_EQ(scheduler.activeTimers(), 2);
    start(liveChannel());
    EXPECT_EQ(scheduler.activeTimers(), 1);
    manager->stop();
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST_F(PlayerTimers, GoWithTheManager) {
    start(movie());
    manager.reset();
    scheduler.advance(10);
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST_F(PlayerTimers, SeekingShowsItsTargetAtOnce) {
    start(movie());
    reach(20, 100);
    manager->seek(70);
    EXPECT_EQ(engine().time, 70);
    EXPECT_EQ(manager->currentTime(), 70);
    manager->seek(0);
    EXPECT_EQ(manager->currentTime(), 0);
    manager->seek(100);
    EXPECT_EQ(manager->currentTime(), 100);
}

TEST_F(PlayerTimers, SeekingOutsideTheItemDoesNothing) {
    start(movie());
    reach(20, 100);
    journal.clear();
    for (const double target : {-0.1, 100.1, std::nan(""), std::numeric_limits<double>::infinity()}) {
        manager->seek(target);
    }
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(manager->currentTime(), 20);
}

TEST_F(PlayerTimers, SeekingWithoutADurationDoesNothing) {
    start(liveChannel());
    reach(20, 0);
    journal.clear();
    manager->seek(10);
    manager->seek(0);
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(manager->currentTime(), 20);
}

TEST_F(PlayerTimers, SeekingWithoutAnEngineDoesNothing) {
    manager->setDuration(100);
    manager->seek(10);
    EXPECT_EQ(manager->currentTime(), 0);
}

} // namespace
} // namespace ondavia::testing
