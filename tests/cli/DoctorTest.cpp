#include "CommandLine.h"

#include "support/HttpServer.h"

#include <map>

namespace ondavia::cli::testing {
namespace {

struct Examination final {
    RunResult run;
    /// Result and detail by question.
    std::map<std::string, std::pair<std::string, std::string>> answers;
};

class Doctor : public CliTest {
protected:
    Doctor() { cli.signIn(url()); }

    Examination examine(const char* faults = nullptr) {
        if (faults != nullptr) {
            provider.setFault(faults);
        }
        Examination examination;
        examination.run = cli.run({QStringLiteral("doctor"), QStringLiteral("--json")});
        for (const auto& object : objectsOf(examination.run.output)) {
            const auto text = [&](const char* key) {
                return object[QLatin1String(key)].toString().toStdString();
            };
            examination.answers[text("question")] = {text("result"), text("detail")};
        }
        return examination;
    }
};

TEST_F(Doctor, FindsNothingWrongWithAProviderThatIsWell) {
    const auto examination = examine();
    EXPECT_EQ(examination.run.status, 0) << examination.run.errors;
    EXPECT_EQ(examination.answers.size(), 12U);
    for (const auto& [question, answer] : examination.answers) {
        EXPECT_EQ(answer.first, "ok") << question << ": " << answer.second;
    }
}

TEST_F(Doctor, NamesRowAndKeyOfAWrongValueAndAsksTheRest) {
    const auto examination = examine("wrong-type-row:get_vod_streams");
    EXPECT_EQ(examination.run.status, 1);
    EXPECT_TRUE(holds(examination.run.errors, "error: 1 answer of ")) << examination.run.errors;
    const auto& [result, detail] = examination.answers.at("get_vod_streams");
    EXPECT_EQ(result, "wrong");
    EXPECT_TRUE(holds(detail, "because of row ")) << detail;
    EXPECT_TRUE(holds(detail, ", key ")) << detail;
    EXPECT_TRUE(holds(detail, " expected, ")) << detail;
    EXPECT_EQ(examination.answers.at("get_vod_info").first, "not asked");
    EXPECT_EQ(examination.answers.at("live stream").first, "ok");
}

TEST_F(Doctor, TellsSeveralFaultsApart) {
    const auto examination =
        examine("html-200:get_series,status-500:xmltv,cut-connection:get_live_categories,"
                "duplicate-category-id:get_vod_categories,html-200:get_vod_info,"
                "truncated-body:get_simple_data_table,empty-list:get_series_categories");
    const auto detail = [&](const char* question) { return examination.answers.at(question).second; };
    EXPECT_EQ(examination.run.status, 1);
    EXPECT_TRUE(holds(detail("get_series"), "not what this protocol wants")) << detail("get_series");
    EXPECT_TRUE(holds(detail("xmltv.php"), "HTTP 500")) << detail("xmltv.php");
    EXPECT_TRUE(holds(detail("get_live_categories"), "ended before the reply did"))
        << detail("get_live_categories");
    EXPECT_TRUE(holds(detail("get_vod_categories"), "stands twice")) << detail("get_vod_categories");
    EXPECT_TRUE(holds(detail("get_vod_info"), "no JSON object")) << detail("get_vod_info");
    EXPECT_EQ(examination.answers.at("get_simple_data_table").first, "wrong");
    EXPECT_EQ(examination.answers.at("get_series_categories").first, "warning");
    EXPECT_EQ(examination.answers.at("get_series_info").first, "not asked");
    EXPECT_EQ(examination.answers.at("get_live_streams").first, "ok");
}

TEST_F(Doctor, AsksNothingMoreOfAProviderThatRefusesTheAccount) {
    const auto examination = examine("auth-0:login");
    EXPECT_EQ(examination.run.status, 1);
    EXPECT_EQ(examination.answers.size(), 1U);
    EXPECT_TRUE(holds(examination.answers.at("log-in").second, "refuses this account"));
    EXPECT_TRUE(holds(examination.run.errors, "the rest was not asked for")) << examination.run.errors;
}

TEST_F(Doctor, AsksNothingMoreWhereNobodyAnswers) {
    provider.stop();
    const auto examination = examine();
    EXPECT_EQ(examination.run.status, 1);
    EXPECT_EQ(examination.answers.size(), 1U);
    EXPECT_TRUE(holds(examination.answers.at("log-in").second, "nobody answers"));
}

TEST_F(Doctor, AsksOnWhereOnlyTheLogInIsWrong) {
    const auto examination = examine("html-200:login");
    EXPECT_EQ(examination.run.status, 1);
    EXPECT_EQ(examination.answers.size(), 12U);
    EXPECT_EQ(examination.answers.at("get_vod_streams").first, "ok");
}

TEST_F(Doctor, WarnsOfAnExpiredAccountThatIsAccepted) {
    const auto examination = examine("expired:login");
    EXPECT_EQ(examination.run.status, 0);
    EXPECT_EQ(examination.answers.at("log-in").first, "warning");
    EXPECT_TRUE(holds(examination.answers.at("log-in").second, "has expired on "));
}

TEST_F(Doctor, TellsAPageFromAVideoAndFromAGuide) {
    ondavia::testing::HttpServer server;
    const std::string page = "<html><body>" + std::string(4000, 'x') + "</body></html>";
    server.server.Get("/player_api.php", [](const httplib::Request& request, httplib::Response& response) {
        const auto action = request.get_param_value("action");
        response.set_content(action.empty()                 ? R"({"user_info":{"auth":1}})"
                             : action == "get_live_streams" ? R"([{"name":"a","stream_id":7},{"name":"b"}])"
                                                            : "[]",
                             "application/json");
    });
    server.server.Get(".*", [page](const httplib::Request&, httplib::Response& response) {
        response.set_content(page, "text/html");
    });
    server.start();
    cli.signIn(server.url());
    auto examination = examine();
    EXPECT_EQ(examination.run.status, 1);
    EXPECT_TRUE(holds(examination.answers["live stream"].second, "channel 7: no video: \"<html>"))
        << examination.answers["live stream"].second;
    EXPECT_TRUE(holds(examination.answers["xmltv.php"].second, "no XMLTV document: \"<html>"))
        << examination.answers["xmltv.php"].second;
    EXPECT_EQ(examination.answers["get_live_streams"].first, "warning");
    EXPECT_TRUE(holds(examination.answers["get_live_streams"].second, "2 rows, of which 1 have no id"))
        << examination.answers["get_live_streams"].second;
}

TEST_F(Doctor, FindsALiveStreamThatIsRefused) {
    const auto examination = examine("status-403:live");
    EXPECT_TRUE(holds(examination.answers.at("live stream").second, "refuses this account (HTTP 403)"));
}

} // namespace
} // namespace ondavia::cli::testing
