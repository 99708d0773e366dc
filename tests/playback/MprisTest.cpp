#include "PlayerManagerFixture.h"
#include "platform/linux/CurlURLSession.h"
#include "platform/linux/MprisService.h"
#include "support/PrivateBus.h"

#include <QBuffer>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QFileInfo>
#include <QImage>

#include <filesystem>
#include <fstream>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

/// What programs that nobody here wrote see and do on a real bus.
class MprisTest : public PlayerManagerTest {
protected:
    MprisTest() {
        // Libraries keep their first connection, so there is one bus for all tests of the process.
        static const PrivateBus bus;
        makeSession = makeCurlURLSession;
        appear();
    }

    void appear() {
        mpris.emplace(nowPlaying, commands, session, folder.path() / "artwork");
        QObject::connect(manager.get(), &PlayerManager::currentTimeChanged, &*mpris,
                         [this] { mpris->follow(manager->currentTime()); });
    }
    /// What a program says when it has ended well.
    static std::string answer(const QString& program, const QStringList& words) {
        QProcess process;
        process.start(program, words);
        EXPECT_TRUE(waitUntil([&process] { return process.state() == QProcess::NotRunning; }));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return process.readAllStandardOutput().trimmed().toStdString();
    }
    static std::string playerctl(const QStringList& words) {
        return answer(QStringLiteral("playerctl"), QStringList{QStringLiteral("--player=ondavia")} + words);
    }
    /// The players that `playerctl` knows; none is no failure.
    static std::string players() {
        QProcess process;
        process.start(QStringLiteral("playerctl"), {QStringLiteral("--list-all")});
        EXPECT_TRUE(waitUntil([&process] { return process.state() == QProcess::NotRunning; }));
        return process.readAllStandardOutput().toStdString();
    }
    [[nodiscard]] static bool isListed() {
        return waitUntil([] { return players() == "ondavia\n"; });
    }
    /// What the player answers somebody else.
    static QDBusMessage answerTo(const QDBusMessage& question) {
        const QDBusConnection bus = QDBusConnection::connectToBus(
            QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS")), QStringLiteral("somebody else"));
        const QDBusPendingCall call = bus.asyncCall(question);
        EXPECT_TRUE(waitUntil([&call] { return call.isFinished(); }));
        EXPECT_FALSE(call.isError()) << call.error().message().toStdString();
        return call.reply();
    }
    static QDBusMessage question(const char* interface, const char* method) {
        return QDBusMessage::createMethodCall(QStringLiteral("org.mpris.MediaPlayer2.ondavia"),
                                              QStringLiteral("/org/mpris/MediaPlayer2"),
                                              QString::fromLatin1(interface), QString::fromLatin1(method));
    }
    /// One property of the player, as the bus tells it.
    [[nodiscard]] static QVariant property(const char* name) {
        QDBusMessage get = question("org.freedesktop.DBus.Properties", "Get");
        get << QStringLiteral("org.mpris.MediaPlayer2.Player") << QString::fromLatin1(name);
        return qvariant_cast<QDBusVariant>(answerTo(get).arguments().value(0)).variant();
    }
    [[nodiscard]] static bool flag(const char* name) { return property(name).toBool(); }
    Channel film() const {
        Channel channel = movie("http://tv.example/movie/anabela/palavra/2.mp4");
        channel.name = "Uma Longa Noite";
        channel.genre = "Drama";
        channel.logo = "";
        return channel;
    }
    void startAt(double position, const Channel& channel) {
        start(channel);
        manager->setDuration(3600);
        manager->setCurrentTime(position);
        manager->updateNowPlayingInfo();
    }

    TemporaryFolder folder;
    MessageBus session{MessageBus::Kind::Session};
    std::optional<MprisService> mpris;
};

/// Everything that goes over the bus, as `dbus-monitor` prints it.
class Monitor final {
public:
    Monitor() {
        m_process.start(QStringLiteral("dbus-monitor"), {QStringLiteral("--session")});
        // The bus takes its name away when it has made it a monitor.
        EXPECT_TRUE(hears("member=NameLost"));
    }
    ~Monitor() {
        m_process.kill();
        m_process.waitForFinished();
    }
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

