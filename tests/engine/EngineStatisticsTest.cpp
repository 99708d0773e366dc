#include "engine/EngineTestSupport.h"

#include "base/Redaction.h"

#include <gmock/gmock.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ondavia::testing {
namespace {

using ::testing::AllOf;
using ::testing::Ge;
using ::testing::HasSubstr;
using ::testing::Le;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// Says one thing to whoever comes first, and closes.
class SpeakingServer final {
public:
    explicit SpeakingServer(std::string words)
        : m_words(std::move(words))
        , m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const plain = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_socket, plain, size) != 0 || ::listen(m_socket, 1) != 0 ||
            ::getsockname(m_socket, plain, &size) != 0) {
            throw std::runtime_error("no port");
        }
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { speak(); });
    }
    ~SpeakingServer() {
        ::shutdown(m_socket, SHUT_RDWR);
        m_thread.join();
        ::close(m_socket);
    }
    SpeakingServer(const SpeakingServer&) = delete;
    SpeakingServer& operator=(const SpeakingServer&) = delete;

    [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/"; }

private:
    void speak() const {
        const int connection = ::accept(m_socket, nullptr, nullptr);
        char request[4096];
        if (connection >= 0 && ::recv(connection, request, sizeof request, 0) > 0) {
            (void)::send(connection, m_words.data(), m_words.size(), MSG_NOSIGNAL);
        }
        ::close(connection);
    }

    std::string m_words;
    int m_socket;
    int m_port = 0;
    std::thread m_thread;
};

/// What the server answered when playback of `url` had failed.
std::string answerOfFailure(const std::string& url) {
    const Engine engine(MpvOutputs::Null, url);
    engine->prepareToPlay();
    EXPECT_TRUE(engine.await("finish:1", std::chrono::minutes(2)));
    return engine->statistics().serverAnswer;
}

TEST(EngineStatistics, TellWhatPlaysAndHow) {
    const MediaServer server;
    const Engine engine(MpvOutputs::Null, server.url("/file/ana/segredo/film.mp4"));
    engine->prepareToPlay();
    ASSERT_TRUE(waitUntil([&] {
        const auto now = engine->statistics();
        return now.bitrate > 0 && now.frameRate > 0 && now.secondsBuffered > 0;
    }));
    const auto statistics = engine->statistics();
    EXPECT_EQ(statistics.videoCodec, "h264");
    EXPECT_EQ(statistics.audioCodec, "aac");
    EXPECT_EQ(statistics.width, 320);
    EXPECT_EQ(statistics.height, 180);
    EXPECT_NEAR(statistics.frameRate, 25, 1);
    EXPECT_GT(statistics.bitrate, 96'000 / 2) << "of both";
    EXPECT_EQ(statistics.decoder, "software");
    EXPECT_EQ(statistics.serverAnswer, "HTTP/1.1 206 Partial Content");
}

TEST(EngineStatistics, AreReadOnlyWhenSomebodyAsks) {
    const Engine engine(MpvOutputs::Null, Media::shared().movie);
    EXPECT_EQ(engine->statistics(), FSStatistics());
    engine->prepareToPlay();
    ASSERT_TRUE(engine.awaitPosition(1));
    EXPECT_EQ(engine->statistics().width, 0) << "answered while nothing played, and not asked for since";
    EXPECT_TRUE(waitUntil([&] { return engine->statistics().width == 320; }));
    EXPECT_EQ(engine->statistics().serverAnswer, "") << "no server";
}

TEST(EngineStatistics, TellARadioWithoutAPicture) {
    const Engine engine(MpvOutputs::Null, Media::shared().radio);
    engine->prepareToPlay();
    ASSERT_TRUE(waitUntil([&] { return engine->statistics().bitrate > 0; }));
    const auto statistics = engine->statistics();
    EXPECT_EQ(statistics.videoCodec, "");
    EXPECT_EQ(statistics.audioCodec, "aac");
    EXPECT_EQ(statistics.width, 0);
}

TEST(EngineStatistics, SayHowTheServerRefused) {
    const MediaServer server;
    EXPECT_EQ(answerOfFailure(server.url("/nothing/segredo.mp4")), "HTTP/1.1 404 Not Found");
}

TEST(EngineStatistics, SayThatNobodyAnswers) {
    std::string url;
    {
        const SilentServer gone;
        url = gone.url("/segredo.mp4");
    }
    const std::string answer = answerOfFailure(url);
    EXPECT_NE(answer, "");
    EXPECT_THAT(answer, ::testing::Not(HasSubstr("segredo")));
}

TEST(EngineStatistics, SayThatTheConnectionBroke) {
    const MediaServer server;
    const std::string answer = answerOfFailure(server.url("/cut/3/film.mp4"));
    EXPECT_THAT(answer, AllOf(StartsWith("HTTP/1.1 206 Partial Content: "), SizeIs(Ge(32U))));
}

TEST(EngineStatistics, KeepTheAnswerOfAListThatFFmpegFollows) {
    MediaServer server;
    server.setText("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:12\n#EXT-X-MEDIA-SEQUENCE:0\n"
                   "#EXTINF:12.0,\n" +
                   server.url("/file/a/b/film.ts") + "\n#EXT-X-ENDLIST\n");
    const Engine engine(MpvOutputs::Null, server.url("/text"));
    engine->prepareToPlay();
    ASSERT_TRUE(engine.awaitPosition(0.2));
    EXPECT_THAT(engine->statistics().serverAnswer, StartsWith("HTTP/1.1 20"));
}

TEST(EngineStatistics, CutAnAnswerThatIsTooLong) {
    const SpeakingServer server("HTTP/1.1 403 " + std::string(5000, 'x') + "\r\nContent-Length: 0\r\n\r\n");
    EXPECT_THAT(answerOfFailure(server.url()), AllOf(StartsWith("HTTP/1.1 403 xxx"), SizeIs(Le(200U))));
}

TEST(EngineStatistics, CutNoSecretInTwo) {
    registerSecret("segredo-4711");
    const SpeakingServer server("HTTP/1.1 403 " + std::string(100, 'x') +
                                " segredo-4711\r\nContent-Length: 0\r\n\r\n");
    EXPECT_THAT(answerOfFailure(server.url()), AllOf(StartsWith("HTTP/1.1 403 xxx"), Not(HasSubstr("seg"))));
}

TEST(EngineStatistics, WaitForNobodyAndAreEmptyAfterwards) {
    const SilentServer server;
    const Engine engine(MpvOutputs::Null, server.url("/film.mp4"));
    engine->prepareToPlay();
    MainThreadWatch watch;
    for (int round = 0; round < 100; ++round) {
        EXPECT_EQ(engine->statistics().serverAnswer, "");
        drainEvents();
    }
    EXPECT_LT(watch.longestGapMilliseconds(), 60'000) << "an answer that never comes is not waited for";
    engine->shutdown();
    EXPECT_EQ(engine->statistics(), FSStatistics());
}

} // namespace
} // namespace ondavia::testing
