#include "CommandLine.h"

#include "support/HttpServer.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace ondavia::cli::testing {
namespace {

class CatalogueCommands : public CliTest {
protected:
    std::vector<QJsonObject> json(QStringList arguments) {
        arguments.append(QStringLiteral("--json"));
        const auto result = cli.run(arguments);
        EXPECT_EQ(result.status, 0) << result.errors;
        return objectsOf(result.output);
    }
    std::vector<QJsonObject> items(const char* type) {
        return json({QStringLiteral("list"), QString::fromLatin1(type)});
    }
    /// A list as the provider sends it.
    QJsonArray sent(const char* action) {
        httplib::Client client(url());
        const auto reply = client.Get("/player_api.php?username=" + std::string(account) +
                                      "&password=" + password + "&action=" + action);
        return QJsonDocument::fromJson(QByteArray::fromStdString(reply->body)).array();
    }
};

TEST_F(CatalogueCommands, SyncBringsEveryRowOfTheProviderAndSaysHowMany) {
    cli.signIn(url());
    const auto result = cli.run({QStringLiteral("sync"), QStringLiteral("--json")});
    ASSERT_EQ(result.status, 0) << result.errors;
    const auto totals = objectsOf(result.output).at(0);
    EXPECT_EQ(totals[QStringLiteral("totalLive")].toInt(), sent("get_live_streams").size());
    EXPECT_EQ(totals[QStringLiteral("totalMovies")].toInt(), sent("get_vod_streams").size());
    EXPECT_EQ(totals[QStringLiteral("totalSeries")].toInt(), sent("get_series").size());
    EXPECT_TRUE(holds(result.errors, "A carregar conteudo...\n")) << result.errors;
    EXPECT_TRUE(holds(result.errors, "A guardar dados...\n")) << result.errors;
    EXPECT_EQ(static_cast<int>(items("live").size()), totals[QStringLiteral("totalLive")].toInt());
    EXPECT_EQ(static_cast<int>(items("movies").size()), totals[QStringLiteral("totalMovies")].toInt());
    EXPECT_EQ(static_cast<int>(items("series").size()), totals[QStringLiteral("totalSeries")].toInt());
    QFile settings(QString::fromStdString((cli.folder() / "settings/settings.json").string()));
    ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
    EXPECT_TRUE(settings.readAll().contains("ondavia_last_sync"));
}

TEST_F(CatalogueCommands, SyncTwiceKeepsTheIds) {
    cli.fill(url());
    const auto before = textsOf(items("movie"), "id");
    EXPECT_EQ(cli.run({QStringLiteral("sync")}).status, 0);
    EXPECT_FALSE(before.empty());
    EXPECT_EQ(textsOf(items("movie"), "id"), before);
}

TEST_F(CatalogueCommands, AListThatFailsForGoodLeavesTheOthers) {
    cli.signIn(url());
    provider.setFault("status-500:get_series");
    const auto result = cli.run({QStringLiteral("sync"), QStringLiteral("--json")});
    EXPECT_EQ(result.status, 0) << result.errors;
    const auto totals = objectsOf(result.output).at(0);
    EXPECT_EQ(totals[QStringLiteral("totalSeries")].toInt(-1), 0);
    EXPECT_GT(totals[QStringLiteral("totalMovies")].toInt(), 0);
    EXPECT_TRUE(holds(result.errors, "Tentativa 4/4...")) << result.errors;
    EXPECT_TRUE(holds(result.errors, "warning: Nao foi possivel carregar series")) << result.errors;
}

TEST_F(CatalogueCommands, AnEmptyReplyKeepsTheEarlierCatalogue) {
    cli.fill(url());
    const auto before = textsOf(items("live"), "id");
    provider.setFault("empty-list:get_live_streams,empty-list:get_vod_streams,empty-list:get_series");
    const auto result = cli.run({QStringLiteral("sync")});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, "error: Servidor devolveu resposta vazia")) << result.errors;
    EXPECT_EQ(textsOf(items("live"), "id"), before);
}

TEST_F(CatalogueCommands, SyncWithoutTheServerFailsAndKeepsTheEarlierCatalogue) {
    cli.fill(url());
    provider.stop();
    const auto result = cli.run({QStringLiteral("sync")});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, "error: nobody answers")) << result.errors;
    EXPECT_FALSE(items("live").empty());
}

TEST_F(CatalogueCommands, CategoriesComeInTheProvidersOrderWithTheirCounts) {
    cli.fill(url());
    std::vector<std::string> expected;
    for (const auto category : sent("get_vod_categories")) {
        expected.push_back(category[QStringLiteral("category_name")].toString().toStdString());
    }
    const auto categories = json({QStringLiteral("categories"), QStringLiteral("movies")});
    EXPECT_EQ(textsOf(categories, "name"), expected);
    EXPECT_FALSE(std::ranges::is_sorted(expected)) << "an order that says nothing";
    const auto films = items("movie");
    for (const auto& category : categories) {
        const auto name = category[QStringLiteral("name")];
        EXPECT_EQ(category[QStringLiteral("channelCount")].toInt(),
                  std::ranges::count_if(films, [&](const QJsonObject& film) {
                      return film[QStringLiteral("groupTitle")] == name;
                  }));
    }
}

