#include "platform/linux/CurlURLSession.h"
#include "support/HttpServer.h"
#include "support/NoThreads.h"
#include "support/TestSupport.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QUrl>

#include <arpa/inet.h>
#include <atomic>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace ondavia {
namespace {

using testing::resultOf;

URLResponse get(const std::string& url, const URLSessionConfiguration& configuration = {}) {
    const auto session = makeCurlURLSession(configuration);
    return resultOf(session->data(makeURL(url).value()));
}

URLError::Kind errorKindOf(const std::string& url, const URLSessionConfiguration& configuration = {}) {
    try {
        get(url, configuration);
    } catch (const URLError& error) {
        return error.kind();
    }
    ADD_FAILURE() << "no error";
    return URLError::Kind::Other;
}

class URLSessionTest : public ::testing::Test {
protected:
    testing::HttpServer http;
};

TEST(MakeURL, refusesWhatIsNoURL) {
    EXPECT_FALSE(makeURL(""));
    EXPECT_FALSE(makeURL("http://host/live/user/pass word/1.ts"));
    EXPECT_FALSE(makeURL("http://host/a%zz"));
    EXPECT_TRUE(makeURL("http://host:8080//live/user/p&a+ss/1.ts"));
    EXPECT_EQ(makeURL("http://host//x?a=b&c=d")->toString().toStdString(), "http://host//x?a=b&c=d");
}

TEST_F(URLSessionTest, bringsStatusAndBody) {
    http.server.Get("/a", [](const auto&, auto& reply) { reply.set_content("corpo", "text/plain"); });
    http.start();
    const URLResponse response = get(http.url("/a"));
    EXPECT_EQ(response.statusCode, 200);
    EXPECT_EQ(response.body, "corpo");
}

TEST_F(URLSessionTest, reportsAnErrorStatusAsAnAnswer) {
    http.server.Get("/denied", [](const auto&, auto& reply) {
        reply.status = 403;
        reply.set_content("no", "text/plain");
    });
    http.start();
    EXPECT_EQ(get(http.url("/denied")).statusCode, 403);
    EXPECT_EQ(get(http.url("/missing")).statusCode, 404);
}

TEST_F(URLSessionTest, sendsTheGivenHeaders) {
    std::string agent;
    http.server.Get("/a",
                    [&](const auto& request, auto&) { agent = request.get_header_value("User-Agent"); });
    http.start();
    resultOf(makeCurlURLSession()->data(makeURL(http.url("/a")).value(), {{"User-Agent", "VLC/3"}}));
    http.stop();
    EXPECT_EQ(agent, "VLC/3");
}

TEST_F(URLSessionTest, pastesTheQueryUnchanged) {
    std::string target;
    http.server.Get("/a", [&](const auto& request, auto&) { target = request.target; });
    http.start();
    get(http.url("/a?password=p&q+r%20s"));
    http.stop();
    EXPECT_EQ(target, "/a?password=p&q+r%20s");
}

TEST_F(URLSessionTest, followsRedirectsButNotForEver) {
    http.server.Get("/once", [](const auto&, auto& reply) { reply.set_redirect("/target"); });
    http.server.Get("/target", [](const auto&, auto& reply) { reply.set_content("here", "text/plain"); });
    http.server.Get("/loop", [](const auto&, auto& reply) { reply.set_redirect("/loop"); });
    http.start();
    EXPECT_EQ(get(http.url("/once")).body, "here");
    EXPECT_EQ(errorKindOf(http.url("/loop")), URLError::Kind::TooManyRedirects);
}

TEST_F(URLSessionTest, reportsARefusedConnection) {
    QTcpServer unused;
    ASSERT_TRUE(unused.listen(QHostAddress::LocalHost));
    const std::string url = "http://127.0.0.1:" + std::to_string(unused.serverPort()) + "/";
    unused.close();
    EXPECT_EQ(errorKindOf(url), URLError::Kind::Unreachable);
}

TEST_F(URLSessionTest, reportsABodyThatIsCutShort) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&server] {
        QTcpSocket* peer = server.nextPendingConnection();
        QObject::connect(peer, &QTcpSocket::readyRead, peer, [peer] {
            peer->write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nonly this");
            peer->disconnectFromHost();
        });
    });
    EXPECT_EQ(errorKindOf("http://127.0.0.1:" + std::to_string(server.serverPort()) + "/"),
              URLError::Kind::Cut);
}

