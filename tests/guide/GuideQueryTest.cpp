#include "GuideServer.h"

#include "protocol/XtreamAPIClient.h"

#include <SQLiteCpp/SQLiteCpp.h>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::UnorderedElementsAre;

/// The day's backup may meet a missing folder too, and says so.
void expectOnlyBackupsSpoke(const LogCapture& log) {
    for (const LogRecord& record : log.records()) {
        EXPECT_THAT(record.message, HasSubstr("was not backed up"));
    }
}

class GuideQuery : public GuideTest {
protected:
    void add(const std::string& channelId, const std::string& title, Date start, Date stop) {
        store->mainContext().insert(
            EPGProgram{channelId + title, channelId, title, std::nullopt, start, stop, std::nullopt});
        store->mainContext().save();
    }
    std::vector<std::string> onDay(Date date) {
        return titlesOf(service().getProgramsForChannel("c1", date));
    }
};

TEST_F(GuideQuery, HasAProgrammeOnFromItsStartToBeforeItsStop) {
    add("c1", "first", utc(2024, 1, 15, 12), utc(2024, 1, 15, 13));
    add("c1", "second", utc(2024, 1, 15, 13), utc(2024, 1, 15, 14));
    add("c2", "other", utc(2024, 1, 15, 10), utc(2024, 1, 15, 20));
    const auto tick = std::chrono::microseconds(1);
    const auto current = [this](Date now) {
        const auto program = service().getCurrentProgram("c1", now);
        return program ? program->title : "none";
    };
    EXPECT_EQ(current(utc(2024, 1, 15, 12) - tick), "none");
    EXPECT_EQ(current(utc(2024, 1, 15, 12)), "first");
    EXPECT_EQ(current(utc(2024, 1, 15, 13) - tick), "first");
    EXPECT_EQ(current(utc(2024, 1, 15, 13)), "second");
    EXPECT_EQ(current(utc(2024, 1, 15, 14)), "none");
    EXPECT_EQ(service().getCurrentProgram("", utc(2024, 1, 15, 12)), std::nullopt);
}

TEST_F(GuideQuery, TakesThePresentTimeByDefault) {
    const Date now = currentDate();
    add("c1", "now", now - std::chrono::hours(1), now + std::chrono::hours(1));
    EXPECT_EQ(service().getCurrentProgram("c1")->title, "now");
    EXPECT_THAT(service().getCurrentTitles(), UnorderedElementsAre(Pair("c1", "now")));
}

TEST_F(GuideQuery, FindsALongProgrammeBehindLaterOnes) {
    add("c1", "long", utc(2024, 1, 1), utc(2024, 2, 1));
    add("c1", "short", utc(2024, 1, 15, 12), utc(2024, 1, 15, 13));
    EXPECT_EQ(service().getCurrentProgram("c1", utc(2024, 1, 15, 13))->title, "long");
}

TEST_F(GuideQuery, ListsTheTitlesOfAllChannels) {
    const Date now = utc(2024, 1, 15, 12);
    add("ends", "x", now - std::chrono::hours(1), now);
    add("starts", "starts", now, now + std::chrono::minutes(1));
    add("longer", "longer", now - std::chrono::hours(3), now + std::chrono::microseconds(1));
    add("exactly", "exactly", now - std::chrono::hours(3) + std::chrono::microseconds(1),
        now + std::chrono::microseconds(1));
    add("long", "long", now - std::chrono::days(400), now + std::chrono::days(1));
    add("future", "x", now + std::chrono::microseconds(1), now + std::chrono::hours(1));
    add("backwards", "x", now, now - std::chrono::hours(1));
    EXPECT_THAT(service().getCurrentTitles(now),
                UnorderedElementsAre(Pair("starts", "starts"), Pair("longer", "longer"),
                                     Pair("exactly", "exactly"), Pair("long", "long")));
}

TEST_F(GuideQuery, OfSeveralOnOneChannelTheLastToBeginIsListed) {
    const Date now = utc(2024, 1, 15, 12);
    add("c1", "just begun", now - std::chrono::minutes(1), now + std::chrono::hours(1));
    add("c1", "before", now - std::chrono::minutes(2), now + std::chrono::hours(1));
    add("c1", "all day", now - std::chrono::hours(12), now + std::chrono::hours(1));
    EXPECT_THAT(service().getCurrentTitles(now), UnorderedElementsAre(Pair("c1", "just begun")));
}

