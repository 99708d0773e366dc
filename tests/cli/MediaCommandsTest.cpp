#include "CommandLine.h"

#include "support/HttpServer.h"

#include <algorithm>
#include <csignal>

namespace ondavia::cli::testing {
namespace {

class MediaCommands : public CliTest {
protected:
    MediaCommands() { cli.fill(url()); }

    /// The provider makes its media when they are first asked for, which may take longer than a test plays.
    void haveMade(const std::string& path) {
        httplib::Client client(url());
        client.set_read_timeout(100);
        bool hasBegun = false;
        client.Get(path, [&](const char*, std::size_t) {
            hasBegun = true;
            return false;
        });
        ASSERT_TRUE(hasBegun) << path;
    }
    std::vector<QJsonObject> play(const QStringList& more) {
        haveMade(linesOf(urlOf(more.mid(0, 1)).output).at(0).substr(url().size()));
        const auto result =
            cli.run(QStringList{QStringLiteral("play")} + more + QStringList{QStringLiteral("--json")});
        EXPECT_EQ(result.status, 0) << result.output << result.errors;
        return objectsOf(result.output);
    }
    RunResult urlOf(const QStringList& more) {
        return cli.runWithAccountInOutput(QStringList{QStringLiteral("url")} + more);
    }
    /// The first line that `url` prints.
    std::string addressOf(const QStringList& more) { return linesOf(urlOf(more).output).at(0); }

