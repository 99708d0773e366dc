#include "engine/EngineScene.h"
#include "engine/EngineTestSupport.h"

#include <QProcess>
#include <QSGRendererInterface>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <utility>

namespace ondavia::testing {
namespace {

using namespace std::chrono_literals;

QImage frameOfFilm(double seconds) {
    const auto folder = Media::shared().folder;
    const QString path = QString::fromStdString((folder / "frame.png").string());
    QProcess::execute(QStringLiteral("ffmpeg"),
                      {QStringLiteral("-loglevel"), QStringLiteral("error"), QStringLiteral("-y"),
                       QStringLiteral("-ss"), QString::number(seconds), QStringLiteral("-i"),
                       QString::fromStdString((folder / "film.mp4").string()), QStringLiteral("-frames:v"),
                       QStringLiteral("1"), path});
    return QImage(path);
}

TEST(EngineWindow, ShowsTheFilmsPictureUprightAfterAFirstFrame) {
    Scene scene;
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    Scene::host(engine, scene.large());
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    EXPECT_LT(engine.indexOf("prepared"), engine.indexOf("firstFrame"));
    EXPECT_LT(engine.indexOf("firstFrame"), engine.indexOf("state:1"));
    EXPECT_EQ(engine.count("firstFrame"), 1);
    const bool software = qgetenv("QT_QUICK_BACKEND") == "software";
    EXPECT_EQ(scene.window().rendererInterface()->graphicsApi(),
              software ? QSGRendererInterface::Software : QSGRendererInterface::OpenGL);
    ASSERT_TRUE(pictureMoves(scene, scene.large()));

    engine->pause();
    engine->setCurrentPlaybackTime(5);
    const QImage expected = frameOfFilm(5);
    ASSERT_FALSE(expected.isNull());
    EXPECT_TRUE(waitUntil([&] { return difference(scene.grab(*scene.large()), expected) < 8; }, 10s))
        << difference(scene.grab(*scene.large()), expected);
    EXPECT_GT(difference(scene.grab(*scene.large()).mirrored(), expected), 16);
}

TEST(EngineWindow, MovesBetweenHostsWithoutAStop) {
    Scene scene;
    const MediaServer server;
    Engine engine(MpvOutputs::Window, server.url("/live/user/word/film.ts"));
    Scene::host(engine, scene.large());
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    ASSERT_TRUE(showsPicture(scene, scene.large()));
    const int requests = server.requests();
    for (int round = 0; round < 3; ++round) {
        double time = engine->currentPlaybackTime();
        Scene::host(engine, scene.small());
        EXPECT_TRUE(showsPicture(scene, scene.small()));
        EXPECT_TRUE(pictureMoves(scene, scene.small()));
        EXPECT_TRUE(engine.awaitPosition(time + 0.1));
        time = engine->currentPlaybackTime();
        Scene::host(engine, scene.large());
        EXPECT_TRUE(pictureMoves(scene, scene.large()));
        EXPECT_TRUE(engine.awaitPosition(time + 0.1));
    }
    EXPECT_EQ(server.requests(), requests);
    EXPECT_EQ(engine.count("prepared"), 1);
    EXPECT_EQ(engine.count("state:1"), 1);
    EXPECT_FALSE(engine.has("state:2"));
}

TEST(EngineWindow, KeepsThePausedPictureOnTheWayToAnotherHost) {
    Scene scene;
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    Scene::host(engine, scene.large());
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    engine->pause();
    ASSERT_TRUE(engine.await("state:2"));
    ASSERT_TRUE(showsPicture(scene, scene.large()));
    const QImage paused = scene.grab(*scene.large());
    Scene::host(engine, scene.small());
    EXPECT_LT(difference(scene.grab(*scene.small()), paused), 12) << "at once";
    EXPECT_TRUE(waitUntil([&] { return difference(scene.grab(*scene.small()), paused) < 8; }, 5s));
}

TEST(EngineWindow, PlaysWithoutAHostAndShowsThePictureOnceThereIsOne) {
    Scene scene;
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    ASSERT_TRUE(engine.awaitPosition(0.5));
    Scene::host(engine, scene.large());
    EXPECT_TRUE(showsPicture(scene, scene.large()));
    EXPECT_TRUE(pictureMoves(scene, scene.large()));
    EXPECT_EQ(engine.count("firstFrame"), 1);
}

TEST(EngineWindow, GoesOnWhileTheWindowIsHiddenAndShowsThePictureAgain) {
    Scene scene;
    scene.window().setPersistentSceneGraph(false);
    scene.window().setPersistentGraphics(false);
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    Scene::host(engine, scene.large());
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    ASSERT_TRUE(showsPicture(scene, scene.large()));
    scene.window().hide();
    ASSERT_TRUE(engine.awaitPosition(engine->currentPlaybackTime() + 1.5));
    scene.window().show();
    EXPECT_TRUE(showsPicture(scene, scene.large()));
    EXPECT_TRUE(pictureMoves(scene, scene.large()));
    EXPECT_FALSE(engine.has("finish:1"));
}

TEST(EngineWindow, OutlivesItsWindowAndShowsThePictureInAnother) {
    auto scene = std::make_unique<Scene>();
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    Scene::host(engine, scene->large());
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    ASSERT_TRUE(showsPicture(*scene, scene->large()));
    scene.reset();
    ASSERT_TRUE(engine.awaitPosition(engine->currentPlaybackTime() + 0.5));
    Scene next;
    Scene::host(engine, next.large());
    EXPECT_TRUE(showsPicture(next, next.large()));
    EXPECT_TRUE(pictureMoves(next, next.large()));
    EXPECT_EQ(engine.count("prepared"), 1);
}

TEST(EngineWindow, IsBlackAfterShutdown) {
    Scene scene;
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    Scene::host(engine, scene.large());
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    ASSERT_TRUE(showsPicture(scene, scene.large()));
    engine->shutdown();
    EXPECT_TRUE(isBlack(scene.grab(*scene.large())));
}

TEST(EngineWindow, TheNextEngineDrawsWithTheRendererOfTheOneBeforeAndWithoutItsPicture) {
    Scene scene;
    const SilentServer silent;
    const auto room = std::make_shared<EngineRoom>(MpvOutputs::Window);
    const auto rendererThreads = [] { return threadsNamed("ondavia-video"); };
    Engine first(room, Media::shared().movie);
    Scene::host(first, scene.large());
    first->prepareToPlay();
    ASSERT_TRUE(first.await("state:1"));
    ASSERT_TRUE(showsPicture(scene, scene.large()));
    ASSERT_TRUE(waitUntil([&] { return rendererThreads().size() == 1; })) << "that of the scene before ends";
    const auto renderer = rendererThreads();
    first->shutdown();
    {
        Engine waiting(room, silent.url("/live/user/word/1.ts"));
        Scene::host(waiting, scene.large());
        waiting->prepareToPlay();
        for (int width = 640; width > 600; --width) {
            waiting->view()->item()->setSize({static_cast<qreal>(width), 360});
            EXPECT_TRUE(isBlack(scene.grab(*scene.large())));
        }
        EXPECT_FALSE(waiting.has("firstFrame"));
    }
    Engine last(room, Media::shared().tracks);
    Scene::host(last, scene.large());
    last->prepareToPlay();
    ASSERT_TRUE(last.await("state:1"));
    EXPECT_EQ(last.count("firstFrame"), 1);
    EXPECT_EQ(rendererThreads(), renderer);
    EXPECT_TRUE(pictureMoves(scene, scene.large()));
}

TEST(EngineWindow, TheNextEngineOpensPausedWithItsOwnPicture) {
    Scene scene;
    const auto room = std::make_shared<EngineRoom>(MpvOutputs::Window);
    Engine first(room, Media::shared().movie);
    Scene::host(first, scene.large());
    first->prepareToPlay();
    ASSERT_TRUE(first.await("state:1"));
    first->shutdown();
    Engine second(room, Media::shared().movie);
    Scene::host(second, scene.large());
    second->setShouldAutoplay(false);
    second->prepareToPlay();
    ASSERT_TRUE(second.await("firstFrame"));
    EXPECT_TRUE(showsPicture(scene, scene.large()));
    EXPECT_FALSE(second.has("state:1"));
}

TEST(EngineWindow, TheNextEngineDrawsInAnotherWindowToo) {
    auto scene = std::make_unique<Scene>();
    const auto room = std::make_shared<EngineRoom>(MpvOutputs::Window);
    Engine first(room, Media::shared().movie);
    Scene::host(first, scene->large());
    first->prepareToPlay();
    ASSERT_TRUE(first.await("state:1"));
    ASSERT_TRUE(showsPicture(*scene, scene->large()));
    first->shutdown();
    scene.reset();
    Scene next;
    Engine second(room, Media::shared().movie);
    Scene::host(second, next.large());
    second->prepareToPlay();
    ASSERT_TRUE(second.await("state:1"));
    EXPECT_TRUE(showsPicture(next, next.large()));
    EXPECT_TRUE(pictureMoves(next, next.large()));
}

TEST(EngineWindow, FillsOrFitsOrStretchesToARatio) {
    Scene scene;
    scene.large()->setSize({360, 360});
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    Scene::host(engine, scene.large());
    const auto strip = [&] { return scene.grab(*scene.large()).copy(60, 10, 240, 30); };
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    engine->pause();
    ASSERT_TRUE(engine.await("state:2"));
    ASSERT_TRUE(showsPicture(scene, scene.large()));
    EXPECT_TRUE(waitUntil([&] { return isBlack(strip()); }, 5s)) << "fits by default";
    engine->setScalingMode(FSScalingMode::Fill);
    engine->view()->setNeedsRefreshCurrentPic();
    EXPECT_TRUE(waitUntil([&] { return !isBlack(strip()); }, 5s));
    engine->setScalingMode(FSScalingMode::Fit);
    EXPECT_TRUE(waitUntil([&] { return isBlack(strip()); }, 5s));
    engine->view()->setDarPreference(1);
    EXPECT_FLOAT_EQ(engine->view()->darPreference(), 1);
    EXPECT_TRUE(waitUntil([&] { return !isBlack(strip()); }, 5s));
    engine->view()->setDarPreference(0);
    EXPECT_TRUE(waitUntil([&] { return isBlack(strip()); }, 5s));
}

TEST(EngineWindow, DrawsThePickedSubtitle) {
    const MediaServer server;
    Scene scene;
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    Scene::host(engine, scene.large());
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    engine->pause();
    engine->setCurrentPlaybackTime(4);
    ASSERT_TRUE(waitUntil([&] { return std::abs(engine->currentPlaybackTime() - 4) < 0.1; }));
    const auto bottom = [&] { return scene.grab(*scene.large()).copy(160, 280, 320, 80); };
    ASSERT_TRUE(showsPicture(scene, scene.large()));
    QImage plain;
    int timesUnchanged = 0;
    ASSERT_TRUE(waitUntil([&] {
        const QImage before = std::exchange(plain, bottom());
        timesUnchanged = plain == before ? timesUnchanged + 1 : 0;
        return timesUnchanged > 20;
    })) << "the frame that was sought comes to rest";
    engine->loadThenActiveSubtitle(server.url("/file/user/word/legenda.srt"));
    EXPECT_TRUE(waitUntil([&] { return difference(bottom(), plain) > 3; }, 10s));
    engine->view()->setCoveredBottom(0.4);
    EXPECT_TRUE(waitUntil([&] { return difference(bottom(), plain) < 1; }, 10s)) << "above what covers it";
    engine->view()->setCoveredBottom(0);
    EXPECT_TRUE(waitUntil([&] { return difference(bottom(), plain) > 3; }, 10s));
    engine->closeCurrentStream("timedtext");
    EXPECT_TRUE(waitUntil([&] { return difference(bottom(), plain) < 1; }, 10s));
}

TEST(EngineWindow, PausedPictureIsNotDrawnAgainAndAgain) {
    Scene scene;
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    Scene::host(engine, scene.large());
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    engine->pause();
    ASSERT_TRUE(engine.await("state:2"));
    std::atomic<int> frames = 0;
    QObject::connect(
        &scene.window(), &QQuickWindow::frameSwapped, &scene.window(), [&frames] { ++frames; },
        Qt::DirectConnection);
    // What was under way when the pause came is drawn still; then there is a second without it.
    EXPECT_TRUE(waitUntil([&] {
        frames = 0;
        return !waitUntil([&] { return frames > 2; }, 1s);
    }));
}

TEST(EngineWindow, EveryPictureIsDrawnOnce) {
    Scene scene;
    const MediaServer server;
    Engine engine(MpvOutputs::Window, server.url("/live/user/word/film.ts"));
    engine->setIsLive(true);
    Scene::host(engine, scene.large());
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    ASSERT_TRUE(showsPicture(scene, scene.large()));
    ASSERT_TRUE(engine.awaitPosition(1));
    std::atomic<int> frames = 0;
    QObject::connect(
        &scene.window(), &QQuickWindow::frameSwapped, &scene.window(), [&frames] { ++frames; },
        Qt::DirectConnection);
    const double from = engine->currentPlaybackTime();
    ASSERT_TRUE(engine.awaitPosition(from + 4));
    const double pictures = (engine->currentPlaybackTime() - from) * 25;
    std::printf("%d frames for %.0f pictures\n", frames.load(), pictures);
    EXPECT_GT(frames, 0);
    // The position is known to a few pictures only.
    EXPECT_LE(frames, pictures + 5);
}

TEST(EngineWindow, ChangingChannelsNeverHoldsTheMainThread) {
    Scene scene;
    const SilentServer silent;
    const MediaServer server;
    scene.window().grabWindow();
    MainThreadWatch watch;
    for (int round = 0; round < 4; ++round) {
        Engine stuck(MpvOutputs::Window, silent.url("/live/user/word/1.ts"));
        Scene::host(stuck, scene.large());
        stuck->prepareToPlay();
        EXPECT_FALSE(stuck.await("prepared", 100ms));
        stuck->shutdown();
        Engine engine(MpvOutputs::Window, server.url("/live/user/word/film.ts"));
        Scene::host(engine, scene.large());
        engine->prepareToPlay();
        EXPECT_TRUE(engine.await("state:1"));
    }
    const double gap = watch.longestGapMilliseconds();
    std::printf("longest gap of the main loop: %.1f ms\n", gap);
    // Who waits for the silent server waits for half a minute.
    EXPECT_LT(gap, 5000);
    EXPECT_TRUE(waitUntil([] { return waitForShutDownEngines(0ms); }));
}

TEST(EngineWindow, FiftyEnginesLeaveNoThreads) {
    Scene scene;
    const auto playOnce = [&scene](bool untilPicture) {
        Engine engine(MpvOutputs::Window, Media::shared().movie);
        Scene::host(engine, scene.large());
        engine->prepareToPlay();
        EXPECT_TRUE(!untilPicture || engine.await("firstFrame"));
    };
    playOnce(true);
    ASSERT_TRUE(waitUntil([] { return waitForShutDownEngines(0ms); }));
    const int before = threadCount();
    for (int round = 0; round < 50; ++round) {
        playOnce(round % 5 == 0);
    }
    EXPECT_TRUE(waitUntil([] { return waitForShutDownEngines(0ms); }));
    EXPECT_TRUE(waitUntil([&] { return threadCount() <= before; })) << threadCount() << " > " << before;
}

} // namespace
} // namespace ondavia::testing
