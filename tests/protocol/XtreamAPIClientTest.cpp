#include "ClientSupport.h"

#include "support/HttpServer.h"
#include "support/MarkedTexts.h"
#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QThread>
#include <atomic>
#include <gtest/gtest.h>
#include <mutex>

namespace ondavia {
namespace {

using testing::resultOf;
using testing::xtreamErrorOf;

class XtreamAPIClientTest : public ::testing::Test {
protected:
    XtreamAPIClientTest() {
        http.server.Get("/player_api.php",
                        [this](const httplib::Request& request, httplib::Response& response) {
                            const std::lock_guard lock(m_mutex);
                            m_targets.push_back(request.target);
                            response.status = status;
                            // The server compresses JSON, at a pace that would be most of a test's time.
                            response.set_content(body, "application/octet-stream");
                        });
        http.start();
    }

    [[nodiscard]] std::shared_ptr<XtreamAPIClient> client(const std::string& password = "p") const {
        return testing::makeClient(http.url(), "u", password);
    }
    [[nodiscard]] std::vector<std::string> targets() {
        const std::lock_guard lock(m_mutex);
        return m_targets;
    }
    void answer(std::string text, int code = 200) {
        const std::lock_guard lock(m_mutex);
        body = std::move(text);
        status = code;
    }
    template<class Row> std::vector<Row> rows() {
        std::vector<Row> all;
        const auto count = resultOf(client()->fetchRows<Row>([&](std::vector<Row>&& batch) {
            std::move(batch.begin(), batch.end(), std::back_inserter(all));
        }));
        EXPECT_EQ(count, static_cast<std::int64_t>(all.size()));
        return all;
    }