    [[nodiscard]] bool hears(const std::string& words) {
        return waitUntil([&] {
            m_heard += m_process.readAllStandardOutput().toStdString();
            return m_heard.find(words) != std::string::npos;
        });
    }
    [[nodiscard]] const std::string& heard() const { return m_heard; }

private:
    QProcess m_process;
    std::string m_heard;
};

TEST_F(MprisTest, ShowsWhatPlays) {
    ASSERT_TRUE(isListed());
    EXPECT_EQ(playerctl({QStringLiteral("status")}), "Stopped");
    startAt(12.5, film());
    EXPECT_EQ(playerctl({QStringLiteral("status")}), "Paused");
    EXPECT_EQ(playerctl({QStringLiteral("metadata"), QStringLiteral("--format"),
                         QStringLiteral("{{title}}|{{artist}}|{{mpris:length}}|{{mpris:artUrl}}")}),
              "Uma Longa Noite|Drama|3600000000|");
    EXPECT_EQ(playerctl({QStringLiteral("position")}), "12.500000");
    manager->setIsPlaying(true);
    manager->updateNowPlayingInfo();
    EXPECT_EQ(playerctl({QStringLiteral("status")}), "Playing");
    manager->stop();
    EXPECT_EQ(playerctl({QStringLiteral("status")}), "Stopped");
}

TEST_F(MprisTest, ThePositionMovesWhilePlaying) {
    ASSERT_TRUE(isListed());
    startAt(100, film());
    const qlonglong paused = property("Position").toLongLong();
    EXPECT_EQ(paused, 100'000'000);
    manager->setIsPlaying(true);
    manager->updateNowPlayingInfo();
    EXPECT_TRUE(waitUntil([paused] { return property("Position").toLongLong() > paused; }));
}

TEST_F(MprisTest, TellsNothingOfTheAccount) {
    ASSERT_TRUE(isListed());
    Channel channel = film();
    channel.logo = "http://tv.example/anabela/palavra/logo.png";
    startAt(0, channel);
    manager->setCachedArtwork(std::make_shared<MPMediaItemArtwork>(MPMediaItemArtwork{1, 1, "PNG"}));
    manager->updateNowPlayingInfo();
    ASSERT_TRUE(waitUntil([] {
        return property("Metadata").isValid() &&
               playerctl({QStringLiteral("metadata")}).find("artUrl") != std::string::npos;
    }));
    const std::string all = playerctl({QStringLiteral("metadata")});
    EXPECT_THAT(all, HasSubstr("Uma Longa Noite"));
    EXPECT_THAT(all, Not(HasSubstr("anabela")));
    EXPECT_THAT(all, Not(HasSubstr("palavra")));
    EXPECT_THAT(all, Not(HasSubstr("http:")));
}

TEST_F(MprisTest, ShowsTheArtworkAsAFileWhileItPlaysAndRemovesThoseOfProcessesThatAreGone) {
    ASSERT_TRUE(isListed());
    // The first number that no process has, and one that always is.
    for (const char* other : {"4194305/old.png", "1/other.png", "old.png"}) {
        const auto path = folder.path() / "artwork" / other;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << "PNG";
    }
    QImage image(8, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    image.save(&png, "PNG");
    startAt(0, film());
    manager->setCachedArtwork(
        std::make_shared<MPMediaItemArtwork>(MPMediaItemArtwork{8, 4, png.data().toStdString()}));
    manager->updateNowPlayingInfo();
    std::string url;
    ASSERT_TRUE(waitUntil([&url] {
        url = playerctl(
            {QStringLiteral("metadata"), QStringLiteral("--format"), QStringLiteral("{{mpris:artUrl}}")});
        return !url.empty();
    }));
    ASSERT_THAT(url, ::testing::StartsWith("file:///"));
    const QString path = QUrl(QString::fromStdString(url)).toLocalFile();
    EXPECT_EQ(QImage(path).size(), QSize(8, 4));
    EXPECT_TRUE(path.contains(QStringLiteral("/artwork/%1/").arg(QCoreApplication::applicationPid())));
    for (const char* leftover : {"4194305/old.png", "old.png"}) {
        EXPECT_FALSE(std::filesystem::exists(folder.path() / "artwork" / leftover)) << leftover;
    }
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "artwork/1/other.png")) << "of one that runs";
    manager->updateNowPlayingInfo();
    EXPECT_TRUE(QFileInfo::exists(path)) << "the same artwork stays where it is";
    manager->stop();
    EXPECT_FALSE(QFileInfo::exists(path));
}

