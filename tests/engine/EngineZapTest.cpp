// One engine after another, as when channels are changed.
#include "engine/EngineTestSupport.h"

#include "playback/engine/EngineShelf.h"
#include "playback/engine/MpvHandle.h"
#include "playback/engine/MpvPlayer.h"

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;

const std::vector<engine::MpvOption>& coreOptions() {
    static const auto options = engine::engineOptions(MpvOutputs::Null, Engine::systemOptions());
    return options;
}

engine::EngineCore newCore() {
    engine::EngineCore core{engine::MpvHandle::create(coreOptions()), nullptr, coreOptions()};
    core.handle->requestHook("on_preloaded");
    return core;
}

/// Engines that follow one another, and what is kept of them.
class EngineZap : public ::testing::Test {
protected:
    EngineZap() {
        room->makePlayer = [this](const std::string& content, const FSOptions& options) {
            return std::make_shared<engine::MpvPlayer>(room->center, MpvOutputs::Null, shelf, content,
                                                       options);
        };
    }
    /// The handle on the shelf.
    [[nodiscard]] std::weak_ptr<engine::MpvHandle> kept() const {
        auto core = shelf->take(coreOptions());
        if (!core) {
            return {};
        }
        std::weak_ptr<engine::MpvHandle> handle = core->handle;
        shelf->put(std::move(*core));
        return handle;
    }
    /// What plays the file, once it does.
    std::weak_ptr<engine::MpvHandle> handleThatPlays(const std::string& url) {
        Engine engine(room, url);
        engine->prepareToPlay();
        EXPECT_TRUE(engine.await("state:1"));
        engine->shutdown();
        return kept();
    }

    const std::shared_ptr<EngineRoom> room = std::make_shared<EngineRoom>(MpvOutputs::Null);
    const std::shared_ptr<engine::EngineShelf> shelf = std::make_shared<engine::EngineShelf>();
};

TEST_F(EngineZap, TheNextEngineHasTheHandleOfTheOneBefore) {
    const MediaServer server;
    EXPECT_TRUE(kept().expired()) << "nothing has played yet";
    const auto first = handleThatPlays(server.url("/live/user/word/film.ts")).lock();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(handleThatPlays(server.url("/live/user/word/film.ts")).lock(), first);
    drainEvents();
    EXPECT_EQ(handleThatPlays(Media::shared().movie).lock(), first) << "in a later turn";
}

TEST_F(EngineZap, OfTwoEnginesAtOnceOneHandleIsKept) {
    Engine first(room, Media::shared().movie);
    Engine second(room, Media::shared().movie);
    first->prepareToPlay();
    second->prepareToPlay();
    ASSERT_TRUE(first.await("state:1"));
    ASSERT_TRUE(second.await("state:1"));
    first->shutdown();
    const auto one = kept();
    EXPECT_FALSE(one.expired());
    second->shutdown();
    EXPECT_TRUE(waitUntil([&] { return one.expired(); }));
    EXPECT_FALSE(kept().expired());
    EXPECT_TRUE(waitForShutDownEngines(10s));
}

TEST_F(EngineZap, WhoWantsOtherOptionsHasAnotherHandle) {
    const auto former = handleThatPlays(Media::shared().movie);
    auto options = Engine::systemOptions();
    options.setPlayerOptionIntValue(1000000, "max-buffer-size");
    const auto other = room->makePlayer(Media::shared().movie, options);
    EXPECT_EQ(kept().lock(), former.lock());
    other->shutdown();
    EXPECT_TRUE(waitUntil([&] { return former.expired(); })) << "the last one is kept";
}

TEST_F(EngineZap, NothingOfTheOneBeforeIsLeft) {
    Engine first(room, Media::shared().tracks);
    first->setPlaybackRate(3);
    first->setPlaybackVolume(0);
    first->setScalingMode(FSScalingMode::Fill);
    first->prepareToPlay();
    ASSERT_TRUE(first.await("state:1"));
    first->exchangeSelectedStream(2);
    first->exchangeSelectedStream(3);
    const auto selected = [](const Engine& engine, const QVariantMap FSMonitor::*meta) {
        return (engine->monitor().*meta).value(QStringLiteral("stream_idx"), -1).toInt();
    };
    ASSERT_TRUE(waitUntil([&] {
        return selected(first, &FSMonitor::audioMeta) == 2 && selected(first, &FSMonitor::subtitleMeta) == 3;
    }));
    first->pause();
    ASSERT_TRUE(first.await("state:2"));
    first->shutdown();

    Engine second(room, Media::shared().tracks);
    second->prepareToPlay();
    ASSERT_TRUE(second.await("state:1"));
    EXPECT_FALSE(second.has("state:2"));
    EXPECT_EQ(selected(second, &FSMonitor::audioMeta), 1);
    EXPECT_EQ(selected(second, &FSMonitor::subtitleMeta), -1);
    EXPECT_EQ(second->playbackRate(), 1);
    EXPECT_EQ(second->playbackVolume(), 1);
    EXPECT_EQ(second.count("prepared"), 1);
    EXPECT_EQ(second.count("firstFrame"), 1);
    EXPECT_LT(second->currentPlaybackTime(), 6);
    EXPECT_TRUE(second.awaitPosition(0.5));
}