    testing::HttpServer http;

private:
    std::mutex m_mutex;
    std::vector<std::string> m_targets;
    std::string body = "{}";
    int status = 200;
};

using Targets = std::vector<std::string>;

TEST_F(XtreamAPIClientTest, logsIn) {
    answer(R"({"user_info":{"auth":1,"exp_date":"1798761600"},"server_info":{"timezone":"UTC"}})");
    const auto provider = client();
    const auto reply = resultOf(provider->authenticate());
    EXPECT_EQ(reply.userInfo.value().expDate, "1798761600");
    EXPECT_EQ(provider->userInfo(), reply.userInfo);
    EXPECT_EQ(provider->serverInfo(), reply.serverInfo);
    EXPECT_EQ(targets(), Targets{"/player_api.php?username=u&password=p"});
}

TEST_F(XtreamAPIClientTest, refusesEveryAnswerButAuthOne) {
    for (const char* text : {R"({"user_info":{"auth":0,"status":"Banned"}})", R"({"user_info":{"auth":2}})",
                             R"({"user_info":{"status":"Active"}})", R"({"user_info":{"auth":null}})",
                             R"({"server_info":{}})", "{}"}) {
        answer(text);
        const auto provider = client();
        const auto error = xtreamErrorOf([&] { resultOf(provider->authenticate()); });
        ASSERT_TRUE(error) << text;
        EXPECT_EQ(error->kind(), XtreamError::Case::authFailed) << text;
    }
}

TEST_F(XtreamAPIClientTest, keepsWhatARefusedLogInBrought) {
    answer(R"({"user_info":{"auth":0,"status":"Banned"},"server_info":{"port":"80"}})");
    const auto provider = client();
    EXPECT_THROW(resultOf(provider->authenticate()), XtreamError);
    EXPECT_EQ(provider->userInfo().value().status, "Banned");
    EXPECT_EQ(provider->serverInfo().value().port, "80");
}

TEST_F(XtreamAPIClientTest, keepsWhatTheLastLogInBrought) {
    answer(R"({"user_info":{"auth":1,"status":"Active"},"server_info":{"port":"80"}})");
    const auto provider = client();
    resultOf(provider->authenticate());
    answer(R"({"user_info":{"auth":0,"status":"Banned"}})");
    EXPECT_THROW(resultOf(provider->authenticate()), XtreamError);
    EXPECT_EQ(provider->userInfo().value().status, "Banned");
    EXPECT_FALSE(provider->serverInfo()) << "nothing of the one before stays";
    answer(R"({"user_info":{"auth":1,"status":"Trial"},"server_info":{"port":"81"}})");
    resultOf(provider->authenticate());
    EXPECT_EQ(provider->userInfo().value().status, "Trial");
    EXPECT_EQ(provider->serverInfo().value().port, "81");
}

TEST_F(XtreamAPIClientTest, marksEachAccountWithoutGivingItAway) {
    const auto mark = [](const char* server, const char* username, const char* password) {
        return testing::makeClient(server, username, password)->accountMark();
    };
    EXPECT_EQ(mark("http://tv.example", "ana", "word"), mark("http://tv.example/", "ana", "word"));
    EXPECT_NE(mark("http://tv.example", "ana", "word"), mark("http://tv.example", "ana", "other"));
    EXPECT_NE(mark("http://tv.example", "ana", "word"), mark("http://tv.example", "anaw", "ord"));
    EXPECT_EQ(mark("http://tv.example", "ana", "word").find("word"), std::string::npos);
}

TEST_F(XtreamAPIClientTest, letsAnExpiredAccountPass) {
    answer(R"({"user_info":{"auth":1,"status":"Expired","exp_date":"1000"}})");
    EXPECT_EQ(resultOf(client()->authenticate()).userInfo.value().status, "Expired");
}

TEST_F(XtreamAPIClientTest, keepsTheAddressThatTheUserGave) {
    answer(R"({"user_info":{"auth":1},"server_info":{"url":"other.example","port":"1","https_port":"2"}})");
    const auto provider = client();
    resultOf(provider->authenticate());
    EXPECT_EQ(provider->baseURL(), http.url());
}

TEST_F(XtreamAPIClientTest, raisesEveryErrorStatusBeforeLookingAtTheBody) {
    for (const int code : {300, 304, 401, 403, 404, 500, 503}) {
        answer("[]", code);
        const auto provider = client();
        for (const auto& error :
             {xtreamErrorOf([&] { resultOf(provider->authenticate()); }),
              xtreamErrorOf([&] { resultOf(provider->getSeriesInfo(1)); }),
              xtreamErrorOf([&] { resultOf(provider->getCategories("get_vod_categories")); }),
              xtreamErrorOf([&] { rows<XtreamVodStream>(); })}) {
            ASSERT_TRUE(error) << code;
            EXPECT_EQ(error->kind(), XtreamError::Case::httpError);
            EXPECT_EQ(error->statusCode(), code);
        }
    }
}

TEST_F(XtreamAPIClientTest, takesEveryStatusOfTheTwoHundredsForSuccess) {
    const std::string list = R"([{"category_id":"1","category_name":"A"}])";
    for (const int code : {200, 206, 299}) {
        answer(list, code);
        EXPECT_EQ(resultOf(client()->getCategories("get_vod_categories")).size(), 1U) << code;
        EXPECT_EQ(rows<XtreamVodStream>().size(), 1U) << code;
    }
    // A reply without content: too short for anything but a list.
    answer("", 204);
    EXPECT_TRUE(resultOf(client()->getCategories("get_vod_categories")).empty());
    EXPECT_TRUE(rows<XtreamVodStream>().empty());
    EXPECT_THROW(resultOf(client()->authenticate()), DecodingError);
}

TEST(XtreamErrorTexts, areLookedUpByTheirKeysOrBuiltHere) {
    EXPECT_STREQ(XtreamError::invalidURL().what(), "URL invalido");
    EXPECT_STREQ(XtreamError::authFailed().what(), "Autenticacao falhou");
    EXPECT_STREQ(XtreamError::expired().what(), "Conta expirada");
    const testing::MarkedTexts texts{"error.invalidURL", "error.authFailed", "error.accountExpired"};
    EXPECT_STREQ(XtreamError::invalidURL().what(), "<error.invalidURL>");
    EXPECT_STREQ(XtreamError::authFailed().what(), "<error.authFailed>");
    EXPECT_STREQ(XtreamError::expired().what(), "<error.accountExpired>");
    EXPECT_STREQ(XtreamError::httpError(503).what(), "Erro HTTP 503");
    EXPECT_STREQ(XtreamError::decodingError(std::runtime_error("row 3")).what(), "Erro de dados: row 3");
}

TEST_F(XtreamAPIClientTest, raisesInvalidURLForAPasswordWithABlank) {
    const auto provider = client("pass word");
    for (const auto& error :
         {xtreamErrorOf([&] { resultOf(provider->authenticate()); }),
          xtreamErrorOf([&] { resultOf(provider->getEPGForStream(1)); }),
          xtreamErrorOf([&] { resultOf(provider->fetchRows<XtreamLiveStream>([](auto&&) {})); })}) {
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind(), XtreamError::Case::invalidURL);
    }
    EXPECT_TRUE(targets().empty());
}

TEST_F(XtreamAPIClientTest, sendsAPasswordWithAnAmpersandAsItIs) {
    answer(R"({"user_info":{"auth":1}})");
    resultOf(client("a&b")->authenticate());
    EXPECT_EQ(targets(), Targets{"/player_api.php?username=u&password=a&b"});
}

TEST_F(XtreamAPIClientTest, passesTransportErrorsOn) {
    http.stop();
    EXPECT_THROW(resultOf(client()->authenticate()), URLError);
    EXPECT_THROW(resultOf(client()->getCategories("get_live_categories")), URLError);
    EXPECT_THROW(rows<XtreamSeriesItem>(), URLError);
}

TEST_F(XtreamAPIClientTest, passesDecodingErrorsOn) {
    answer("<html><body>Bem-vindo</body></html>");
    EXPECT_THROW(resultOf(client()->authenticate()), DecodingError);
    EXPECT_THROW(resultOf(client()->getSeriesInfo(1)), DecodingError);
    EXPECT_THROW(resultOf(client()->getEPGForStream(1)), DecodingError);
    EXPECT_THROW(rows<XtreamLiveStream>(), DecodingError);
    try {
        resultOf(client()->getCategories("get_series_categories"));
        ADD_FAILURE();
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.action(), "get_series_categories");
    }
}