TEST_F(URLSessionTest, givesUpOnASilentServerAndOnASlowOne) {
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    const std::string url = "http://127.0.0.1:" + std::to_string(silent.serverPort()) + "/";
    EXPECT_EQ(errorKindOf(url, {.requestTimeout = 0.2}), URLError::Kind::TimedOut);
    EXPECT_EQ(errorKindOf(url, {.resourceTimeout = 0.2}), URLError::Kind::TimedOut);
}

TEST_F(URLSessionTest, namesNoSecretInAnError) {
    try {
        get("http://127.0.0.1:1/live/ana/s3cret-word/1.ts");
        FAIL();
    } catch (const URLError& error) {
        EXPECT_EQ(std::string(error.what()).find("s3cret-word"), std::string::npos) << error.what();
    }
}

/// Keeps counts of what arrives, and waits or fails where a test asks for it.
class CountingReader final : public URLBodyReader {
public:
    void begin(std::optional<int> statusCode) override { status = statusCode; }
    void receive(std::string_view bytes) override {
        EXPECT_NE(QThread::currentThread(), QCoreApplication::instance()->thread());
        received += bytes.size();
        if (received > failAfter) {
            throw std::length_error("enough");
        }
    }
    void finish() override { finished = true; }

    std::optional<int> status;
    std::atomic<std::size_t> received = 0;
    std::size_t failAfter = SIZE_MAX;
    std::atomic_bool finished = false;
};

/// Sends zeros as fast as the client takes them, and counts them. Of a type that the server does not
/// compress.
void serveZeros(httplib::Response& reply, std::atomic<std::size_t>& sent) {
    reply.set_chunked_content_provider("video/mp2t", [&sent](std::size_t, httplib::DataSink& sink) {
        static const std::string block(64 << 10, '0');
        sent += block.size();
        return sink.write(block.data(), block.size());
    });
}

TEST_F(URLSessionTest, streamsOnAPoolThreadInOrder) {
    http.server.Get(
        "/a", [](const auto&, auto& reply) { reply.set_content(std::string(5 << 20, 'x'), "text/plain"); });
    http.start();
    const auto reader = std::make_shared<CountingReader>();
    resultOf(makeCurlURLSession()->stream(makeURL(http.url("/a")).value(), reader));
    EXPECT_EQ(reader->status, 200);
    EXPECT_EQ(reader->received, std::size_t{5} << 20);
    EXPECT_TRUE(reader->finished);
}

TEST_F(URLSessionTest, endsAnEndlessBodyWhenTheReaderHasHadEnough) {
    std::atomic<std::size_t> sent = 0;
    http.server.Get("/endless", [&](const auto&, auto& reply) { serveZeros(reply, sent); });
    http.start();
    const auto reader = std::make_shared<CountingReader>();
    reader->failAfter = std::size_t{8} << 20;
    EXPECT_THROW(resultOf(makeCurlURLSession()->stream(makeURL(http.url("/endless")).value(), reader)),
                 std::length_error);
    EXPECT_FALSE(reader->finished);
}

TEST_F(URLSessionTest, boundsACollectedBody) {
    std::atomic<std::size_t> sent = 0;
    http.server.Get("/endless", [&](const auto&, auto& reply) { serveZeros(reply, sent); });
    http.start();
    EXPECT_EQ(errorKindOf(http.url("/endless")), URLError::Kind::TooLong);
    EXPECT_LT(sent, URLSession::maximumCollectedBody * 2);
}