TEST_F(EngineZap, TheEndOfTheOneBeforeIsNotTheNextOnes) {
    const MediaServer server;
    Engine ended(room, server.url("/closing/film.ts"));
    ended->setPlaybackRate(20);
    ended->prepareToPlay();
    ASSERT_TRUE(ended.await("finish:0"));
    ended->shutdown();
    Engine failed(room, server.url("/nowhere.ts"));
    failed->prepareToPlay();
    ASSERT_TRUE(failed.await("finish:1"));
    EXPECT_FALSE(failed.has("finish:0"));
    EXPECT_FALSE(failed.has("prepared"));
    failed->shutdown();
    Engine next(room, server.url("/live/user/word/film.ts"));
    next->prepareToPlay();
    ASSERT_TRUE(next.awaitPosition(0.5));
    EXPECT_FALSE(next.has("finish:0"));
    EXPECT_FALSE(next.has("finish:1"));
}

TEST_F(EngineZap, OnlyTheLastOfManyInARowPlays) {
    const MediaServer server;
    for (int round = 0; round < 50; ++round) {
        Engine passed(room, server.url("/live/user/word/film.ts"));
        passed->prepareToPlay();
        for (int turn = 0; turn < round % 7; ++turn) {
            drainEvents();
        }
        EXPECT_FALSE(passed.has("finish:1"));
        passed->shutdown();
    }
    Engine last(room, server.url("/live/user/word/film.ts"));
    last->prepareToPlay();
    EXPECT_TRUE(last.await("state:1"));
    EXPECT_EQ(last.count("prepared"), 1);
    EXPECT_TRUE(waitForShutDownEngines(10s)) << "one handle was enough for all of them";
}

TEST_F(EngineZap, PausedBeforeItOpensItStaysSo) {
    Engine first(room, Media::shared().movie);
    first->prepareToPlay();
    ASSERT_TRUE(first.await("state:1"));
    first->shutdown();
    Engine second(room, Media::shared().movie);
    second->setShouldAutoplay(false);
    second->prepareToPlay();
    EXPECT_TRUE(second.await("state:2"));
    EXPECT_FALSE(second.has("state:1"));
}

/// Plays a film and, from then on, never lets go of it: as a name that is looked up for ever. Until its end.
class Jam final {
public:
    explicit Jam(engine::MpvHandle& handle)
        : m_client(mpv_create_client(handle.get(), "jam")) {
        mpv_hook_add(m_client, 0, "on_unload", 0);
        handle.load(Media::shared().movie, {});
        for (auto event = handle.nextEvent(); event.event_id != MPV_EVENT_FILE_LOADED;
             event = handle.nextEvent()) {
            handle.continueHook();
        }
    }
    ~Jam() {
        const mpv_event* event = mpv_wait_event(m_client, -1);
        while (event->event_id != MPV_EVENT_HOOK) {
            event = mpv_wait_event(m_client, -1);
        }
        mpv_hook_continue(m_client, static_cast<const mpv_event_hook*>(event->data)->id);
        mpv_destroy(m_client);
    }
    Jam(const Jam&) = delete;
    Jam& operator=(const Jam&) = delete;

private:
    mpv_handle* m_client;
};

TEST_F(EngineZap, WhatNeverLetsGoHoldsTheNextOneForAMomentOnly) {
    const LogCapture log;
    auto core = newCore();
    const std::weak_ptr<engine::MpvHandle> jammed = core.handle;
    {
        const Jam jam(*core.handle);
        core.handle->changeOwner();
        shelf->put(std::move(core));
        Engine next(room, Media::shared().movie);
        EXPECT_TRUE(kept().expired()) << "the jammed one was taken";
        next->prepareToPlay();
        EXPECT_TRUE(next.await("state:1"));
        EXPECT_EQ(next.count("prepared"), 1);
        EXPECT_TRUE(jammed.expired());
        EXPECT_THAT(log.text(), HasSubstr("What played before does not end"));
        EXPECT_FALSE(waitForShutDownEngines(0ms)) << "it is still jammed";
    }
    EXPECT_TRUE(waitForShutDownEngines(10s));
}

TEST_F(EngineZap, AHandleThatNobodyComesForEnds) {
    engine::EngineShelf impatient(0ms);
    auto core = newCore();
    const std::weak_ptr<engine::MpvHandle> handle = core.handle;
    impatient.put(std::move(core));
    EXPECT_FALSE(handle.expired());
    EXPECT_TRUE(waitUntil([&] { return handle.expired(); }));
    EXPECT_TRUE(waitForShutDownEngines(10s));
}

TEST_F(EngineZap, NothingIsLoadedInAHandleThatIsKept) {
    const MediaServer server;
    {
        Engine engine(room, server.url("/live/user/word/film.ts"));
        engine->prepareToPlay();
        ASSERT_TRUE(engine.await("state:1"));
        engine->shutdown();
    }
    const auto core = shelf->take(coreOptions());
    ASSERT_TRUE(core);
    const auto isIdle = [&] {
        int idle = 0;
        return mpv_get_property(core->handle->get(), "idle-active", MPV_FORMAT_FLAG, &idle) >= 0 && idle != 0;
    };
    EXPECT_FALSE(isIdle()) << "in the same turn it is still warm";
    shelf->put(*core);
    EXPECT_TRUE(waitUntil(isIdle));
}

} // namespace
} // namespace ondavia::testing