TEST_F(XtreamAPIClientTest, fetchesSeriesDetails) {
    answer(R"({"info":{"name":"S"},"episodes":[[{"id":"1"}]]})");
    const auto info = resultOf(client()->getSeriesInfo(77));
    EXPECT_EQ(info.info.value().name, "S");
    EXPECT_EQ(info.episodes.value().at("0").size(), 1U);
    EXPECT_EQ(targets(),
              Targets{"/player_api.php?username=u&password=p&action=get_series_info&series_id=77"});
}

TEST_F(XtreamAPIClientTest, fetchesTheShortGuide) {
    answer(R"({"epg_listings":[{"title":"A"},{"title":"B"}]})");
    EXPECT_EQ(resultOf(client()->getEPGForStream(17)).size(), 2U);
    EXPECT_EQ(targets(),
              Targets{"/player_api.php?username=u&password=p&action=get_simple_data_table&stream_id=17"});
}

TEST_F(XtreamAPIClientTest, takesAGuideWithoutListingsForAnEmptyOne) {
    answer("{}   ");
    EXPECT_TRUE(resultOf(client()->getEPGForStream(17)).empty());
}

TEST_F(XtreamAPIClientTest, takesAShortBodyForAnEmptyListOnly) {
    for (const char* text : {"", "[]", "{}", "null", "<a>"}) {
        answer(text);
        EXPECT_TRUE(resultOf(client()->getCategories("get_live_categories")).empty()) << text;
        EXPECT_TRUE(rows<XtreamVodStream>().empty()) << text;
    }
    for (const char* text : {"", "[]", "null"}) {
        answer(text);
        EXPECT_THROW(resultOf(client()->getSeriesInfo(1)), DecodingError) << text;
        EXPECT_THROW(resultOf(client()->getEPGForStream(1)), DecodingError) << text;
        EXPECT_THROW(resultOf(client()->authenticate()), DecodingError) << text;
    }
    answer("[ 1 ]");
    EXPECT_THROW(resultOf(client()->getCategories("get_live_categories")), DecodingError);
}

