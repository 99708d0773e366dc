// One channel after another, with the engine of the application and over real connections.
#include "MediaServer.h"
#include "demo/DemoProvider.h"
#include "demo/OpenStreams.h"
#include "platform/linux/LinuxAudioSession.h"
#include "platform/linux/PulseVolume.h"
#include "platform/linux/QtScheduler.h"
#include "playback/PlayerManager.h"
#include "playback/engine/MpvPlayerFactory.h"
#include "support/HttpServer.h"
#include "support/TestSupport.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <iterator>

namespace ondavia::testing {
namespace {

class Zap : public ::testing::Test {
protected:
    ~Zap() override { manager.stop(); }

    static Channel channel(const std::string& url) {
        Channel item;
        item.id = url;
        item.type = "live";
        item.url = url;
        return item;
    }
    bool showsPicture() {
        return waitUntil([this] { return manager.hasLoggedFirstFrameTracks() && manager.isPlaying(); });
    }

    NotificationCenter notifications;
    std::unique_ptr<Scheduler> scheduler = makeQtScheduler();
    PulseVolume volume;
    std::unique_ptr<AVAudioSession> audio = makeLinuxAudioSession(volume);
    MPNowPlayingInfoCenter nowPlaying;
    MPRemoteCommandCenter commands;
    PlayerManager manager{{makeMpvPlayerFactory(notifications, MpvOutputs::Null),
                           notifications,
                           *scheduler,
                           *audio,
                           {},
                           nowPlaying,
                           commands}};
};

/// An account of one connection.
class ZapWithOneConnection : public Zap {
protected:
    ZapWithOneConnection() {
        demo::DemoOptions options;
        options.maxConnections = 1;
        provider = std::make_unique<demo::DemoProvider>(options);
        url = provider->start();
    }
    [[nodiscard]] Channel demoChannel(int number) const {
        return channel(url + "/live/demo/demo/" + std::to_string(number) + ".ts");
    }

    std::unique_ptr<demo::DemoProvider> provider;
    std::string url;
};

TEST_F(ZapWithOneConnection, TheOldOneIsClosedBeforeTheNewOneIsOpened) {
    constexpr int zaps = 200;
    constexpr int channels = 10;
    for (int number = 0; number < zaps; ++number) {
        manager.play(demoChannel(1001 + number % channels), 0);
        ASSERT_TRUE(showsPicture()) << "zap " << number;
        ASSERT_EQ(provider->mostStreams(), 1) << "zap " << number;
    }
}

TEST_F(ZapWithOneConnection, AlsoWhereNobodyWaitsForThePicture) {
    constexpr int zaps = 100;
    for (int number = 0; number < zaps; ++number) {
        manager.play(demoChannel(1001 + number % 10), 0);
        for (int turn = 0; turn < number % 9; ++turn) {
            drainEvents();
        }
    }
    EXPECT_TRUE(showsPicture());
    EXPECT_EQ(provider->mostStreams(), 1);
}

TEST_F(ZapWithOneConnection, StoppingLetsTheConnectionGoForGood) {
    manager.play(demoChannel(1001), 0);
    ASSERT_TRUE(showsPicture());
    manager.stop();
    EXPECT_TRUE(waitUntil([this] { return provider->openStreams() == 0; }));
}

/// A server that answers each caller with these bytes, from the main thread: whatever waits there for it
/// waits for ever.
class DoubtfulChannel final {
public:
    explicit DoubtfulChannel(QByteArray reply)
        : m_reply(std::move(reply)) {
        m_server.listen(QHostAddress::LocalHost, 0);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { answer(); });
    }
    [[nodiscard]] std::string url() const {
        return "http://127.0.0.1:" + std::to_string(m_server.serverPort()) + "/live/maria/word/1.ts";
    }
    [[nodiscard]] bool wasCalled() const { return m_calls > 0; }
    [[nodiscard]] bool hasCaller() const { return m_callers > 0; }

private:
    void answer() {
        QTcpSocket* caller = m_server.nextPendingConnection();
        ++m_calls;
        ++m_callers;
        QObject::connect(caller, &QTcpSocket::disconnected, caller, [this] { --m_callers; });
        caller->write(m_reply);
    }

