#include "platform/linux/LinuxAudioSession.h"
#include "platform/linux/PulseVolume.h"
#include "support/SilentServer.h"
#include "support/TestSupport.h"

#include <QProcess>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace ondavia::testing {
namespace {

using ::testing::HasSubstr;

/// A real sound server with an output that leads nowhere, for as long as the object lives.
class SoundServer final {
public:
    explicit SoundServer(const TemporaryFolder& folder)
        : m_socket(folder.path() / "pulse") {
        m_process.start(QStringLiteral("pulseaudio"),
                        {QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
                         QStringLiteral("--exit-idle-time=-1"), QStringLiteral("--disable-shm"),
                         QStringLiteral("--log-target=null"), QStringLiteral("--use-pid-file=no"),
                         QStringLiteral("--load=module-null-sink sink_name=first"),
                         QStringLiteral("--load=module-native-protocol-unix socket=") +
                             QString::fromStdString(m_socket.string())});
        qputenv("PULSE_SERVER", ("unix:" + m_socket.string()).c_str());
    }
    ~SoundServer() {
        m_process.kill();
        m_process.waitForFinished();
    }
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    /// What `pactl` says, as soon as the server answers it.
    static std::string control(const QStringList& words) {
        QProcess pactl;
        const bool answered = waitUntil([&] {
            pactl.start(QStringLiteral("pactl"), words);
            return pactl.waitForFinished() && pactl.exitCode() == 0;
        });
        EXPECT_TRUE(answered) << pactl.readAllStandardError().toStdString();
        return pactl.readAllStandardOutput().toStdString();
    }
    static std::string volume() {
        return control({QStringLiteral("get-sink-volume"), QStringLiteral("@DEFAULT_SINK@")});
    }
    static void setVolume(const QStringList& volumes) {
        control(QStringList{QStringLiteral("set-sink-volume"), QStringLiteral("@DEFAULT_SINK@")} + volumes);
    }

private:
    std::filesystem::path m_socket;
    QProcess m_process;
};

class OutputVolumeTest : public ::testing::Test {
protected:
    // What is set before anybody answers is not kept.
    void SetUp() override { SoundServer::volume(); }
    void TearDown() override { qunsetenv("PULSE_SERVER"); }

    [[nodiscard]] bool becomes(float volume) {
        return waitUntil([&] { return std::abs(output.outputVolume() - volume) < 0.005F; });
    }
    [[nodiscard]] static bool isSaid(const std::string& volume) {
        return waitUntil([&] { return SoundServer::volume().find(volume) != std::string::npos; });
    }

