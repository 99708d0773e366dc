#include "ClientSupport.h"

#include "support/TestSupport.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

namespace ondavia {
namespace {

using testing::makeClient;

TEST(XtreamServer, isTrimmedAndGivenAScheme) {
    const testing::LogCapture log;
    const auto client = makeClient("  \n tv.example:8080/ \t");
    EXPECT_EQ(client->server(), "http://tv.example:8080");
    EXPECT_EQ(client->baseURL(), "http://tv.example:8080");
    EXPECT_EQ(
        log.messages(LogCategory::network, LogLevel::Error),
        std::vector<std::string>{"server URL had no scheme, defaulting to http \xE2\x80\x94 credentials will "
                                 "be sent in clear text. Consider adding https:// prefix manually."});
}

TEST(XtreamServer, keepsAnAddressWithAScheme) {
    const testing::LogCapture log;
    EXPECT_EQ(makeClient("https://tv.example/path?x=1")->server(), "https://tv.example/path?x=1");
    EXPECT_EQ(makeClient("http://tv.example:80")->server(), "http://tv.example:80");
    EXPECT_TRUE(log.records().empty());
}

TEST(XtreamServer, losesOneSlashOnly) {
    const auto client = makeClient("http://tv.example//");
    EXPECT_EQ(client->server(), "http://tv.example/");
    EXPECT_EQ(client->getEpgXMLURL(), "http://tv.example//xmltv.php?username=u&password=p");
}

TEST(XtreamServer, hasItsSchemeInLowerCase) {
    const testing::LogCapture log;
    EXPECT_EQ(makeClient("HTTP://tv.example")->server(), "http://HTTP://tv.example");
    EXPECT_EQ(log.messages(LogCategory::network, LogLevel::Error).size(), 1U);
}

TEST(XtreamAPIClient, keepsTheCredentialsUntouched) {
    const auto client = makeClient("http://h", " maria ", "se gredo\n");
    EXPECT_EQ(client->username(), " maria ");
    EXPECT_EQ(client->password(), "se gredo\n");
    EXPECT_EQ(client->userInfo(), std::nullopt);
    EXPECT_EQ(client->serverInfo(), std::nullopt);
    EXPECT_EQ(XtreamAPIClient::timeout, 30.0);
}

TEST(XtreamAPIClient, asksForItsTimeOuts) {
    URLSessionConfiguration asked;
    const XtreamAPIClient client("http://h", "u", "p", [&](const URLSessionConfiguration& configuration) {
        asked = configuration;
        return makeCurlURLSession(configuration);
    });
    EXPECT_EQ(asked.requestTimeout, 120);
    EXPECT_EQ(asked.resourceTimeout, 600);
}

TEST(XtreamAPIClient, hasItsCredentialsMaskedInLogs) {
    const testing::LogCapture log;
    const auto client = makeClient("http://h", "utilizador7", "segredo-7");
    AppLogger::general.error("a %s b", {"utilizador7 segredo-7"});
    EXPECT_EQ(log.text().find("utilizador7"), std::string::npos);
    EXPECT_EQ(log.text().find("segredo-7"), std::string::npos);
}

TEST(XtreamURL, hasOneFormForEachUse) {
    const auto client = makeClient("http://h:80", "ma&ria", "s%20e/g");
    EXPECT_EQ(client->getLiveStreamURL(17), "http://h:80/live/ma&ria/s%20e/g/17.ts");
    EXPECT_EQ(client->getMovieStreamURL(-5, "mkv"), "http://h:80/movie/ma&ria/s%20e/g/-5.mkv");
    EXPECT_EQ(client->getSeriesStreamURL("ep 1", ""), "http://h:80/series/ma&ria/s%20e/g/ep 1.");
    EXPECT_EQ(client->getEpgXMLURL(), "http://h:80/xmltv.php?username=ma&ria&password=s%20e/g");
}

TEST(XtreamURL, keepsThePortThePathAndTheQueryOfItsServer) {
    const auto client = makeClient("https://tv.example:8443/sub/folder?key=1&x=/y");
    const std::string server = "https://tv.example:8443/sub/folder?key=1&x=/y";
    EXPECT_EQ(client->baseURL(), server);
    EXPECT_EQ(client->getLiveStreamURL(17), server + "/live/u/p/17.ts");
    EXPECT_EQ(client->getMovieStreamURL(42, "mkv"), server + "/movie/u/p/42.mkv");
    EXPECT_EQ(client->getSeriesStreamURL("5", "mp4"), server + "/series/u/p/5.mp4");
    EXPECT_EQ(client->getCatchupURL(17, Date(), 90), server + "/timeshift/u/p/90/1970-01-01:00-00/17.ts");
    EXPECT_EQ(client->getEpgXMLURL(), server + "/xmltv.php?username=u&password=p");
}

Date instant(int year, unsigned month, unsigned day, int hour, int minute, int second) {
    return std::chrono::sys_days(std::chrono::year(year) / month / day) + std::chrono::hours(hour) +
           std::chrono::minutes(minute) + std::chrono::seconds(second);
}

TEST(XtreamURL, startsCatchUpInUniversalTimeWhateverTheZone) {
    const auto client = makeClient("http://h");
    for (const char* zone : {"UTC", "America/Sao_Paulo", "Asia/Kolkata", "Pacific/Auckland"}) {
        setenv("TZ", zone, 1);
        tzset();
        EXPECT_EQ(client->getCatchupURL(17, instant(2026, 3, 1, 21, 5, 0), 90),
                  "http://h/timeshift/u/p/90/2026-03-01:21-05/17.ts");
        EXPECT_EQ(client->getCatchupURL(17, instant(2024, 2, 29, 0, 0, 59), 5),
                  "http://h/timeshift/u/p/5/2024-02-29:00-00/17.ts");
        EXPECT_EQ(client->getCatchupURL(17, instant(1969, 12, 31, 23, 59, 59), 5),
                  "http://h/timeshift/u/p/5/1969-12-31:23-59/17.ts");
    }
    unsetenv("TZ");
    tzset();
}

TEST(XtreamError, describesEachCase) {
    EXPECT_STREQ(XtreamError::httpError(404).what(), "Erro HTTP 404");
    EXPECT_EQ(XtreamError::httpError(404).statusCode(), 404);
    EXPECT_STREQ(XtreamError::decodingError(std::runtime_error("x")).what(), "Erro de dados: x");
    EXPECT_STREQ(XtreamError::invalidURL().what(), "URL invalido");
    EXPECT_STREQ(XtreamError::authFailed().what(), "Autenticacao falhou");
    EXPECT_STREQ(XtreamError::expired().what(), "Conta expirada");
    EXPECT_EQ(XtreamError::expired().kind(), XtreamError::Case::expired);
}

} // namespace
} // namespace ondavia
