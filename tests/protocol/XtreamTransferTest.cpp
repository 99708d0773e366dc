#include "ClientSupport.h"
#include "WireSupport.h"

#include "support/HttpServer.h"

#include <QCoreApplication>
#include <QThread>
#include <QUrl>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>
#include <zlib.h>

namespace ondavia {
namespace {

using testing::resultOf;
using testing::xtreamErrorOf;

constexpr const char* apiPath = "/player_api.php";

/// Sends blanks for as long as the client takes them: no bound holds them, and no parser minds them.
void answerWithoutEnd(httplib::Response& response) {
    response.set_chunked_content_provider("application/octet-stream",
                                          [](std::size_t, httplib::DataSink& sink) {
                                              static const std::string blanks(64 << 10, ' ');
                                              return sink.write(blanks.data(), blanks.size());
                                          });
}

TEST(EndlessReply, isAnErrorStatusWhateverItsLength) {
    testing::HttpServer http;
    http.server.Get(apiPath, [](const auto&, httplib::Response& response) {
        response.status = 500;
        answerWithoutEnd(response);
    });
    http.start();
    const auto client = testing::makeClient(http.url());
    for (const auto& error : {xtreamErrorOf([&] { resultOf(client->authenticate()); }),
                              xtreamErrorOf([&] { resultOf(client->getCategories("get_vod_categories")); }),
                              xtreamErrorOf([&] { resultOf(client->getSeriesInfo(1)); })}) {
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind(), XtreamError::Case::httpError);
        EXPECT_EQ(error->statusCode(), 500);
    }
}

TEST(EndlessReply, isRefusedByTheDecodersOwnBound) {
    testing::HttpServer http;
    http.server.Get(apiPath, [](const auto&, httplib::Response& response) { answerWithoutEnd(response); });
    http.start();
    const auto client = testing::makeClient(http.url());
    try {
        resultOf(client->getCategories("get_vod_categories"));
        ADD_FAILURE();
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.action(), "get_vod_categories");
        EXPECT_EQ(error.expected(), "reply of at most 32 MiB");
    }
}

TEST(FatalFault, fallsOnlyWhenTheListAndItsTransferHaveEndedWell) {
    const testing::FatalFaultTrap trap;
    const auto fetch = [&](const std::string& list, std::size_t missing) {
        testing::HttpServer http;
        http.server.Get(apiPath, [&](const auto&, httplib::Response& response) {
            response.set_content_provider(list.size() + missing, "application/json",
                                          [&](std::size_t at, std::size_t, httplib::DataSink& sink) {
                                              return at < list.size() &&
                                                     sink.write(list.data() + at, list.size() - at);
                                          });
        });
        http.start();
        resultOf(testing::makeClient(http.url())->fetchRows<XtreamVodStream>([](auto&&) {}));
    };
    const std::string fatal = R"([{"rating":123456789012345678901234567890})";
    EXPECT_THROW(fetch(fatal + "]", 0), testing::FatalFaultRaised);
    EXPECT_THROW(fetch(fatal + "]", 10), URLError) << "a list that seems whole, cut in the blanks behind it";
    EXPECT_THROW(fetch(fatal + ",", 10), URLError);
    EXPECT_THROW(fetch(fatal, 0), DecodingError);
    EXPECT_THROW(fetch(fatal + R"(,{"num":"7"}])", 0), DecodingError);
}

std::atomic<QThread*> decodingThread = nullptr;

TEST(Decoding, staysOffTheMainThread) {
    struct Stopped final {};
    testing::HttpServer http;
    http.server.Get(apiPath, [](const auto&, httplib::Response& response) {
        response.set_content(R"({"episodes":{"1":[{"info":{"rating":1e300}}]}})", "application/octet-stream");
    });
    http.start();
    // The one place within the decoder that tells which thread it is on.
    setFatalFaultHandler([](std::string_view) {
        decodingThread = QThread::currentThread();
        throw Stopped();
    });
    const auto client = testing::makeClient(http.url());
    EXPECT_THROW(resultOf(client->getSeriesInfo(1)), Stopped);
    setFatalFaultHandler(nullptr);
    EXPECT_NE(decodingThread, nullptr);
    EXPECT_NE(decodingThread, QCoreApplication::instance()->thread());
}

/// Lets nobody go on before everybody has come.
class Gathering final {
public:
    explicit Gathering(int expected)
        : m_expected(expected) {}

