#include "CommandLine.h"

#include "support/HttpServer.h"

#include <QDateTime>

#include <map>
#include <mutex>

namespace ondavia::cli::testing {
namespace {

/// A window's title, a colour by its C1 form, DEL, a turned direction, and the three that move the cursor.
constexpr const char* hostile = "a\x1b]0;b\x07\u009b31m\x7f\u202ec\n\r\td\u2028e";
/// The same in JSON and as it must be shown.
constexpr const char* hostileJson = R"(a\u001b]0;b\u0007\u009b31m\u007f\u202ec\n\r\td\u2028e)";
constexpr const char* hostileShown = R"(a\x1b]0;b\x07\u009b31m\x7f\u202ec\n\r\td\u2028e)";

std::string replaced(std::string text, const std::string& what, const std::string& with) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
    return text;
}

/// What the provider answers by action; "H" in quotation marks stands for the hostile text.
std::map<std::string, std::string> hostileReplies() {
    const std::string listing = QByteArray(hostile).toBase64().toStdString();
    return {
        {"",
         R"({"user_info":{"auth":1,"status":"H","message":"H","is_trial":"H","allowed_output_formats":["H"]},)"
         R"("server_info":{"timezone":"H"}})"},
        {"get_live_categories", R"([{"category_id":"1","category_name":"H"}])"},
        {"get_vod_categories", R"([{"category_id":"1","category_name":"H"}])"},
        {"get_series_categories", R"([{"category_id":"1","category_name":"H"}])"},
        {"get_live_streams", R"([{"name":"H","stream_id":7,"category_id":"1","stream_icon":"H",)"
                             R"("epg_channel_id":"tv"}])"},
        {"get_vod_streams",
         R"([{"name":"H","stream_id":8,"category_id":"1","plot":"H","container_extension":"H"}])"},
        {"get_series", R"([{"name":"H","series_id":9,"category_id":"1","cast":"H"}])"},
        {"get_series_info", R"({"seasons":[{"name":"H","overview":"H"}],"info":{},)"
                            R"("episodes":{"1":[{"id":"H","title":"H"},{"id":"12","title":"H"}]}})"},
        {"get_simple_data_table", R"({"epg_listings":[{"title":")" + listing + R"(","description":")" +
                                      listing +
                                      R"(","start":"2026-03-01 10:00:00","end":"2026-03-01 11:00:00"}]})"},
        {"get_vod_info", "[\"H\"]"},
    };
}

/// A provider all of whose texts are hostile.
class HostileProvider : public ::testing::Test {
protected:
    HostileProvider()
        : m_replies(hostileReplies()) {
        http.server.Get(
            "/player_api.php", [this](const httplib::Request& request, httplib::Response& response) {
                const std::lock_guard lock(m_mutex);
                response.set_content(m_replies[request.get_param_value("action")], "application/json");
            });
        http.server.Get("/xmltv.php", [this](const httplib::Request&, httplib::Response& response) {
            const std::lock_guard lock(m_mutex);
            response.set_content(m_guide, "application/xml");
        });
        http.server.Get("/live/.*", [this](const httplib::Request&, httplib::Response& response) {
            response.set_content(std::string(hostile) + "\xff\xfe\x9b", "video/mp2t");
        });
        for (auto& [action, reply] : m_replies) {
            reply = replaced(reply, "\"H\"", '"' + std::string(hostileJson) + '"');
        }
        http.start();
    }

    void answer(const std::string& action, const std::string& reply) {
        const std::lock_guard lock(m_mutex);
        m_replies[action] = reply;
    }
    void answerGuide(const std::string& guide) {
        const std::lock_guard lock(m_mutex);
        m_guide = guide;
    }

    /// What a command prints, whose output is searched for what steers a terminal in every run.
    RunResult run(const char* commandLine, int status = 0) {
        RunResult result = cli.run(QString::fromUtf8(commandLine).split(QLatin1Char(' ')));
        EXPECT_EQ(result.status, status) << commandLine << ": " << result.errors;
        return result;
    }

    ondavia::testing::HttpServer http;
    CommandLine cli;

private:
    std::mutex m_mutex;
    std::map<std::string, std::string> m_replies;
    std::string m_guide = "<tv/>";
};

TEST_F(HostileProvider, IsShownWithItsControlCharactersWrittenOut) {
    cli.fill(http.url());
    for (const char* command : {"account", "categories live", "categories series", "list live", "list movies",
                                "list series", "show main_7", "show main_8", "show main_series_9", "series 9",
                                "show main_series_9_ep_12", "guide short main_7"}) {
        const auto result = run(command);
        EXPECT_TRUE(holds(result.output, hostileShown)) << command << ": " << result.output;
    }
    const auto url = cli.runWithAccountInOutput({QStringLiteral("url"), QStringLiteral("main_8")});
    EXPECT_TRUE(holds(url.output, std::string("/8.") + hostileShown + "\n")) << url.output;
}