TEST_F(GuideQuery, ListsADayByStart) {
    add("c1", "late", utc(2024, 1, 15, 23, 30), utc(2024, 1, 16, 1));
    add("c1", "midnight", utc(2024, 1, 15), utc(2024, 1, 15, 1));
    add("c1", "night before", utc(2024, 1, 14, 23, 30), utc(2024, 1, 15, 0, 30));
    add("c1", "next day", utc(2024, 1, 16), utc(2024, 1, 16, 1));
    add("c2", "other", utc(2024, 1, 15, 12), utc(2024, 1, 15, 13));
    EXPECT_THAT(onDay(utc(2024, 1, 15)), ElementsAre("midnight", "late"));
    EXPECT_THAT(onDay(utc(2024, 1, 15, 17, 45)), ElementsAre("midnight", "late"));
}

TEST_F(GuideQuery, ListsDaysOfTwentyThreeAndTwentyFiveHoursByTheCalendar) {
    add("c1", "last of the short day", utc(2024, 3, 31, 22, 59), utc(2024, 3, 31, 23));
    add("c1", "first of the next", utc(2024, 3, 31, 23), utc(2024, 4, 1));
    EXPECT_THAT(onDay(utc(2024, 3, 31, 12)), ElementsAre("last of the short day"));
    add("c1", "first of the long day", utc(2024, 10, 26, 23), utc(2024, 10, 27));
    add("c1", "last of the long day", utc(2024, 10, 27, 23, 59), utc(2024, 10, 28));
    add("c1", "first after it", utc(2024, 10, 28), utc(2024, 10, 28, 1));
    EXPECT_THAT(onDay(utc(2024, 10, 27, 12)), ElementsAre("first of the long day", "last of the long day"));
}

TEST_F(GuideQuery, FindsADayByAnIndexHoweverLargeTheGuide) {
    add("c1", "first", utc(2024, 1, 15, 12), utc(2024, 1, 15, 13));
    const SqlText query =
        selectText("*", Query<EPGProgram>{.where = field(&EPGProgram::channelId) == "c1" &&
                                                   field(&EPGProgram::start) >= utc(2024, 1, 15) &&
                                                   field(&EPGProgram::start) < utc(2024, 1, 16),
                                          .sort = {ascending(&EPGProgram::start)}});
    SQLite::Database guide(folder.path() / "store" / "guide.db");
    SQLite::Statement plan(guide, "EXPLAIN QUERY PLAN " + query.sql);
    ASSERT_TRUE(plan.executeStep());
    EXPECT_THAT(plan.getColumn(3).getString(),
                HasSubstr("USING INDEX epg_program_by_channel (channel_id=? AND start>? AND start<?)"));
}

TEST_F(GuideQuery, AnswersNothingWhenTheStoreCannotBeRead) {
    storeOldGuide();
    store.reset();
    store = LibraryStore::open(folder.path() / "store");
    std::filesystem::remove_all(folder.path() / "store");
    const Date noon = utc(2024, 1, 15, 12);
    const LogCapture log;
    EXPECT_EQ(service().getCurrentProgram("c1", noon), std::nullopt);
    EXPECT_THAT(service().getProgramsForChannel("c1", noon), IsEmpty());
    EXPECT_THAT(service().getCurrentTitles(noon), IsEmpty());
    // The screens show such a channel like one without a guide.
    expectOnlyBackupsSpoke(log);
}

class ShortGuideLoad : public GuideTest {
protected:
    void serveListings(const std::string& listings, int status = 200) {
        http.server.Get("/player_api.php",
                        [=, this](const httplib::Request& request, httplib::Response& reply) {
                            streamId = request.get_param_value("stream_id");
                            reply.status = status;
                            reply.set_content(R"({"epg_listings":[)" + listings + "]}", "application/json");
                        });
        http.start();
    }
    void loadShortGuide(const std::string& channelId = "c1") {
        const auto client = std::make_shared<XtreamAPIClient>(
            http.url(), "some-user", "some-password",
            [](const URLSessionConfiguration& configuration) { return makeCurlURLSession(configuration); });
        resultOf(service().loadEPGFromAPI(client, 77, channelId));
    }
    static std::string listing(const std::string& title, const std::string& hour) {
        return R"({"id":"1","title":")" + title + R"(","start":"2024-01-15 )" + hour +
               R"(:00:00","end":"2024-01-15 )" + hour + R"(:30:00","channel_id":"another"})";
    }

    std::string streamId;
};