TEST_F(MprisTest, WritesOutWhatWouldSteerATerminal) {
    ASSERT_TRUE(isListed());
    Channel channel = film();
    channel.name = "Sal\x1b[31m\n\xff";
    channel.genre = "A\x1b]0;x\x07";
    startAt(0, channel);
    const std::string all = playerctl({QStringLiteral("metadata")});
    EXPECT_THAT(all, Not(HasSubstr("\x1b")));
    EXPECT_THAT(all, HasSubstr("Sal\\x1b[31m\\n\\xff"));
}

TEST_F(MprisTest, IsPlayedPausedAndToggledFromOutside) {
    ASSERT_TRUE(isListed());
    startAt(0, film());
    journal.clear();
    for (const char* word : {"play", "pause", "play-pause", "play-pause", "play", "stop"}) {
        const bool plays = manager->isPlaying();
        playerctl({QString::fromLatin1(word)});
        EXPECT_TRUE(waitUntil([&] { return manager->isPlaying() != plays; })) << word;
    }
    EXPECT_THAT(journal, ElementsAre("play", "pause", "play", "pause", "play", "pause"));
    EXPECT_TRUE(manager->currentItem()) << "stop is a pause here";
}

TEST_F(MprisTest, IsLeftAloneWhileNothingPlays) {
    ASSERT_TRUE(isListed());
    EXPECT_FALSE(flag("CanPlay"));
    EXPECT_FALSE(flag("CanPause"));
    EXPECT_FALSE(flag("CanSeek"));
    EXPECT_FALSE(flag("CanGoNext"));
    EXPECT_TRUE(flag("CanControl"));
    answerTo(question("org.mpris.MediaPlayer2.Player", "Play"));
    scheduler.runPending();
    EXPECT_FALSE(manager->isPlaying());
}

TEST_F(MprisTest, IsSoughtFromOutside) {
    ASSERT_TRUE(isListed());
    startAt(100, film());
    EXPECT_TRUE(flag("CanSeek"));
    const auto reaches = [this](double position) {
        return waitUntil([this, position] { return manager->currentTime() == position; });
    };
    playerctl({QStringLiteral("position"), QStringLiteral("1800")});
    EXPECT_TRUE(reaches(1800));
    playerctl({QStringLiteral("position"), QStringLiteral("25+")});
    EXPECT_TRUE(reaches(1825));
    playerctl({QStringLiteral("position"), QStringLiteral("5-")});
    EXPECT_TRUE(reaches(1820));
    EXPECT_EQ(playerctl({QStringLiteral("position")}), "1820.000000");
}

TEST_F(MprisTest, IgnoresAPositionInATrackThatHasGone) {
    ASSERT_TRUE(isListed());
    startAt(100, film());
    const auto goTo = [](const QVariant& track, qlonglong position) {
        QDBusMessage call = question("org.mpris.MediaPlayer2.Player", "SetPosition");
        call << track << position;
        answerTo(call);
    };
    const auto track = [] {
        return qdbus_cast<QVariantMap>(property("Metadata")).value(QStringLiteral("mpris:trackid"));
    };
    const QVariant old = track();
    startAt(100, film());
    EXPECT_NE(track(), old);
    goTo(old, 200'000'000);
    goTo(track(), 300'000'000);
    EXPECT_TRUE(waitUntil([this] { return manager->currentTime() == 300; }));
    EXPECT_THAT(journal, Not(::testing::Contains("seek 200")));
}

