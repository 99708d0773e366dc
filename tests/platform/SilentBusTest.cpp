#include "platform/linux/LinuxAudioSession.h"
#include "platform/linux/LogindBrightness.h"
#include "platform/linux/MessageBus.h"
#include "platform/linux/MprisService.h"
#include "platform/linux/PulseVolume.h"
#include "support/SilentServer.h"

#include <gtest/gtest.h>

#include <fstream>

namespace ondavia::testing {
namespace {

/// Each caller is still waiting for a word when the main thread has long gone on: nothing waited with it.
TEST(SilentBus, HoldsNobodyUp) {
    SilentServer sessionServer;
    SilentServer systemServer;
    qputenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + sessionServer.path()).c_str());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + systemServer.path()).c_str());
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "panel");
    std::ofstream(folder.path() / "panel/max_brightness") << 100;
    std::ofstream(folder.path() / "panel/brightness") << 40;
    {
        MessageBus session(MessageBus::Kind::Session);
        MessageBus system(MessageBus::Kind::System);
        const auto inhibitor = makeScreenSaverInhibitor(session);
        const auto screen = makeLogindBrightness(system, folder.path());
        MPNowPlayingInfoCenter center;
        MPRemoteCommandCenter commands;
        MprisService mpris(center, commands, session, folder.path() / "artwork");
        const auto show = [&](const std::string& title) {
            MPNowPlayingInfo info;
            info.title = title;
            center.setNowPlayingInfo(info);
        };
        inhibitor->setInhibited(true);
        show("Sal");
        screen->setBrightness(0.9);
        ASSERT_TRUE(sessionServer.isCalled());
        ASSERT_TRUE(systemServer.isCalled());
        inhibitor->setInhibited(false);
        show("Mar");
        mpris.follow(30);
        screen->setBrightness(0.8);
        EXPECT_EQ(screen->brightness(), 0.4);
        EXPECT_TRUE(sessionServer.isWaitedFor());
        EXPECT_TRUE(systemServer.isWaitedFor());
    }
    EXPECT_FALSE(sessionServer.isWaitedFor()) << "their end waits for no answer";
    EXPECT_FALSE(systemServer.isWaitedFor());
}

TEST(SilentBus, IsNotThereWhereNobodyListens) {
    const TemporaryFolder folder;
    qputenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + (folder.path() / "nobody").string()).c_str());
    bool used = false;
    QObject context;
    {
        MessageBus session(MessageBus::Kind::Session);
        session.whenThere(&context, [&used](const QDBusConnection&) { used = true; });
    }
    // The search has come to its end with the object.
    drainEvents();
    EXPECT_FALSE(used);
}

} // namespace
} // namespace ondavia::testing