TEST_F(ShortGuideLoad, AddsTheListingsToTheChannelOfTheCaller) {
    storeOldGuide();
    serveListings(listing("VGFyZGU=", "14") + "," + listing("Noite inteira", "21"));
    loadShortGuide();
    http.stop();
    EXPECT_EQ(streamId, "77");
    EXPECT_THAT(titles(), ElementsAre("old", "Tarde", "Noite inteira"));
    const auto programs = service().getProgramsForChannel("c1", utc(2024, 1, 15));
    ASSERT_EQ(programs.size(), 3U);
    EXPECT_EQ(programs.back().id, "c1_2024-01-15 21:00:00");
    EXPECT_EQ(programs.back().channelId, "c1");
    EXPECT_EQ(programs.back().category, std::nullopt);
}

TEST_F(ShortGuideLoad, LeavesAnAbsentDescriptionAbsent) {
    const std::string times = R"("start":"2024-01-15 14:00:00","end":"2024-01-15 14:30:00")";
    const std::string later = R"("start":"2024-01-15 15:00:00","end":"2024-01-15 15:30:00")";
    serveListings(R"({"title":"Sem texto",)" + times + R"(},{"title":"Com texto","description":"",)" + later +
                  "}");
    loadShortGuide();
    const auto programs = service().getProgramsForChannel("c1", utc(2024, 1, 15));
    ASSERT_THAT(titlesOf(programs), ElementsAre("Sem texto", "Com texto"));
    EXPECT_EQ(programs[0].desc, std::nullopt);
    EXPECT_EQ(programs[1].desc, "");
}

TEST_F(ShortGuideLoad, AddsNothingTheSecondTime) {
    serveListings(listing("VGFyZGU=", "14") + "," + listing("Noite inteira", "21"));
    loadShortGuide();
    const auto before = store->mainContext().fetch<EPGProgram>();
    loadShortGuide();
    EXPECT_EQ(store->mainContext().fetch<EPGProgram>(), before);
    loadShortGuide("c2");
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), 4);
}

TEST_F(ShortGuideLoad, KeepsTheRowThatIsThere) {
    store->mainContext().insert(EPGProgram{"c1_2024-01-15 14:00:00", "c1", "mine", std::nullopt,
                                           utc(2024, 1, 15, 14), utc(2024, 1, 15, 15), std::nullopt});
    store->mainContext().save();
    serveListings(listing("VGFyZGU=", "14"));
    loadShortGuide();
    EXPECT_THAT(titles(), ElementsAre("mine"));
}

TEST_F(ShortGuideLoad, SwallowsAFailedRequest) {
    storeOldGuide();
    serveListings(listing("VGFyZGU=", "14"), 500);
    const LogCapture log;
    EXPECT_NO_THROW(loadShortGuide());
    http.stop();
    EXPECT_NO_THROW(loadShortGuide());
    EXPECT_THAT(titles(), ElementsAre("old"));
    EXPECT_EQ(log.text(), "");
}

TEST_F(ShortGuideLoad, SwallowsAFailedSave) {
    serveListings(listing("VGFyZGU=", "14"));
    std::filesystem::remove_all(folder.path() / "store");
    const LogCapture log;
    EXPECT_NO_THROW(loadShortGuide());
    http.stop();
    EXPECT_EQ(streamId, "77") << "the listings were there to be saved";
    expectOnlyBackupsSpoke(log);
}

TEST_F(ShortGuideLoad, IsDeletedByAFullLoad) {
    serveListings(listing("VGFyZGU=", "14"));
    loadShortGuide();
    http.stop();
    HttpServer full;
    full.server.Get("/xmltv.php", [](const auto&, httplib::Response& reply) {
        reply.set_content(xmltv(programme("<title>A</title>")), "application/xml");
    });
    full.start();
    resultOf(service().loadEPG(full.url("/xmltv.php")));
    EXPECT_THAT(titles(), ElementsAre("A"));
}

} // namespace
} // namespace ondavia::testing
