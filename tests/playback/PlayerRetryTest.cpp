#include "PlayerManagerFixture.h"
#include "support/MarkedTexts.h"

#include <QSignalSpy>

#include <algorithm>

namespace ondavia::testing {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;

class PlayerRetry : public PlayerManagerTest {
protected:
    void failNow() {
        engine().fail();
        scheduler.runPending();
    }

    long creations() const { return std::ranges::count(journal, "create " + movie().url); }
};

TEST_F(PlayerRetry, WaitsASecondThenPlaysOnFromThePositionReached) {
    start(movie());
    engine().time = 33;
    engine().length = 100;
    scheduler.advance(0.5);
    manager->setIsBuffering(false);
    manager->setError("before");
    failNow();
    EXPECT_EQ(manager->retryCount(), 1);
    EXPECT_TRUE(manager->isBuffering());
    EXPECT_EQ(manager->error(), std::nullopt);
    EXPECT_NE(manager->player(), nullptr) << "the old engine stays during the delay";
    scheduler.advance(0.999);
    EXPECT_EQ(creations(), 1);
    scheduler.advance(0.001);
    EXPECT_EQ(creations(), 2);
    EXPECT_EQ(manager->pendingStartPosition(), 33);
    EXPECT_EQ(manager->retryCount(), 0);
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    scheduler.runPending();
    EXPECT_EQ(engine().time, 33);
}

TEST_F(PlayerRetry, AStartThatFailsAgainAndAgainStillGoesWhereItWasMeantTo) {
    manager->play(movie(), 1337);
    scheduler.runPending();
    for (int attempt = 0; attempt < 3; ++attempt) {
        failNow();
        scheduler.advance(1);
        EXPECT_EQ(manager->pendingStartPosition(), 1337);
    }
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    scheduler.runPending();
    EXPECT_EQ(engine().time, 1337);
}

TEST_F(PlayerRetry, TriesWithoutEndAndAlwaysAfterOneSecond) {
    start(movie());
    QSignalSpy errors(manager.get(), &PlayerManager::errorChanged);
    for (int attempt = 1; attempt <= 20; ++attempt) {
        failNow();
        EXPECT_EQ(manager->retryCount(), 1);
        scheduler.advance(1);
        EXPECT_EQ(creations(), attempt + 1);
        EXPECT_TRUE(manager->isBuffering());
    }
    EXPECT_THAT(scheduler.requestedSleeps(), SizeIs(20));
    EXPECT_THAT(scheduler.requestedSleeps(), Each(1.0));
    EXPECT_EQ(errors.count(), 0);
}

TEST_F(PlayerRetry, WaitsLongerOnlyForFailuresWithinOneDelay) {
    start(movie());
    for (int failure = 0; failure < 5; ++failure) {
        failNow();
    }
    EXPECT_THAT(scheduler.requestedSleeps(), ElementsAre(1.0, 2.0, 4.0, 8.0, 10.0));
    EXPECT_EQ(manager->retryCount(), PlayerManager::maxRetries);
}

TEST_F(PlayerRetry, GivesUpAtTheBoundAndLeavesNoMessageBehind) {
    start(movie());
    manager->setRetryCount(PlayerManager::maxRetries);
    std::vector<std::optional<std::string>> messages;
    QObject::connect(manager.get(), &PlayerManager::errorChanged, manager.get(),
                     [&] { messages.push_back(manager->error()); });
    failNow();
    EXPECT_THAT(messages, ElementsAre("Erro de reproducao", std::nullopt));
    EXPECT_EQ(manager->player(), nullptr);
    EXPECT_EQ(manager->currentItem(), std::nullopt);
    EXPECT_EQ(scheduler.activeSleeps(), 0);
}

TEST_F(PlayerRetry, AsksForItsTextsByTheirKeys) {
    const MarkedTexts texts{"player.error", "player.invalidURL"};
    manager->play(movie("http://tv.example/a film.mp4"), 0);
    EXPECT_EQ(manager->error(), "<player.invalidURL>");
    start(movie());
    manager->setRetryCount(PlayerManager::maxRetries);
    std::vector<std::optional<std::string>> messages;
    QObject::connect(manager.get(), &PlayerManager::errorChanged, manager.get(),
                     [&] { messages.push_back(manager->error()); });
    failNow();
    EXPECT_THAT(messages, ElementsAre("<player.error>", std::nullopt));
}

TEST_F(PlayerRetry, AFailureWithoutACurrentItemEndsInStop) {
    start(movie());
    engine().fail();
    manager->stop();
    std::vector<std::optional<std::string>> messages;
    QObject::connect(manager.get(), &PlayerManager::errorChanged, manager.get(),
                     [&] { messages.push_back(manager->error()); });
    scheduler.runPending();
    EXPECT_THAT(messages, ElementsAre("Erro de reproducao", std::nullopt));
    EXPECT_EQ(scheduler.activeSleeps(), 0);
}

TEST_F(PlayerRetry, ASleepingRetryFindsNothingToPlayAfterStop) {
    start(movie());
    failNow();
    manager->stop();
    scheduler.advance(2);
    EXPECT_EQ(creations(), 1);
    EXPECT_EQ(manager->player(), nullptr);
    EXPECT_EQ(manager->error(), std::nullopt);
}

TEST_F(PlayerRetry, ASleepingRetryPlaysTheItemThatIsCurrentThen) {
    start(movie());
    failNow();
    const auto other = liveChannel("http://tv.example/other.ts");
    start(other);
    engine().time = 7;
    scheduler.advance(1);
    EXPECT_EQ(creations(), 1);
    EXPECT_EQ(std::ranges::count(journal, "create " + other.url), 2);
    EXPECT_EQ(manager->currentItem(), other);
    EXPECT_EQ(manager->pendingStartPosition(), 7);
}

TEST_F(PlayerRetry, ForgetsTheStepsToOtherTracksButNotWhoSavesProgress) {
    start(liveChannel());
    manager->setOnNextTrack([] {});
    manager->setOnPreviousTrack([] {});
    manager->setOnProgressUpdate([](double, double) {});
    failNow();
    EXPECT_TRUE(manager->onNextTrack());
    scheduler.advance(1);
    EXPECT_FALSE(manager->onNextTrack());
    EXPECT_FALSE(manager->onPreviousTrack());
    EXPECT_TRUE(manager->onProgressUpdate());
}

TEST_F(PlayerRetry, StaysMutedThroughARetry) {
    start(movie());
    manager->toggleMute();
    failNow();
    scheduler.advance(1);
    EXPECT_EQ(creations(), 2);
    EXPECT_EQ(engine().volume, 0.0F);
    EXPECT_TRUE(manager->isMuted());
}

TEST_F(PlayerRetry, AManagerThatDiesDuringTheDelayPlaysNothing) {
    start(movie());
    failNow();
    EXPECT_EQ(scheduler.activeSleeps(), 1);
    manager.reset();
    scheduler.advance(2);
    EXPECT_EQ(creations(), 1);
    EXPECT_EQ(scheduler.activeSleeps(), 0);
}

TEST_F(PlayerRetry, PlaysOnByItselfOnceTheStreamIsMended) {
    start(liveChannel());
    failNow();
    scheduler.advance(1);
    engine().report(FSPlaybackState::Playing);
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    scheduler.runPending();
    EXPECT_TRUE(manager->isPlaying());
    EXPECT_FALSE(manager->isBuffering());
    EXPECT_EQ(scheduler.activeSleeps(), 0);
}

} // namespace
} // namespace ondavia::testing