TEST_F(HostileProvider, IsPassedOnWholeInJson) {
    cli.fill(http.url());
    for (const auto& [command, key] :
         {std::pair("account --json", "message"), std::pair("list live --json", "name"),
          std::pair("categories movies --json", "name"), std::pair("guide short main_7 --json", "title")}) {
        const auto result = run(command);
        const auto texts = textsOf(objectsOf(result.output), key);
        ASSERT_FALSE(texts.empty()) << command;
        EXPECT_EQ(texts.front(), hostile) << command;
    }
    const auto url = cli.runWithAccountInOutput(
        {QStringLiteral("url"), QStringLiteral("main_8"), QStringLiteral("--json")});
    EXPECT_TRUE(textsOf(objectsOf(url.output), "url").at(0).ends_with(hostile)) << url.output;
}

TEST_F(HostileProvider, IsShownSoInItsRefusalOfAnAccount) {
    answer("", R"({"user_info":{"auth":0,"status":")" + std::string(hostileJson) + R"("}})");
    const auto result =
        cli.run({QStringLiteral("signin"), QStringLiteral("--server"), QString::fromStdString(http.url()),
                 QStringLiteral("--username"), QStringLiteral("ana")},
                "x\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, std::string("it says \"") + hostileShown)) << result.errors;
}

TEST_F(HostileProvider, IsShownSoInWhatIsWrongWithItsReplies) {
    cli.signIn(http.url());
    answer("get_live_categories",
           R"([{"category_id":"H","category_name":"a"},{"category_id":"H","category_name":"b"}])");
    answer("get_vod_categories", "\x1b[31m\xff\xfe\u202e is no JSON");
    answer("get_series_categories", R"([{"category_id":7}])");
    answer("get_vod_streams", R"([{"stream_id":"a\u001b\u009bb"}])");
    answer("get_series", "[] \x1b[31m\x9b");
    answerGuide("\x1b[31m\u202e\xff is no guide");
    const auto result = run("doctor", 1);
    EXPECT_TRUE(holds(result.output, R"("\x1b[31m\xff\xfe\u202e is no JSON" found)")) << result.output;
    EXPECT_TRUE(holds(result.output, R"(text "a\x1b\u009bb")")) << result.output;
    EXPECT_TRUE(holds(result.output, R"(text "\x1b[31m\x9b")")) << result.output;
    EXPECT_TRUE(holds(result.output, R"(no XMLTV document: "\x1b[31m\u202e\xff is no guide")"))
        << result.output;
    EXPECT_TRUE(holds(result.output, R"(no video: "a\x1b]0;b\x07\u009b31m)")) << result.output;
    answer("get_live_categories",
           replaced(R"([{"category_id":"H","category_name":"a"},{"category_id":"H","category_name":"b"}])",
                    "\"H\"", '"' + std::string(hostileJson) + '"'));
    EXPECT_TRUE(holds(run("doctor", 1).output, std::string("category id \"") + hostileShown))
        << result.output;
    run("doctor --json", 1);
    answer("get_vod_categories", "[]");
    answer("get_series_categories", "[]");
    answer("get_vod_streams", "[]");
    answer("get_series", "[]");
    const auto sync = run("sync", 1);
    EXPECT_TRUE(holds(sync.errors, std::string("category id \"") + hostileShown)) << sync.errors;
}

TEST_F(HostileProvider, IsShownSoInTheGuide) {
    cli.fill(http.url());
    const auto now = QDateTime::currentDateTimeUtc();
    const auto time = [&now](int hours) {
        return now.addSecs(hours * 3600).toString(QStringLiteral("yyyyMMddhhmmss +0000")).toStdString();
    };
    answerGuide("<tv><programme channel=\"tv\" start=\"" + time(-1) + "\" stop=\"" + time(1) +
                "\"><title>a&#x9b;31m&#x7f;&#x202e;b&#9;&#10;c&#x2028;</title></programme></tv>");
    run("guide load");
    const auto result = run("guide now main_7");
    EXPECT_TRUE(holds(result.output, R"(a\u009b31m\x7f\u202eb)")) << result.output;
}

TEST_F(HostileProvider, DoesNotSpeakThroughWhatIsTypedForIt) {
    cli.fill(http.url());
    for (const char* command : {"show a\x1b[31m\u202e", "list live --category \u009b31m", "list a\x1b[31m",
                                "--a\x1b[31m", "series \x7f"}) {
        const auto result = cli.run(QString::fromUtf8(command).split(QLatin1Char(' ')));
        EXPECT_NE(result.status, 0) << command;
        EXPECT_FALSE(result.errors.empty()) << command;
    }
}

TEST(SteersTerminal, FindsEachThatATerminalObeys) {
    EXPECT_FALSE(steersTerminal("ção\n日本\n"));
    for (const char* text : {"\x1b", "\r", "\t", "\x7f", "\u0085", "\u009b", "\u061c", "\u200e", "\u202e",
                             "\u2066", "\u2028", "\xff", "\x9b"}) {
        EXPECT_TRUE(steersTerminal(text)) << QByteArray(text).toHex().toStdString();
    }
}

} // namespace
} // namespace ondavia::cli::testing