    /// False when the others don't come.
    bool join() {
        std::unique_lock lock(m_mutex);
        ++m_arrived;
        m_changed.notify_all();
        return m_changed.wait_for(lock, std::chrono::seconds(20), [this] { return m_arrived >= m_expected; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_expected;
    int m_arrived = 0;
};

TEST(SixLists, areFetchedSideBySide) {
    Gathering gathering(6);
    testing::HttpServer http;
    http.server.Get(apiPath, [&](const auto&, httplib::Response& response) {
        response.status = gathering.join() ? 200 : 503;
        response.set_content("[]", "application/octet-stream");
    });
    http.start();
    const auto client = testing::makeClient(http.url());
    const auto ignore = [](auto&&) {};
    auto liveCategories = client->getCategories("get_live_categories");
    auto vodCategories = client->getCategories("get_vod_categories");
    auto seriesCategories = client->getCategories("get_series_categories");
    auto lives = client->fetchRows<XtreamLiveStream>(ignore);
    auto movies = client->fetchRows<XtreamVodStream>(ignore);
    auto series = client->fetchRows<XtreamSeriesItem>(ignore);
    EXPECT_NO_THROW(resultOf(std::move(liveCategories)));
    EXPECT_NO_THROW(resultOf(std::move(vodCategories)));
    EXPECT_NO_THROW(resultOf(std::move(seriesCategories)));
    EXPECT_NO_THROW(resultOf(std::move(lives)));
    EXPECT_NO_THROW(resultOf(std::move(movies)));
    EXPECT_NO_THROW(resultOf(std::move(series)));
}

/// A server that keeps what it was asked.
class RequestTest : public ::testing::Test {
protected:
    RequestTest() {
        http.server.Get(".*", [this](const httplib::Request& request, httplib::Response& response) {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(request);
            response.set_header("Cache-Control", "public, max-age=86400");
            response.set_header("ETag", "\"one\"");
            const std::string name = std::to_string(m_requests.size());
            response.set_content(R"([{"category_id":"1","category_name":")" + name + "\"}]",
                                 "application/octet-stream");
        });
        http.start();
    }

    [[nodiscard]] std::vector<httplib::Request> requests() {
        const std::lock_guard lock(m_mutex);
        return m_requests;
    }

    testing::HttpServer http;

private:
    std::mutex m_mutex;
    std::vector<httplib::Request> m_requests;
};

TEST_F(RequestTest, goesToTheServerAgainThoughTheReplyMayBeKept) {
    const auto client = testing::makeClient(http.url());
    EXPECT_EQ(resultOf(client->getCategories("get_vod_categories")).at(0).categoryName, "1");
    EXPECT_EQ(resultOf(client->getCategories("get_vod_categories")).at(0).categoryName, "2");
    ASSERT_EQ(requests().size(), 2U);
    EXPECT_FALSE(requests()[1].has_header("If-None-Match"));
}

/// What a request said for itself, without what the server noted about the connection.
httplib::Headers sentHeaders(httplib::Request request) {
    for (const char* name : {"REMOTE_ADDR", "REMOTE_PORT", "LOCAL_ADDR", "LOCAL_PORT"}) {
        request.headers.erase(name);
    }
    return request.headers;
}

TEST_F(RequestTest, hasTheHeadersOfThePlatformAndNoOthers) {
    const auto session = makeCurlURLSession();
    resultOf(session->data(makeURL(http.url(apiPath)).value()));
    const auto client = testing::makeClient(http.url());
    resultOf(client->getCategories("get_vod_categories"));
    resultOf(client->fetchRows<XtreamVodStream>([](auto&&) {}));
    ASSERT_EQ(requests().size(), 3U);
    const auto plain = sentHeaders(requests()[0]);
    EXPECT_EQ(plain.count("User-Agent"), 1U);
    EXPECT_EQ(sentHeaders(requests()[1]), plain);
    EXPECT_EQ(sentHeaders(requests()[2]), plain);
}

TEST_F(RequestTest, keepsThePortAndThePathOfItsServer) {
    resultOf(testing::makeClient(http.url("/sub/folder/"))->getCategories("get_vod_categories"));
    ASSERT_EQ(requests().size(), 1U);
    EXPECT_EQ(requests()[0].target,
              "/sub/folder/player_api.php?username=u&password=p&action=get_vod_categories");
}

/// `text` compressed for the header "Content-Encoding: gzip".
std::string gzipped(const std::string& text) {
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::string output(deflateBound(&stream, text.size()) + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(output.data());
    stream.avail_out = static_cast<uInt>(output.size());
    deflate(&stream, Z_FINISH);
    output.resize(stream.total_out);
    deflateEnd(&stream);
    return output;
}

TEST(CompressedReplies, areInflatedOrRefused) {
    testing::HttpServer http;
    std::string compressed;
    http.server.Get("/player_api.php", [&](const auto&, httplib::Response& response) {
        response.set_header("Content-Encoding", "gzip");
        response.set_content(compressed, "application/octet-stream");
    });
    http.start();
    const auto client = testing::makeClient(http.url());
    const auto ignore = [](auto&&) {};

    compressed = gzipped(R"([{"series_id":1},{"series_id":2}])");
    EXPECT_EQ(resultOf(client->fetchRows<XtreamSeriesItem>(ignore)), 2);

    // A bomb: 100 MiB of one string out of some 100 KiB.
    compressed = gzipped("[\"" + std::string(100 << 20, 'x') + "\"]");
    EXPECT_LT(compressed.size(), 1U << 20);
    EXPECT_THROW(resultOf(client->fetchRows<XtreamSeriesItem>(ignore)), DecodingError);
    EXPECT_THROW(resultOf(client->getCategories("get_series_categories")), DecodingError);
}

} // namespace
} // namespace ondavia