TEST_F(XtreamAPIClientTest, fetchesCategories) {
    answer(R"([{"category_id":"1","category_name":"A"},{"category_id":"2","category_name":"B"}])");
    const auto rows = resultOf(client()->getCategories("get_live_categories"));
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[1].categoryName, "B");
    EXPECT_EQ(targets(), Targets{"/player_api.php?username=u&password=p&action=get_live_categories"});
}

std::string seriesList(int count) {
    std::string json = "[";
    for (int row = 0; row < count; ++row) {
        json += (row == 0 ? "" : ",") + std::string(R"({"series_id":)") + std::to_string(row) +
                R"(,"name":"S\u00e9rie","plot":")" + std::string(200, 'p') + "\"}";
    }
    return json + "]";
}

TEST_F(XtreamAPIClientTest, streamsAListInOrder) {
    constexpr int count = 20'000;
    answer(seriesList(count));
    std::atomic_bool onMainThread = false;
    std::atomic_bool overlapping = false;
    std::atomic_bool running = false;
    std::int64_t next = 0;
    int batches = 0;
    const auto provider = client();
    const auto total =
        resultOf(provider->fetchRows<XtreamSeriesItem>([&](std::vector<XtreamSeriesItem>&& batch) {
            overlapping = overlapping || running.exchange(true);
            onMainThread = onMainThread || QThread::currentThread() == QCoreApplication::instance()->thread();
            ++batches;
            for (const auto& row : batch) {
                EXPECT_EQ(row.seriesId, next++);
            }
            running = false;
        }));
    EXPECT_EQ(total, count);
    EXPECT_EQ(next, count);
    EXPECT_GT(batches, 5);
    EXPECT_FALSE(onMainThread);
    EXPECT_FALSE(overlapping);
    EXPECT_EQ(targets(), Targets{"/player_api.php?username=u&password=p&action=get_series"});
}

TEST_F(XtreamAPIClientTest, raisesWhatTheTakerOfRowsThrows) {
    answer(seriesList(10));
    const auto provider = client();
    EXPECT_THROW(resultOf(provider->fetchRows<XtreamSeriesItem>(
                     [](auto&&) { throw std::runtime_error("disk full"); })),
                 std::runtime_error);
}

TEST_F(XtreamAPIClientTest, refusesATruncatedList) {
    const std::string whole = seriesList(5000);
    answer(whole.substr(0, whole.size() - 1));
    EXPECT_THROW(rows<XtreamSeriesItem>(), DecodingError);
}

TEST_F(XtreamAPIClientTest, keepsWhatItFetchesSideBySideApart) {
    answer(seriesList(3000));
    const auto provider = client();
    std::atomic_int64_t seen = 0;
    const auto fetchSeries = [&] {
        return provider->fetchRows<XtreamSeriesItem>([&](auto&& batch) { seen += batch.size(); });
    };
    auto first = fetchSeries();
    auto second = fetchSeries();
    auto third = provider->getSeriesInfo(1);
    EXPECT_EQ(resultOf(std::move(first)), 3000);
    EXPECT_EQ(resultOf(std::move(second)), 3000);
    EXPECT_THROW(resultOf(std::move(third)), DecodingError);
    EXPECT_EQ(seen, 6000);
}

TEST_F(XtreamAPIClientTest, livesUntilItsTasksEnd) {
    answer(R"({"user_info":{"auth":1}})");
    auto provider = client();
    const std::weak_ptr<XtreamAPIClient> watched = provider;
    auto task = provider->authenticate();
    provider.reset();
    EXPECT_FALSE(watched.expired());
    EXPECT_EQ(resultOf(std::move(task)).userInfo.value().auth, 1);
    EXPECT_TRUE(testing::waitUntil([&] { return watched.expired(); }));
}

} // namespace
} // namespace ondavia