TEST_F(MprisTest, OffersTheOtherChannelsWhereThereAreSome) {
    ASSERT_TRUE(isListed());
    start(liveChannel());
    EXPECT_FALSE(flag("CanSeek"));
    EXPECT_FALSE(flag("CanGoNext"));
    EXPECT_FALSE(flag("CanGoPrevious"));
    std::vector<std::string> asked;
    manager->setOnNextTrack([&asked] { asked.emplace_back("next"); });
    manager->setOnPreviousTrack([&asked] { asked.emplace_back("previous"); });
    manager->updateRemoteCommandsForCurrentMode();
    EXPECT_TRUE(flag("CanGoNext"));
    EXPECT_TRUE(flag("CanGoPrevious"));
    playerctl({QStringLiteral("next")});
    EXPECT_TRUE(waitUntil([&asked] { return asked.size() == 1; }));
    playerctl({QStringLiteral("previous")});
    EXPECT_TRUE(waitUntil([&asked] { return asked.size() == 2; }));
    EXPECT_THAT(asked, ElementsAre("next", "previous"));
    startAt(0, film());
    EXPECT_FALSE(flag("CanGoNext"));
    EXPECT_TRUE(flag("CanSeek"));
}

TEST_F(MprisTest, KeepsTheRateOfAPausedFilm) {
    ASSERT_TRUE(isListed());
    startAt(0, film());
    EXPECT_EQ(property("Rate").toDouble(), 1.0);
    engine().rate = 1.5F;
    manager->togglePlayPause();
    EXPECT_EQ(property("Rate").toDouble(), 1.5);
    EXPECT_EQ(property("MaximumRate").toDouble(), 1.5);
    manager->togglePlayPause();
    EXPECT_EQ(property("Rate").toDouble(), 1.5);
    manager->stop();
    EXPECT_EQ(property("Rate").toDouble(), 1.0);
}

TEST_F(MprisTest, TellsChangesAndJumps) {
    ASSERT_TRUE(isListed());
    Monitor monitor;
    startAt(0, film());
    EXPECT_TRUE(monitor.hears("member=PropertiesChanged"));
    EXPECT_TRUE(monitor.hears("string \"Paused\""));
    EXPECT_TRUE(monitor.hears("string \"Uma Longa Noite\""));
    EXPECT_THAT(monitor.heard(), Not(HasSubstr("member=Seeked")));
    manager->seek(1200);
    EXPECT_TRUE(monitor.hears("member=Seeked\n   int64 1200000000"));
    // A film that is resumed: only the clock's ticks tell of it.
    manager->setCurrentTime(2400);
    EXPECT_TRUE(monitor.hears("member=Seeked\n   int64 2400000000"));
    // Half a second is what a report may be late by.
    manager->setCurrentTime(2400.4);
    manager->updateNowPlayingInfo();
    manager->seek(60);
    EXPECT_TRUE(monitor.hears("member=Seeked\n   int64 60000000"));
    EXPECT_THAT(monitor.heard(), Not(HasSubstr("int64 2400400000")));
    EXPECT_THAT(monitor.heard(), Not(HasSubstr("string \"Position\"")));
    manager->stop();
    EXPECT_TRUE(monitor.hears("string \"Stopped\""));
}

TEST_F(MprisTest, TakesAnotherNameWhereItsOwnIsTaken) {
    mpris.reset();
    const QString own = QStringLiteral("org.mpris.MediaPlayer2.ondavia");
    const QString name = QStringLiteral("first instance");
    QDBusConnection first =
        QDBusConnection::connectToBus(QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS")), name);
    ASSERT_TRUE(waitUntil([&] { return first.registerService(own); }));
    appear();
    const std::string other = "ondavia.instance" + std::to_string(QCoreApplication::applicationPid());
    EXPECT_TRUE(waitUntil([&other] { return players().find(other + "\n") != std::string::npos; }));
    first.unregisterService(own);
    QDBusConnection::disconnectFromBus(name);
}

} // namespace
} // namespace ondavia::testing