TEST_F(CatalogueCommands, AListCanBeOneCategoryAndHaveABound) {
    cli.fill(url());
    const QString category = items("live").at(0)[QStringLiteral("groupTitle")].toString();
    const auto some = json({QStringLiteral("list"), QStringLiteral("live"), QStringLiteral("--category"),
                            category, QStringLiteral("--limit"), QStringLiteral("2")});
    EXPECT_EQ(some.size(), 2U);
    for (const auto& item : some) {
        EXPECT_EQ(item[QStringLiteral("groupTitle")].toString(), category);
    }
    const auto none = cli.run({QStringLiteral("list"), QStringLiteral("live"), QStringLiteral("--category"),
                               QStringLiteral("no such")});
    EXPECT_EQ(none.status, 1);
    EXPECT_TRUE(holds(none.errors, "error: there is no such category")) << none.errors;
}

TEST_F(CatalogueCommands, AListForPeopleHasALineForEachItemInColumns) {
    cli.fill(url());
    const auto result = cli.run({QStringLiteral("list"), QStringLiteral("movies")});
    const auto lines = linesOf(result.output);
    const auto films = items("movies");
    ASSERT_EQ(lines.size(), films.size());
    for (std::size_t row = 0; row < lines.size(); ++row) {
        EXPECT_TRUE(lines[row].starts_with(films[row][QStringLiteral("id")].toString().toStdString()));
        EXPECT_TRUE(lines[row].ends_with(films[row][QStringLiteral("name")].toString().toStdString()));
    }
}

TEST_F(CatalogueCommands, AnEmptyCatalogueSaysHowToFillIt) {
    const auto result = cli.run({QStringLiteral("list"), QStringLiteral("series")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(holds(result.errors, "ondavia-cli sync")) << result.errors;
}

TEST_F(CatalogueCommands, ShowTellsAllOfAnItemButItsAddress) {
    cli.fill(url());
    const auto film = json({QStringLiteral("show"), QStringLiteral("main_100001")}).at(0);
    EXPECT_EQ(film[QStringLiteral("type")].toString(), QStringLiteral("movie"));
    EXPECT_EQ(film[QStringLiteral("streamId")].toInt(), 100001);
    EXPECT_EQ(film[QStringLiteral("adult")], QJsonValue(false));
    EXPECT_TRUE(film[QStringLiteral("addedAt")].toString().endsWith(QLatin1Char('Z')));
    EXPECT_TRUE(film[QStringLiteral("logo")].toString().contains(QLatin1String("/pictures/film/")))
        << "a picture's address is no secret";
    EXPECT_EQ(film[QStringLiteral("url")].toString().toStdString(), url() + "/<redacted>");
    EXPECT_FALSE(film.contains(QLatin1String("seriesName"))) << "absent";
    const auto text = cli.run({QStringLiteral("show"), QStringLiteral("main_100001")});
    EXPECT_TRUE(holds(text.output, "streamId            100001\n")) << text.output;
    const auto missing = cli.run({QStringLiteral("show"), QStringLiteral("main_1")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(holds(missing.errors, "error: the catalogue has no item with the id main_1"));
}

/// A provider of one channel, whose rows are written by the test.
class OneChannelProvider final {
public:
    explicit OneChannelProvider(const std::string& rows) {
        m_server.server.Get("/player_api.php",
                            [rows](const httplib::Request& request, httplib::Response& response) {
                                const auto action = request.get_param_value("action");
                                const std::string login = R"({"user_info":{"auth":1}})";
                                response.set_content(action.empty()                 ? login
                                                     : action == "get_live_streams" ? rows
                                                                                    : "[]",
                                                     "application/json");
                            });
        m_server.start();
    }
    [[nodiscard]] std::string url() const { return m_server.url(); }

private:
    ondavia::testing::HttpServer m_server;
};

TEST(CatalogueOutput, AnAccountInAPicturesAddressIsMasked) {
    const OneChannelProvider provider(R"([{"num":1,"name":"a","stream_id":7,"stream_icon":)"
                                      R"("http://pictures.test/ana/segredo-4711-Q/logo.png"}])");
    CommandLine cli;
    cli.fill(provider.url());
    for (const auto& arguments :
         {QStringList{QStringLiteral("show"), QStringLiteral("main_7")},
          QStringList{QStringLiteral("show"), QStringLiteral("main_7"), QStringLiteral("--json")}}) {
        const auto result = cli.run(arguments);
        EXPECT_TRUE(holds(result.output, "http://pictures.test/<redacted>")) << result.output;
    }
}

TEST_F(CatalogueCommands, SearchListsWhatHasTheTextInItsNameItsCategoryOrItsSeries) {
    cli.fill(url());
    const auto all = items("movie");
    const std::string name = all.at(0)[QStringLiteral("name")].toString().toStdString();
    const auto upper = QString::fromStdString(name).toUpper();
    const auto found = textsOf(json({QStringLiteral("search"), upper}), "id");
    EXPECT_THAT(found, ::testing::Contains(all.at(0)[QStringLiteral("id")].toString().toStdString()));
    const QString group = all.at(0)[QStringLiteral("groupTitle")].toString();
    const auto ofGroup =
        json({QStringLiteral("search"), group, QStringLiteral("--type"), QStringLiteral("movies")});
    EXPECT_GE(ofGroup.size(), 2U);
    for (const auto& item : ofGroup) {
        EXPECT_EQ(item[QStringLiteral("type")].toString(), QStringLiteral("movie"));
    }
    EXPECT_EQ(cli.run({QStringLiteral("search"), QStringLiteral("qqqq")}).output, "");
    const auto tooShort = cli.run({QStringLiteral("search"), QStringLiteral("a")});
    EXPECT_EQ(tooShort.status, 1);
    EXPECT_TRUE(holds(tooShort.errors, "at least two characters")) << tooShort.errors;
}

} // namespace
} // namespace ondavia::cli::testing