    TemporaryFolder folder;
    std::optional<SoundServer> server{std::in_place, folder};
    PulseVolume output;
};

TEST_F(OutputVolumeTest, IsSetAndKnownAtOnce) {
    output.setVolume(0.5F);
    EXPECT_EQ(output.outputVolume(), 0.5F);
    EXPECT_TRUE(isSaid(" 50%"));
    output.setVolume(0.25F);
    EXPECT_EQ(output.outputVolume(), 0.25F);
    EXPECT_TRUE(isSaid(" 25%"));
}

TEST_F(OutputVolumeTest, IsBroughtToTheNearerEnd) {
    SoundServer::setVolume({QStringLiteral("40%")});
    output.setVolume(1.5F);
    EXPECT_EQ(output.outputVolume(), 1.0F);
    EXPECT_TRUE(isSaid(" 100%"));
    output.setVolume(-1.0F);
    EXPECT_EQ(output.outputVolume(), 0.0F);
    EXPECT_TRUE(isSaid(" 0%"));
    output.setVolume(0.75F);
    output.setVolume(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(output.outputVolume(), 0.75F);
    EXPECT_TRUE(isSaid(" 75%"));
}

TEST_F(OutputVolumeTest, FollowsWhatOthersSet) {
    SoundServer::setVolume({QStringLiteral("30%")});
    EXPECT_TRUE(becomes(0.3F));
    SoundServer::setVolume({QStringLiteral("60%")});
    EXPECT_TRUE(becomes(0.6F));
    SoundServer::setVolume({QStringLiteral("150%")});
    EXPECT_TRUE(becomes(1.0F)) << "louder than full is full";
}

TEST_F(OutputVolumeTest, EndsAtTheLastOfManyWishes) {
    for (int step = 0; step <= 80; ++step) {
        output.setVolume(static_cast<float>(step) / 100);
    }
    EXPECT_TRUE(isSaid(" 80%"));
    SoundServer::setVolume({QStringLiteral("10%")});
    EXPECT_TRUE(becomes(0.1F)) << "no earlier wish comes after it";
}

TEST_F(OutputVolumeTest, KeepsTheBalance) {
    SoundServer::setVolume({QStringLiteral("20%"), QStringLiteral("40%")});
    ASSERT_TRUE(becomes(0.4F));
    output.setVolume(0.8F);
    EXPECT_TRUE(isSaid(" 80%"));
    EXPECT_THAT(SoundServer::volume(), HasSubstr(" 40%"));
}

TEST_F(OutputVolumeTest, IsNothingWhileMutedAndSoundsAgainWhenSet) {
    SoundServer::setVolume({QStringLiteral("40%")});
    ASSERT_TRUE(becomes(0.4F));
    SoundServer::control(
        {QStringLiteral("set-sink-mute"), QStringLiteral("@DEFAULT_SINK@"), QStringLiteral("1")});
    EXPECT_TRUE(becomes(0.0F));
    output.setVolume(0.6F);
    EXPECT_TRUE(isSaid(" 60%"));
    EXPECT_TRUE(waitUntil([] {
        return SoundServer::control({QStringLiteral("get-sink-mute"), QStringLiteral("@DEFAULT_SINK@")})
                   .find("no") != std::string::npos;
    }));
}

TEST_F(OutputVolumeTest, IsTheDefaultOutputsWhicheverThatIs) {
    SoundServer::setVolume({QStringLiteral("30%")});
    ASSERT_TRUE(becomes(0.3F));
    SoundServer::control({QStringLiteral("load-module"), QStringLiteral("module-null-sink"),
                          QStringLiteral("sink_name=second")});
    SoundServer::control(
        {QStringLiteral("set-sink-volume"), QStringLiteral("second"), QStringLiteral("70%")});
    SoundServer::control({QStringLiteral("set-default-sink"), QStringLiteral("second")});
    EXPECT_TRUE(becomes(0.7F));
    output.setVolume(0.9F);
    EXPECT_TRUE(isSaid(" 90%"));
    EXPECT_THAT(SoundServer::control({QStringLiteral("get-sink-volume"), QStringLiteral("first")}),
                HasSubstr(" 30%"));
}

TEST_F(OutputVolumeTest, ComesBackWithTheServer) {
    SoundServer::setVolume({QStringLiteral("30%")});
    ASSERT_TRUE(becomes(0.3F));
    server.reset();
    std::filesystem::remove(folder.path() / "pulse");
    server.emplace(folder);
    SoundServer::setVolume({QStringLiteral("55%")});
    EXPECT_TRUE(becomes(0.55F));
}

TEST_F(OutputVolumeTest, IsWhatTheAudioSessionTells) {
    const auto session = makeLinuxAudioSession(output);
    SoundServer::setVolume({QStringLiteral("35%")});
    EXPECT_TRUE(waitUntil([&] { return std::abs(session->outputVolume() - 0.35F) < 0.005F; }));
}

TEST(OutputVolume, IsFullUntilSomethingIsKnown) {
    const TemporaryFolder folder;
    qputenv("PULSE_SERVER", ("unix:" + (folder.path() / "nobody").string()).c_str());
    PulseVolume output;
    EXPECT_EQ(output.outputVolume(), 1.0F);
    output.setVolume(0.5F);
    EXPECT_EQ(output.outputVolume(), 0.5F);
    qunsetenv("PULSE_SERVER");
}

/// The caller is still waiting for a word when the main thread has long gone on: nothing waited with it.
TEST(OutputVolume, HoldsNobodyUpWhenTheServerNeverAnswers) {
    SilentServer server;
    qputenv("PULSE_SERVER", ("unix:" + server.path()).c_str());
    {
        PulseVolume output;
        output.setVolume(0.3F);
        ASSERT_TRUE(server.isCalled());
        EXPECT_EQ(output.outputVolume(), 0.3F);
        output.setVolume(0.4F);
        EXPECT_EQ(output.outputVolume(), 0.4F);
        EXPECT_TRUE(server.isWaitedFor());
    }
    EXPECT_FALSE(server.isWaitedFor()) << "its end waits for no answer";
    qunsetenv("PULSE_SERVER");
}

} // namespace
} // namespace ondavia::testing