    QByteArray m_reply;
    QTcpServer m_server;
    int m_calls = 0;
    int m_callers = 0;
};

QByteArray page(const char* status) {
    const QByteArray body = "<html><body><h1>Conta expirada</h1></body></html>";
    return "HTTP/1.1 " + QByteArray(status) +
           "\r\nContent-Type: text/html\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" +
           body;
}

TEST_F(ZapWithOneConnection, NothingOnTheMainThreadWaitsForAChannelThatDoesNotPlay) {
    const std::array<QByteArray, 6> replies = {
        page("403 Forbidden"), page("404 Not Found"), page("200 OK"), QByteArray(), "HTTP/1.1 200 OK\r\n",
        // Silent in the midst of a stream.
        "HTTP/1.1 200 OK\r\nContent-Type: video/mp2t\r\n\r\nG" + QByteArray(187, '\xFF')};
    for (const QByteArray& reply : replies) {
        const DoubtfulChannel doubtful(reply);
        manager.play(channel(doubtful.url()), 0);
        ASSERT_TRUE(waitUntil([&] { return doubtful.wasCalled(); })) << reply.toStdString();
        manager.play(demoChannel(1001), 0);
        ASSERT_EQ(manager.currentItem()->id, demoChannel(1001).id);
        EXPECT_TRUE(showsPicture()) << reply.toStdString();
        EXPECT_TRUE(waitUntil([&] { return !doubtful.hasCaller(); })) << reply.toStdString();
    }
    EXPECT_EQ(provider->mostStreams(), 1);
}

TEST_F(ZapWithOneConnection, AChannelThatDiesIsLeftForAnother) {
    provider->setFault("cut-connection:live");
    manager.play(demoChannel(1001), 0);
    ASSERT_TRUE(waitUntil([this] { return manager.retryCount() > 0; }));
    provider->clearFaults();
    manager.play(demoChannel(1002), 0);
    ASSERT_TRUE(showsPicture());
    EXPECT_EQ(manager.currentItem()->id, demoChannel(1002).id);
    EXPECT_EQ(provider->mostStreams(), 1);
}

/// Channels that are lists of parts, which FFmpeg fetches itself. A part comes but for its last bytes, for
/// which it lets its caller wait.
class ListServer final {
public:
    ListServer() {
        if (!makeClip(m_folder.path() / "part.ts", 4)) {
            throw std::runtime_error("no clip");
        }
        std::ifstream file(m_folder.path() / "part.ts", std::ios::binary);
        m_part.assign(std::istreambuf_iterator<char>(file), {});
        m_server.server.Get(R"(/([01])/list.m3u8)", [this](const auto& request, auto& response) {
            const auto connection = admit(request);
            response.set_content(
                "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:4\n#EXT-X-MEDIA-SEQUENCE:0\n"
                "#EXTINF:4,\npart.ts\n",
                "application/x-mpegURL");
        });
        m_server.server.Get(R"(/([01])/part.ts)", [this](const auto& request, auto& response) {
            const auto connection = admit(request);
            response.set_content_provider(
                m_part.size(), "video/mp2t",
                [this, connection](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                    const std::size_t heldBack = 188;
                    const std::size_t end = m_part.size() - heldBack;
                    if (offset < end) {
                        return sink.write(m_part.data() + offset, end - offset);
                    }
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                    return !m_stops && sink.is_writable();
                });
        });
        m_server.start();
        m_port = std::stoi(m_server.url().substr(m_server.url().rfind(':') + 1));
    }
    ~ListServer() { m_stops = true; }
    ListServer(const ListServer&) = delete;
    ListServer& operator=(const ListServer&) = delete;

    [[nodiscard]] std::string url(int channel) const {
        return m_server.url("/" + std::to_string(channel) + "/list.m3u8");
    }
    /// Whether a channel was ever asked for while a part of the other one was still fetched.
    [[nodiscard]] bool hadBoth() const { return m_hadBoth; }
    [[nodiscard]] bool isFetched(int channel) const {
        return m_open.at(static_cast<std::size_t>(channel)).count() > 0;
    }

private:
    std::shared_ptr<void> admit(const httplib::Request& request) {
        const std::size_t channel = request.matches[1] == "1" ? 1 : 0;
        m_hadBoth = m_hadBoth || m_open.at(1 - channel).count() > 0;
        return m_open.at(channel).open(m_port, request.remote_port, request.path);
    }

    TemporaryFolder m_folder;
    std::string m_part;
    int m_port = 0;
    std::array<demo::OpenStreams, 2> m_open;
    std::atomic<bool> m_hadBoth = false;
    std::atomic<bool> m_stops = false;
    HttpServer m_server;
};

TEST_F(Zap, ConnectionsOfFFmpegsAreClosedToo) {
    const ListServer server;
    for (int number = 0; number < 6; ++number) {
        manager.play(channel(server.url(number % 2)), 0);
        ASSERT_TRUE(showsPicture()) << "zap " << number;
        ASSERT_TRUE(waitUntil([&] { return server.isFetched(number % 2); }));
        EXPECT_FALSE(server.hadBoth()) << "zap " << number;
    }
    manager.stop();
    EXPECT_TRUE(waitUntil([&] { return !server.isFetched(0) && !server.isFetched(1); }));
}

} // namespace
} // namespace ondavia::testing
