#include "engine/EngineTestSupport.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace ondavia::testing {
namespace {

using namespace std::chrono_literals;

TEST(EngineShutdown, PostsNothingAfterwards) {
    Engine engine(MpvOutputs::Null, Media::shared().movie);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("prepared"));
    engine->shutdown();
    const auto events = engine.events();
    EXPECT_FALSE(waitUntil([&] { return engine.events() != events; }, 500ms));
    EXPECT_EQ(engine->playbackState(), FSPlaybackState::Stopped);
    EXPECT_EQ(engine->loadState(), 0U);
    engine->play();
    engine->setCurrentPlaybackTime(3);
    engine->exchangeSelectedStream(1);
    engine->shutdown();
}

TEST(EngineShutdown, ReportsNoFailureThatCameTooLate) {
    Engine engine(MpvOutputs::Null, "memory://nothing");
    engine->prepareToPlay();
    engine->shutdown();
    drainEvents();
    EXPECT_TRUE(engine.events().empty());
}

TEST(EngineShutdown, SilentServerNeverHoldsTheMainThread) {
    const SilentServer server;
    MainThreadWatch watch;
    for (int round = 0; round < 5; ++round) {
        Engine engine(MpvOutputs::Null, server.url("/live/user/word/1.ts"));
        engine->prepareToPlay();
        EXPECT_FALSE(engine.await("prepared", 200ms));
        engine->pause();
        engine->setCurrentPlaybackTime(5);
        engine->shutdown();
        drainEvents();
    }
    const double gap = watch.longestGapMilliseconds();
    RecordProperty("longestGapMicroseconds", static_cast<int>(gap * 1000));
    std::printf("longest gap of the main loop: %.1f ms\n", gap);
    // Who waits for the silent server waits for half a minute.
    EXPECT_LT(gap, 5000);
    EXPECT_TRUE(waitForShutDownEngines(20s));
}

TEST(EngineShutdown, FiftyEnginesLeaveNoThreads) {
    const Media& media = Media::shared();
    {
        Engine first(MpvOutputs::Null, media.movie);
        first->prepareToPlay();
        ASSERT_TRUE(first.await("state:1"));
    }
    ASSERT_TRUE(waitForShutDownEngines(10s));
    const int before = threadCount();
    for (int round = 0; round < 50; ++round) {
        Engine engine(MpvOutputs::Null, media.movie);
        engine->prepareToPlay();
        if (round % 5 == 0) {
            ASSERT_TRUE(engine.await("prepared"));
        }
    }
    EXPECT_TRUE(waitForShutDownEngines(20s));
    EXPECT_TRUE(waitUntil([&] { return threadCount() <= before; })) << threadCount() << " > " << before;
}

TEST(EngineShutdown, ProcessEndsPromptlyAndWellWithEnginesUnderWay) {
    const SilentServer server;
    QProcess probe;
    probe.start(QStringLiteral(ENGINE_EXIT_PROBE),
                {QString::fromStdString(server.url("/live/user/segredo/1.ts"))});
    // The silent server alone would hold it for twice as long.
    ASSERT_TRUE(probe.waitForFinished(15000));
    EXPECT_EQ(probe.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(probe.exitCode(), 0);
    EXPECT_FALSE(probe.readAllStandardError().contains("segredo"));
}

} // namespace
} // namespace ondavia::testing
