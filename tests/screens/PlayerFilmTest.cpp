// The player over the application's own engine, with real films.
#include "personal/HistoryRecording.h"
#include "platform/ScreenBrightness.h"
#include "platform/SystemVolumeHelper.h"
#include "platform/linux/CurlURLSession.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/LinuxAudioSession.h"
#include "platform/linux/QtScheduler.h"
#include "platform/linux/SecItemStores.h"
#include "playback/FakePlayer.h"
#include "playback/MediaServer.h"
#include "playback/engine/MpvPlayerFactory.h"
#include "screens/player/MiniPlayerViewModel.h"
#include "screens/player/PlayerPresentation.h"
#include "screens/player/PlayerSurface.h"
#include "screens/player/PlayerViewModel.h"
#include "state/AppState.h"
#include "state/KeychainQueue.h"
#include "state/KeychainService.h"
#include "store/LibraryStore.h"
#include "support/TestSupport.h"

#include <QQuickWindow>

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

constexpr int clipSeconds = 60;

class DeafVolume final : public SystemVolumeHelper {
public:
    void setVolume(float /*volume*/) override {}
};

class NoBacklight final : public ScreenBrightness {
public:
    [[nodiscard]] std::optional<double> brightness() const override { return {}; }
    void setBrightness(double /*brightness*/) override {}
    void setOnChange(std::function<void()> /*onChange*/) override {}
};

class PlayerFilmTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        clipFolder = std::make_unique<TemporaryFolder>();
        ASSERT_TRUE(makeClip(clip(), clipSeconds));
    }
    static void TearDownTestSuite() { clipFolder.reset(); }
    static std::filesystem::path clip() { return clipFolder->path() / "clip.mp4"; }

    PlayerFilmTest() {
        window.resize(320, 180);
        surface.setParentItem(window.contentItem());
        surface.setSize({320, 180});
        surface.setManager(&manager);
        window.show();
        appState.setServer(server.server());
        appState.setUsername("maria");
        appState.setPassword("s3cr3t-word");
    }
    ~PlayerFilmTest() override { manager.stop(); }

    [[nodiscard]] Channel item(const std::string& id, const std::string& type) const {
        Channel channel;
        channel.id = id;
        channel.type = type;
        channel.name = id;
        channel.url = server.url();
        return channel;
    }
    /// The picture has come, and the film stands beyond `position`.
    [[nodiscard]] bool playsPast(double position) {
        return waitUntil([&] {
            return manager.isPlaying() && !manager.isBuffering() && manager.hasLoggedFirstFrameTracks() &&
                   manager.duration() > 0 && manager.currentTime() > position;
        });
    }
    [[nodiscard]] std::optional<WatchHistory> row(const std::string& channelId) {
        return store->mainContext().fetchFirst<WatchHistory>(
            {.where = field(&WatchHistory::channelId) == channelId});
    }
    [[nodiscard]] PlayerViewModel& player() { return dynamic_cast<PlayerViewModel&>(*presentation.player()); }

    static inline std::unique_ptr<TemporaryFolder> clipFolder;

    TemporaryFolder folder;
    MediaServer server{clip()};
    NotificationCenter notifications;
    std::unique_ptr<Scheduler> scheduler = makeQtScheduler();
    Journal journal;
    FakeAudioSession audio{journal};
    DeafVolume volume;
    NoBacklight backlight;
    std::unique_ptr<LibraryStore> store = LibraryStore::open(folder.path() / "store");
    MpvOutputs outputs = MpvOutputs::Window;
    MPNowPlayingInfoCenter nowPlaying;
    MPRemoteCommandCenter commands;
    PlayerManager manager{PlayerEnvironment{makeMpvPlayerFactory(notifications, outputs), notifications,
                                            *scheduler, audio, makeCurlURLSession, nowPlaying, commands}};
    std::unique_ptr<SecItemStore> items = makeMemoryStore();
    JsonUserDefaults defaults{folder.path() / "settings.json"};
    KeychainService keychain{*items, defaults};
    KeychainQueue keychainQueue{keychain, *scheduler};
    AppState appState{keychainQueue, manager, makeCurlURLSession};
    QQuickWindow window;
    PlayerSurface surface;
    PlayerScreenServices services{appState, store->mainContext(), manager, *scheduler, audio, volume,
                                  backlight};
    PlayerPresentation presentation{
        appState, [this](const Channel& item) { return std::make_unique<PlayerViewModel>(services, item); }};
};

