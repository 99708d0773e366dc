// External subtitle files beside a film that plays, as providers have them.
#include "MediaServer.h"
#include "platform/linux/LinuxAudioSession.h"
#include "platform/linux/PulseVolume.h"
#include "platform/linux/QtScheduler.h"
#include "playback/PlayerManager.h"
#include "playback/engine/MpvPlayerFactory.h"
#include "subtitles/SubtitleLoader.h"
#include "support/EndlessReply.h"
#include "support/HttpServer.h"
#include "support/PatientSession.h"
#include "support/TestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace ondavia::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* longCue = "1\n00:00:00,000 --> 00:10:00,000\nLegenda\n\n";

class RealSubtitles : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        folder = std::make_unique<TemporaryFolder>();
        ASSERT_TRUE(makeClip(folder->path() / "clip.mp4", 60));
    }
    static void TearDownTestSuite() { folder.reset(); }

    RealSubtitles() {
        files.server.Get("/s3cr3t-word/[0-9]+.srt",
                         [](const auto&, auto& reply) { reply.set_content(longCue, "text/plain"); });
        files.server.Get("/s3cr3t-word/velho.por.srt", [](const auto&, auto& reply) {
            reply.set_content("00:00:01,000 --> 00:00:02,000\nA\xE7\xE3o", "text/plain");
        });
        files.server.Get("/s3cr3t-word/large.srt", [](const auto&, auto& reply) {
            std::string large = longCue;
            while (large.size() < std::size_t{50} << 20) {
                large += "00:00:01,000 --> 00:00:02,000\n" + std::string(2000, 'y') + "\n\n";
            }
            reply.set_content(large, "text/plain");
        });
        files.server.Get("/s3cr3t-word/endless.srt",
                         [this](const auto&, auto& reply) { endless.answer(reply, "x"); });
        files.start();
    }
    ~RealSubtitles() override {
        endless.isOver = true;
        manager.stop();
        EXPECT_TRUE(waitForTransfers(std::chrono::minutes(1)));
        EXPECT_THAT(log.text(), Not(HasSubstr("s3cr3t-word")));
    }

    [[nodiscard]] std::string url(const std::string& name) const { return files.url("/s3cr3t-word/" + name); }

    void play() {
        Channel film;
        film.id = "main_7";
        film.type = "movie";
        film.url = server.url();
        manager.play(film, 0);
        ASSERT_TRUE(playsOn());
    }
    bool playsOn() {
        const double from = manager.currentTime();
        return waitUntil([&] { return manager.isPlaying() && manager.currentTime() > from + 0.5; });
    }
    [[nodiscard]] bool engineShowsSubtitles() const {
        return !manager.player()->monitor().subtitleMeta.isEmpty();
    }

    static std::unique_ptr<TemporaryFolder> folder;
    EndlessReply endless;
    const LogCapture log;
    NotificationCenter notifications;
    std::unique_ptr<Scheduler> scheduler = makeQtScheduler();
    PulseVolume volume;
    std::unique_ptr<AVAudioSession> audio = makeLinuxAudioSession(volume);
    HttpServer files;
    MediaServer server{folder->path() / "clip.mp4"};
    MPNowPlayingInfoCenter nowPlaying;
    MPRemoteCommandCenter commands;
    PlayerManager manager{{makeMpvPlayerFactory(notifications, MpvOutputs::Null), notifications, *scheduler,
                           *audio, makePatientSession, nowPlaying, commands}};
};

std::unique_ptr<TemporaryFolder> RealSubtitles::folder;

TEST_F(RealSubtitles, AreLoadedAndShownWhenTheyAreChosen) {
    play();
    manager.setSubtitleURLs({url("1.srt"), url("velho.por.srt"), url("gone.srt")});
    ASSERT_TRUE(waitUntil([this] { return manager.loadedSubtitles().size() == 2; }));
    const auto tracks = manager.availableSubtitleTracks();
    ASSERT_EQ(tracks.size(), 2U) << "the engine's own copies are no tracks of the file";
    EXPECT_EQ(tracks[1].name, "Português");
    EXPECT_EQ(manager.loadedSubtitles()[1].cues[0].text, "Ação");
    EXPECT_FALSE(tracks[0].isEnabled || tracks[1].isEnabled || engineShowsSubtitles());
    manager.selectSubtitleTrack(tracks[0]);
    EXPECT_TRUE(waitUntil([this] { return engineShowsSubtitles(); }));
    EXPECT_TRUE(manager.availableSubtitleTracks()[0].isEnabled);
    manager.selectSubtitleTrack(std::nullopt);
    EXPECT_TRUE(waitUntil([this] { return !engineShowsSubtitles(); }));
    EXPECT_FALSE(manager.availableSubtitleTracks()[0].isEnabled);
}

TEST_F(RealSubtitles, OfFiftyMegabytesLeaveTheFilmPlaying) {
    play();
    manager.setSubtitleURLs({url("large.srt")});
    EXPECT_TRUE(playsOn());
    ASSERT_TRUE(waitUntil([this] { return manager.loadedSubtitles().size() == 1; }));
    manager.selectSubtitleTrack(manager.availableSubtitleTracks()[0]);
    EXPECT_TRUE(playsOn());
    EXPECT_EQ(manager.retryCount(), 0);
}

TEST_F(RealSubtitles, WithoutAnEndAndTwoHundredAtOnceLeaveTheFilmPlaying) {
    constexpr std::size_t many = 200;
    std::vector<std::string> urls{url("endless.srt"), url("large.srt"), url("velho.por.srt")};
    for (std::size_t file = 0; file < many; ++file) {
        urls.push_back(url(std::to_string(file) + ".srt"));
    }
    play();
    const auto engine = manager.player();
    manager.setSubtitleURLs(urls);
    EXPECT_TRUE(playsOn());
    // The endless one and the large one are beyond their share.
    ASSERT_TRUE(waitUntil([this] { return manager.loadedSubtitles().size() == many + 1; }))
        << manager.loadedSubtitles().size();
    EXPECT_TRUE(playsOn());
    EXPECT_EQ(manager.player(), engine) << "no new attempt was needed";
    EXPECT_EQ(manager.currentSubtitleTrack(), std::nullopt);
}

} // namespace
} // namespace ondavia::testing