    std::string prefix(const char* kind) { return url() + "/" + kind + "/" + account + "/" + password + "/"; }
};

std::vector<QJsonObject> eventsNamed(const std::vector<QJsonObject>& events, const char* name) {
    std::vector<QJsonObject> found;
    std::ranges::copy_if(events, std::back_inserter(found), [&](const QJsonObject& event) {
        return event[QStringLiteral("event")].toString() == QLatin1String(name);
    });
    return found;
}

std::vector<double> positionsOf(const std::vector<QJsonObject>& events) {
    std::vector<double> positions;
    for (const auto& event : eventsNamed(events, "position")) {
        positions.push_back(event[QStringLiteral("position")].toDouble());
    }
    return positions;
}

TEST_F(MediaCommands, UrlPrintsTheAddressOfAChannelAndOfAFilm) {
    EXPECT_EQ(addressOf({QStringLiteral("main_1001")}), prefix("live") + "1001.ts");
    const std::string film = addressOf({QStringLiteral("main_100001")});
    EXPECT_TRUE(film.starts_with(prefix("movie") + "100001.")) << film;
    const auto object = objectsOf(urlOf({QStringLiteral("main_100001"), QStringLiteral("--json")}).output);
    EXPECT_EQ(textsOf(object, "url").at(0), film);
}

TEST_F(MediaCommands, UrlOfARecordingCountsInUniversalTime) {
    cli.setEnvironment("TZ", "Asia/Tokyo");
    EXPECT_EQ(addressOf({QStringLiteral("main_1001"), QStringLiteral("--catchup"),
                         QStringLiteral("2026-03-01T21:05"), QStringLiteral("90")}),
              prefix("timeshift") + "90/2026-03-01:21-05/1001.ts");
    const auto film = urlOf({QStringLiteral("main_100001"), QStringLiteral("--catchup"),
                             QStringLiteral("2026-03-01T21:05"), QStringLiteral("90")});
    EXPECT_EQ(film.status, 1);
    EXPECT_TRUE(holds(film.errors, "error: main_100001 is no live channel")) << film.errors;
}

TEST_F(MediaCommands, ASeriesHasEpisodesAndNoAddress) {
    const auto byNumber =
        cli.run({QStringLiteral("series"), QStringLiteral("2001"), QStringLiteral("--json")});
    const auto byId =
        cli.run({QStringLiteral("series"), QStringLiteral("main_series_2001"), QStringLiteral("--json")});
    EXPECT_EQ(byNumber.status, 0) << byNumber.errors;
    EXPECT_EQ(textsOf(objectsOf(byNumber.output), "id"), textsOf(objectsOf(byId.output), "id"));
    const auto series = urlOf({QStringLiteral("main_series_2001")});
    EXPECT_EQ(series.status, 1);
    EXPECT_TRUE(holds(series.errors, "error: a series has no stream of its own")) << series.errors;
    const auto channel = cli.run({QStringLiteral("series"), QStringLiteral("main_1001")});
    EXPECT_EQ(channel.status, 1);
    EXPECT_TRUE(holds(channel.errors, "error: main_1001 is no series")) << channel.errors;
}

TEST_F(MediaCommands, AnEpisodeIsAnItemToShowAndToPlay) {
    const auto all = objectsOf(
        cli.run({QStringLiteral("series"), QStringLiteral("2001"), QStringLiteral("--json")}).output);
    std::vector<QJsonObject> episodes;
    std::ranges::copy_if(all, std::back_inserter(episodes),
                         [](const QJsonObject& object) { return object.contains(QLatin1String("id")); });
    ASSERT_FALSE(episodes.empty());
    EXPECT_LT(episodes.size(), all.size()) << "seasons";
    const QString id = episodes.back()[QStringLiteral("id")].toString();
    EXPECT_TRUE(id.startsWith(QLatin1String("main_series_2001_ep_"))) << id.toStdString();
    const auto shown =
        objectsOf(cli.run({QStringLiteral("show"), id, QStringLiteral("--json")}).output).at(0);
    EXPECT_EQ(shown[QStringLiteral("episodeTitle")], episodes.back()[QStringLiteral("episodeTitle")]);
    EXPECT_EQ(shown[QStringLiteral("seriesId")].toInt(), 2001);
    EXPECT_EQ(addressOf({id}),
              prefix("series") + id.section(QLatin1String("_ep_"), 1).toStdString() + ".mp4");
    const auto missing = cli.run({QStringLiteral("show"), QStringLiteral("main_series_2001_ep_1")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(holds(missing.errors, "has no episode with the id main_series_2001_ep_1")) << missing.errors;
}

TEST_F(MediaCommands, PlayTellsOfTheFirstFrameTheTracksAndTheWayOfAFilm) {
    const auto events = play({QStringLiteral("main_100001"), QStringLiteral("--for"), QStringLiteral("10")});
    ASSERT_EQ(eventsNamed(events, "first frame").size(), 1U);
    const auto types = textsOf(eventsNamed(events, "track"), "type");
    EXPECT_EQ(std::ranges::count(types, "video"), 1);
    EXPECT_EQ(std::ranges::count(types, "audio"), 2);
    EXPECT_EQ(std::ranges::count(types, "timedtext"), 1);
    const auto states = textsOf(eventsNamed(events, "state"), "value");
    EXPECT_NE(std::ranges::find(states, "playing"), states.end());
    const auto positions = positionsOf(events);
    ASSERT_GE(positions.size(), 3U);
    EXPECT_TRUE(std::ranges::is_sorted(positions));
    EXPECT_GT(positions.back(), positions.front() + 1);
    EXPECT_NEAR(eventsNamed(events, "position").back()[QStringLiteral("duration")].toDouble(), 90, 1);
}

TEST_F(MediaCommands, PlayTellsOfTheFirstFrameAndTheWayOfAChannel) {
    const auto events = play({QStringLiteral("main_1001"), QStringLiteral("--for"), QStringLiteral("10")});
    EXPECT_EQ(eventsNamed(events, "first frame").size(), 1U);
    const auto positions = positionsOf(events);
    ASSERT_GE(positions.size(), 3U);
    EXPECT_GT(positions.back(), positions.front() + 1);
}

TEST_F(MediaCommands, PlayBeginsWhereItIsTold) {
    const auto events = play({QStringLiteral("main_100001"), QStringLiteral("--from"), QStringLiteral("40"),
                              QStringLiteral("--for"), QStringLiteral("10")});
    EXPECT_GE(positionsOf(events).back(), 40);
    EXPECT_LE(positionsOf(events).back(), 51);
}

TEST_F(MediaCommands, PlayEndsWithTheItem) {
    const auto events = play({QStringLiteral("main_100001"), QStringLiteral("--from"), QStringLiteral("87"),
                              QStringLiteral("--for"), QStringLiteral("60")});
    EXPECT_EQ(eventsNamed(events, "end").size(), 1U);
    EXPECT_LT(events.back()[QStringLiteral("at")].toDouble(), 40);
}

TEST_F(MediaCommands, PlayFailsWhereNothingPlays) {
    provider.setFault("status-404:live");
    const auto result = cli.run({QStringLiteral("play"), QStringLiteral("main_1001"), QStringLiteral("--for"),
                                 QStringLiteral("8"), QStringLiteral("--json")});
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(eventsNamed(objectsOf(result.output), "failure").empty()) << result.output;
    EXPECT_TRUE(holds(result.errors, "error: nothing was played")) << result.errors;
}

TEST_F(MediaCommands, CtrlCEndsPlaybackAndTheStreamWithIt) {
    haveMade(prefix("live").substr(url().size()) + "1001.ts");
    for (const int signal : {SIGINT, SIGTERM}) {
        QProcess process;
        cli.prepare(process, {QStringLiteral("play"), QStringLiteral("main_1001"), QStringLiteral("--for"),
                              QStringLiteral("60"), QStringLiteral("--json")});
        process.start();
        std::string output;
        ASSERT_TRUE(ondavia::testing::waitUntil([&] {
            output += process.readAllStandardOutput().toStdString();
            return holds(output, "first frame");
        })) << output;
        kill(static_cast<pid_t>(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(5000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 128 + signal);
        EXPECT_TRUE(ondavia::testing::waitUntil([&] { return provider.openStreams() == 0; }));
    }
}

TEST_F(MediaCommands, CtrlCDuringADownloadKeepsTheEarlierCatalogue) {
    provider.setFault("never-answers:get_vod_streams");
    QProcess process;
    cli.prepare(process, {QStringLiteral("sync")});
    process.start();
    std::string errors;
    ASSERT_TRUE(ondavia::testing::waitUntil([&] {
        errors += process.readAllStandardError().toStdString();
        return holds(errors, "A carregar conteudo...");
    })) << errors;
    kill(static_cast<pid_t>(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished(5000));
    EXPECT_EQ(process.exitCode(), 128 + SIGINT);
    const auto list = cli.run({QStringLiteral("list"), QStringLiteral("movies")});
    EXPECT_FALSE(linesOf(list.output).empty());
    provider.clearFaults();
    EXPECT_EQ(cli.run({QStringLiteral("sync")}).status, 0);
}

TEST(SeriesOrder, TheTenthSeasonComesAfterTheSecond) {
    ondavia::testing::HttpServer server;
    server.server.Get("/player_api.php", [](const httplib::Request& request, httplib::Response& response) {
        const auto action = request.get_param_value("action");
        const char* body = "[]";
        if (action.empty()) {
            body = R"({"user_info":{"auth":1}})";
        } else if (action == "get_series") {
            body = R"([{"num":1,"name":"S","series_id":5}])";
        } else if (action == "get_series_info") {
            body = R"({"episodes":{"10":[{"id":"100","episode_num":1}],)"
                   R"("2":[{"id":"20","episode_num":1},{"title":"no id"}]}})";
        }
        response.set_content(body, "application/json");
    });
    server.start();
    CommandLine cli;
    cli.fill(server.url());
    const auto result = cli.run({QStringLiteral("series"), QStringLiteral("5"), QStringLiteral("--json")});
    EXPECT_EQ(textsOf(objectsOf(result.output), "id"),
              (std::vector<std::string>{"main_series_5_ep_20", "main_series_5_ep_100"}));
}

} // namespace
} // namespace ondavia::cli::testing