TEST_F(PlayerFilmTest, ResumesAfterTheFirstFrameSeeksAndRecordsWhatWasSeenToItsEnd) {
    saveHistoryItem(store->mainContext(), WatchedItem(item("main_7", "movie")), 30, clipSeconds);
    std::vector<double> pendingAtFirstFrame;
    QObject::connect(&manager, &PlayerManager::hasLoggedFirstFrameTracksChanged, &manager,
                     [&] { pendingAtFirstFrame.push_back(manager.pendingStartPosition()); });
    double latest = 0;
    QObject::connect(&manager, &PlayerManager::isBufferingChanged, &manager,
                     [&] { latest = manager.currentTime(); });
    appState.playChannel(item("main_7", "movie"));
    EXPECT_EQ(manager.pendingStartPosition(), 30);
    ASSERT_TRUE(playsPast(30));
    EXPECT_LT(latest, 30) << "before the first frame nobody seeks";
    EXPECT_EQ(manager.pendingStartPosition(), 0);
    ASSERT_TRUE(waitUntil([this] { return row("main_7")->position > 30; })) << "every five seconds";
    EXPECT_FALSE(row("main_7")->isComplete);
    player().skips()->back();
    EXPECT_LT(manager.currentTime(), row("main_7")->position);
    player().seekBar()->endDrag(58, clipSeconds);
    ASSERT_TRUE(playsPast(57.5));
    player().close();
    EXPECT_GE(row("main_7")->position, 57);
    EXPECT_TRUE(row("main_7")->isComplete);
    EXPECT_FALSE(manager.player());
}

TEST_F(PlayerFilmTest, GoesToTheNextEpisodeAndShrinksWithoutARestart) {
    std::vector<XtreamEpisode> episodes(2);
    episodes[0].id = "1";
    episodes[1].id = "2";
    Channel parent = item("main_series_70", "series");
    parent.seriesId = 70;
    Channel first = item("main_series_70_ep_1", "series");
    first.seriesId = 70;
    appState.playSeriesEpisode(first, episodes, 0, parent);
    ASSERT_TRUE(playsPast(0.5));
    player().seekBar()->endDrag(40, clipSeconds);
    ASSERT_TRUE(playsPast(40));
    player().playNextEpisode();
    EXPECT_GE(row("main_series_70_ep_1")->position, 40);
    ASSERT_TRUE(playsPast(0.5));
    EXPECT_LT(manager.currentTime(), 40) << "from its beginning";
    EXPECT_EQ(manager.currentItem()->id, "main_series_70_ep_2");

    const auto engine = manager.player();
    const int requests = server.requests();
    player().minimizeToMini();
    drainEvents();
    EXPECT_FALSE(presentation.isPresented());
    const double then = manager.currentTime();
    ASSERT_TRUE(waitUntil([&] { return manager.currentTime() > then + 1; })) << "it plays on";
    MiniPlayerViewModel mini(appState, manager);
    EXPECT_TRUE(mini.isShown());
    mini.expand();
    ASSERT_TRUE(waitUntil([this] { return presentation.isPresented(); }));
    EXPECT_EQ(manager.player(), engine);
    EXPECT_EQ(server.requests(), requests);
    EXPECT_FALSE(manager.isMiniPlayer());
    player().close();
    EXPECT_FALSE(manager.player());
}

TEST_F(PlayerFilmTest, IsLeftAtOnceWhileTheServerSaysNothing) {
    server.refuse();
    appState.playChannel(item("main_7", "movie"));
    ASSERT_TRUE(waitUntil([this] { return server.requests() > 0; }));
    EXPECT_TRUE(manager.isBuffering());
    player().close();
    EXPECT_FALSE(manager.player());
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_FALSE(row("main_7"));
}

} // namespace
} // namespace ondavia::testing
