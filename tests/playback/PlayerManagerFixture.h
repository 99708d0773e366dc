#pragma once

#include "FakePlayer.h"
#include "playback/PlayerManager.h"
#include "support/ManualScheduler.h"
#include "support/TestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>

namespace ondavia::testing {

inline Channel liveChannel(const std::string& url = "http://tv.example/live/1.ts") {
    Channel channel;
    channel.id = "main_1";
    channel.type = "live";
    channel.url = url;
    return channel;
}

inline Channel movie(const std::string& url = "http://tv.example/movie/2.mp4") {
    Channel channel;
    channel.id = "main_2";
    channel.type = "movie";
    channel.url = url;
    return channel;
}

/// A manager among fakes, with a clock that stands still.
class PlayerManagerTest : public ::testing::Test {
protected:
    PlayerManagerTest() { restart(); }

    /// A new manager in place of the old one.
    void restart() {
        manager = std::make_unique<PlayerManager>(PlayerEnvironment{
            [this](const std::string& content, const FSOptions& options) {
                journal.push_back("create " + content);
                if (onCreate) {
                    onCreate();
                }
                auto engine = std::make_shared<FakePlayer>(content, options, journal, notifications);
                engine->volume = nextVolume;
                engine->hasView = nextHasView;
                lastEngine = engine;
                return engine;
            },
            notifications, scheduler, audio,
            [this](const URLSessionConfiguration& configuration) { return makeSession(configuration); },
            nowPlaying, commands});
    }

    /// Plays and lets the engine be prepared.
    FakePlayer& start(const Channel& channel, double position = 0) {
        manager->play(channel, position);
        scheduler.runPending();
        return engine();
    }

    FakePlayer& engine() const {
        const auto current = lastEngine.lock();
        if (!current) {
            throw std::logic_error("no engine");
        }
        return *current;
    }

    Journal journal;
    NotificationCenter notifications;
    MPNowPlayingInfoCenter nowPlaying;
    MPRemoteCommandCenter commands;
    ManualScheduler scheduler;
    FakeAudioSession audio{journal};
    /// Runs before an engine is made.
    std::function<void()> onCreate;
    URLSessionFactory makeSession;
    float nextVolume = 1.0F;
    bool nextHasView = true;
    std::weak_ptr<FakePlayer> lastEngine;
    std::unique_ptr<PlayerManager> manager;
};

} // namespace ondavia::testing
