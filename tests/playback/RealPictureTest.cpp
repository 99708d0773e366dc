// The engine's picture in the hosts of a window.
#include "MediaServer.h"
#include "platform/linux/LinuxAudioSession.h"
#include "platform/linux/PulseVolume.h"
#include "platform/linux/QtScheduler.h"
#include "playback/FSPlayerUIView.h"
#include "playback/engine/MpvPlayerFactory.h"
#include "support/TestSupport.h"

#include <QImage>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <set>

namespace ondavia::testing {
namespace {

/// Shows one colour where there is no picture and many where the test picture is.
std::size_t coloursIn(QQuickWindow& window, const QRect& area) {
    const QImage shot = window.grabWindow();
    std::set<QRgb> colours;
    for (int y = area.top(); y <= area.bottom(); y += 4) {
        for (int x = area.left(); x <= area.right(); x += 4) {
            colours.insert(shot.pixel(x, y));
        }
    }
    return colours.size();
}

TEST(RealPicture, MovesBetweenHostsWithoutARestart) {
    const TemporaryFolder folder;
    ASSERT_TRUE(makeClip(folder.path() / "clip.mp4", 20));
    MediaServer server(folder.path() / "clip.mp4");
    NotificationCenter notifications;
    const auto scheduler = makeQtScheduler();
    PulseVolume volume;
    const auto audio = makeLinuxAudioSession(volume);
    MPNowPlayingInfoCenter nowPlaying;
    MPRemoteCommandCenter commands;
    PlayerManager manager({makeMpvPlayerFactory(notifications, MpvOutputs::Window),
                           notifications,
                           *scheduler,
                           *audio,
                           {},
                           nowPlaying,
                           commands});
    QQuickWindow window;
    window.resize(640, 480);
    FSPlayerUIView full(window.contentItem());
    full.setSize({320, 180});
    full.setManager(&manager);
    FSPlayerUIView mini(window.contentItem());
    mini.setPosition({400, 300});
    mini.setSize({160, 90});
    mini.setVisible(false);
    mini.setManager(&manager);
    window.show();
    ASSERT_TRUE(waitUntil([&] { return window.isExposed(); }));
    const QRect fullArea(10, 10, 300, 160);
    const QRect miniArea(410, 310, 140, 70);

    Channel channel;
    channel.id = "main_7";
    channel.type = "movie";
    channel.url = server.url();
    manager.play(channel, 0);
    ASSERT_TRUE(waitUntil([&] { return manager.isPlaying() && manager.currentTime() > 0.5; }));
    EXPECT_TRUE(waitUntil([&] { return coloursIn(window, fullArea) > 20; }));
    const auto engine = manager.player();
    const int requests = server.requests();

    full.setVisible(false);
    mini.setVisible(true);
    const double moved = manager.currentTime();
    EXPECT_TRUE(waitUntil([&] { return coloursIn(window, miniArea) > 20; }));
    EXPECT_EQ(coloursIn(window, fullArea), 1U);
    EXPECT_TRUE(waitUntil([&] { return manager.currentTime() > moved + 1; }));
    EXPECT_EQ(manager.player(), engine);
    EXPECT_EQ(server.requests(), requests);
    manager.stop();
    EXPECT_TRUE(waitUntil([&] { return coloursIn(window, miniArea) == 1; }));
}

TEST(RealPicture, StandsStillAndTakesTheShapeThatIsChosen) {
    const TemporaryFolder folder;
    ASSERT_TRUE(makeClip(folder.path() / "clip.mp4", 20));
    MediaServer server(folder.path() / "clip.mp4");
    NotificationCenter notifications;
    const auto scheduler = makeQtScheduler();
    PulseVolume volume;
    const auto audio = makeLinuxAudioSession(volume);
    MPNowPlayingInfoCenter nowPlaying;
    MPRemoteCommandCenter commands;
    PlayerManager manager({makeMpvPlayerFactory(notifications, MpvOutputs::Window),
                           notifications,
                           *scheduler,
                           *audio,
                           {},
                           nowPlaying,
                           commands});
    QQuickWindow window;
    window.resize(320, 320);
    FSPlayerUIView host(window.contentItem());
    host.setSize({320, 320});
    host.setManager(&manager);
    window.show();
    ASSERT_TRUE(waitUntil([&] { return window.isExposed(); }));

    Channel channel;
    channel.id = "main_7";
    channel.type = "movie";
    channel.url = server.url();
    manager.play(channel, 0);
    ASSERT_TRUE(waitUntil([&] { return manager.isPlaying() && manager.currentTime() > 0.5; }));
    manager.togglePlayPause();
    ASSERT_TRUE(waitUntil([&] { return manager.player()->playbackState() == FSPlaybackState::Paused; }));
    // The picture is 16:9: 180 lines high, with 70 above it. As 4:3 it is 240 lines high.
    const QRect top(10, 5, 300, 30);
    const QRect betweenBoth(10, 45, 300, 20);
    const QRect inside(10, 80, 300, 160);
    const auto shows = [&](const QRect& area, bool picture) {
        return waitUntil([&] { return (coloursIn(window, area) > 1) == picture; });
    };
    EXPECT_TRUE(shows(inside, true) && shows(betweenBoth, false));
    manager.setAspectRatio("4:3");
    EXPECT_TRUE(shows(betweenBoth, true) && shows(top, false)) << "taller";
    manager.setAspectRatio("Preencher");
    EXPECT_TRUE(shows(top, true)) << "all of the host";
    manager.setAspectRatio("16:9");
    EXPECT_TRUE(shows(top, false) && shows(betweenBoth, false) && shows(inside, true));
    manager.setAspectRatio("4:3");
    EXPECT_TRUE(shows(betweenBoth, true));
    manager.setAspectRatio(std::nullopt);
    EXPECT_TRUE(shows(betweenBoth, false) && shows(inside, true)) << "its own shape again";
    manager.stop();
}

} // namespace
} // namespace ondavia::testing