/// Sends an endless body as it is to the first client, and knows when the system takes no more of it.
class EndlessSender final {
public:
    EndlessSender() {
        sockaddr_in address{
            .sin_family = AF_INET, .sin_port = 0, .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
        socklen_t size = sizeof address;
        bind(m_listener, reinterpret_cast<sockaddr*>(&address), size);
        getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size);
        listen(m_listener, 1);
        m_port = ntohs(address.sin_port);
        m_thread = std::jthread([this](const std::stop_token& stop) { serve(stop); });
    }
    ~EndlessSender() {
        m_thread.request_stop();
        m_thread.join();
        close(m_listener);
    }
    EndlessSender(const EndlessSender&) = delete;
    EndlessSender& operator=(const EndlessSender&) = delete;

    [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/"; }
    /// What the system has taken, in bytes on the wire.
    std::atomic<std::size_t> sent = 0;
    /// The client's window and the buffers are full: nothing was taken for a while.
    std::atomic_bool stuck = false;

private:
    static bool isReady(int socket, short events) {
        pollfd waiting{.fd = socket, .events = events, .revents = 0};
        return poll(&waiting, 1, 1000) > 0;
    }
    void serve(const std::stop_token& stop) {
        while (!isReady(m_listener, POLLIN)) {
            if (stop.stop_requested()) {
                return;
            }
        }
        const int client = accept4(m_listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: video/mp2t\r\n\r\n";
        send(client, head.data(), head.size(), MSG_NOSIGNAL);
        const std::string block(64 << 10, '0');
        while (!stop.stop_requested()) {
            if (!isReady(client, POLLOUT)) {
                stuck = true;
                continue;
            }
            stuck = false;
            const auto taken = send(client, block.data(), block.size(), MSG_NOSIGNAL);
            if (taken < 0 && errno != EAGAIN) {
                break;
            }
            sent += taken > 0 ? static_cast<std::size_t>(taken) : 0;
        }
        close(client);
    }

    int m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int m_port = 0;
    std::jthread m_thread;
};

TEST_F(URLSessionTest, slowsTheSenderDownToTheReader) {
    /// Stands still in its first call until the test lets it go.
    class StuckReader final : public URLBodyReader {
    public:
        void begin(std::optional<int>) override {}
        void receive(std::string_view) override {
            release.wait(false);
            throw std::length_error("enough");
        }
        void finish() override {}
        std::atomic_bool release = false;
    };
    EndlessSender sender;
    const auto reader = std::make_shared<StuckReader>();
    auto task = makeCurlURLSession()->stream(makeURL(sender.url()).value(), reader);
    // What is under way fits into the sockets' buffers, however large the system lets them grow; then the
    // sender stands still too. A client that read on would take any number of bytes.
    constexpr std::size_t beyondBuffers = std::size_t{256} << 20;
    EXPECT_TRUE(testing::waitUntil([&] { return sender.stuck || sender.sent > beyondBuffers; }));
    EXPECT_LT(sender.sent, beyondBuffers);
    EXPECT_GT(sender.sent, 0u);
    reader->release = true;
    reader->release.notify_all();
    EXPECT_THROW(resultOf(std::move(task)), std::length_error);
}

TEST_F(URLSessionTest, failsLikeATransferWhereNoThreadCanBeHad) {
    http.start();
    const testing::NoThreads none;
    EXPECT_EQ(errorKindOf(http.url("/a")), URLError::Kind::Other);
}

TEST_F(URLSessionTest, inflatesACompressedReply) {
    http.server.Get("/a", [](const auto& request, auto& reply) {
        EXPECT_NE(request.get_header_value("Accept-Encoding").find("gzip"), std::string::npos);
        // "comprimido" by gzip.
        static constexpr unsigned char bytes[] = {0x1f, 0x8b, 0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02, 0x03,
                                                  0x4b, 0xce, 0xcf, 0x2d, 0x28, 0xca, 0xcc, 0xcd, 0x4c, 0xc9,
                                                  0x07, 0x00, 0xdc, 0x48, 0x18, 0x7d, 0x0a, 0x00, 0x00, 0x00};
        reply.set_header("Content-Encoding", "gzip");
        reply.body.assign(reinterpret_cast<const char*>(bytes), sizeof bytes);
    });
    http.start();
    EXPECT_EQ(get(http.url("/a")).body, "comprimido");
}

} // namespace
} // namespace ondavia
