// The guide panel without its window.
#include "GuidePanelFixture.h"

#include "guide/CalendarDay.h"
#include "guide/DayTexts.h"

namespace ondavia::testing {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Moment = EPGProgramListModel::Moment;

class GuidePanelTest : public GuidePanelFixture {
protected:
    void show(const Channel& shownChannel) {
        panel.setChannel(shownChannel);
        panel.appear();
    }
    [[nodiscard]] Moment moment(int row) {
        return static_cast<Moment>(shown(row, EPGProgramListModel::MomentRole).toInt());
    }
    [[nodiscard]] std::string time(int row) {
        return shown(row, EPGProgramListModel::TimeRole).toString().toStdString();
    }
    /// A programme before now, the one that is on, and one to come.
    void addDay() {
        add({program("past", now - hours(2), now - hours(1)), program("on", now - hours(1), now + hours(1)),
             program("later", now + hours(1), now + hours(2))});
    }
};

TEST_F(GuidePanelTest, WithoutAnArchiveThereIsTodayAndNoDayHeader) {
    panel.setChannel(channel(false, 7));
    EXPECT_THAT(panel.availableDates(), ElementsAre(utc(2024, 3, 15)));
    EXPECT_FALSE(panel.hasDayHeader());
}

TEST_F(GuidePanelTest, AnArchiveOffersItsDaysAndTodayNewestFirst) {
    panel.setChannel(channel(true, 3));
    EXPECT_THAT(panel.availableDates(),
                ElementsAre(utc(2024, 3, 15), utc(2024, 3, 14), utc(2024, 3, 13), utc(2024, 3, 12)));
    EXPECT_TRUE(panel.hasDayHeader());
}

TEST_F(GuidePanelTest, AnArchiveWithoutALengthHasTwoDaysAndNoHeaderToReachThem) {
    for (const std::int64_t days : {std::int64_t{0}, std::int64_t{-5}}) {
        panel.setChannel(channel(true, days));
        EXPECT_THAT(panel.availableDates(), ElementsAre(utc(2024, 3, 15), utc(2024, 3, 14)));
        EXPECT_FALSE(panel.hasDayHeader());
    }
}

TEST_F(GuidePanelTest, AnArchiveOfAbsurdLengthEnds) {
    panel.setChannel(channel(true, std::numeric_limits<std::int64_t>::max()));
    panel.setShowDatePicker(true);
    EXPECT_EQ(panel.days()->rowCount(), 3651);
    EXPECT_EQ(dayName(3650), "Terça-Feira, 18/03");
}

TEST_F(GuidePanelTest, DaysAreNamedInWordsAndTodaySaysSo) {
    panel.setChannel(channel(true, 4));
    panel.setShowDatePicker(true);
    EXPECT_EQ(dayName(0), "Hoje — Sexta-Feira, 15/03");
    EXPECT_EQ(dayName(1), "Quinta-Feira, 14/03");
    EXPECT_EQ(dayName(4), "Segunda-Feira, 11/03");
    EXPECT_EQ(panel.dayText(), QStringLiteral("Hoje — Sexta-Feira, 15/03"));
    panel.setSelectedDate(at(utc(2024, 3, 9, 23, 59)));
    EXPECT_EQ(panel.dayText(), QStringLiteral("Sábado, 09/03"));
}

TEST_F(GuidePanelTest, TheSelectedDayIsTheOneOfTheSameDateWhateverTheHour) {
    panel.setChannel(channel(true, 3));
    panel.setShowDatePicker(true);
    const auto selected = [this] {
        std::vector<bool> marks;
        for (int row = 0; row < panel.days()->rowCount(); ++row) {
            marks.push_back(
                panel.days()->data(panel.days()->index(row), EPGDayListModel::IsSelectedRole).toBool());
        }
        return marks;
    };
    EXPECT_THAT(selected(), ElementsAre(true, false, false, false));
    panel.setSelectedDate(at(utc(2024, 3, 14, 23, 59, 59)));
    EXPECT_THAT(selected(), ElementsAre(false, true, false, false));
    panel.setSelectedDate(at(utc(2024, 3, 10)));
    EXPECT_THAT(selected(), ElementsAre(false, false, false, false));
}

TEST_F(GuidePanelTest, PickingADayShowsItAndClosesTheList) {
    add({program("today", now, now + hours(1)), program("yesterday", now - hours(24), now - hours(23))});
    show(channel(true, 3));
    panel.toggleDatePicker();
    EXPECT_EQ(panel.content(), Content::Days);
    EXPECT_EQ(panel.days()->rowCount(), 4);
    panel.pickDay(1);
    EXPECT_EQ(panel.selectedDate(), at(utc(2024, 3, 14)));
    EXPECT_FALSE(panel.showDatePicker());
    EXPECT_EQ(panel.content(), Content::Programs);
    EXPECT_THAT(titles(), ElementsAre("yesterday"));
    EXPECT_EQ(panel.days()->rowCount(), 0);
}

TEST_F(GuidePanelTest, ADayIsPickedAsItWasListedEvenPastMidnight) {
    panel.setChannel(channel(true, 3));
    panel.toggleDatePicker();
    now = utc(2024, 3, 16, 0, 0, 1);
    panel.pickDay(0);
    EXPECT_EQ(panel.selectedDate(), at(utc(2024, 3, 15)));
    EXPECT_EQ(panel.dayText(), QStringLiteral("Sexta-Feira, 15/03"));
    panel.pickDay(0);
    panel.pickDay(-1);
    EXPECT_EQ(panel.selectedDate(), at(utc(2024, 3, 15))) << "a list that is closed has no days";
}

TEST_F(GuidePanelTest, ListsTheDayOfTheStoreAndAsksNobody) {
    signIn();
    addDay();
    add({program("other day", now + hours(24), now + hours(25)), program("other channel", now, now, "c2")});
    show(channel(false, 0));
    EXPECT_EQ(panel.content(), Content::Programs);
    EXPECT_THAT(titles(), ElementsAre("past", "on", "later"));
    drainEvents();
    EXPECT_EQ(requests, 0);
}

TEST_F(GuidePanelTest, ReadsNothingBeforeItIsSeen) {
    addDay();
    panel.setChannel(channel(false, 0));
    EXPECT_THAT(titles(), IsEmpty());
    panel.appear();
    EXPECT_THAT(titles(), SizeIs(3));
}

TEST_F(GuidePanelTest, MarksEachRowByTheClockOfTheMomentItIsDrawn) {
    addDay();
    show(channel(true, 1));
    EXPECT_EQ(moment(0), Moment::Past);
    EXPECT_EQ(moment(1), Moment::Current);
    EXPECT_EQ(moment(2), Moment::Future);
    EXPECT_EQ(panel.programs()->currentRow(), 1);
    EXPECT_EQ(time(1), "11:30");
    now += hours(1);
    EXPECT_EQ(moment(1), Moment::Past);
    EXPECT_EQ(moment(2), Moment::Current);
}

TEST_F(GuidePanelTest, ADescriptionFollowsWhereThereIsOne) {
    auto described = program("a", now, now + hours(1));
    described.desc = "Sobre isto";
    auto empty = program("b", now + hours(1), now + hours(2));
    empty.desc = "";
    add({described, empty, program("c", now + hours(2), now + hours(3))});
    show(channel(false, 0));
    EXPECT_EQ(shown(0, EPGProgramListModel::DetailRole).toString(), QStringLiteral("Sobre isto"));
    EXPECT_EQ(shown(1, EPGProgramListModel::DetailRole).toString(), QString());
    EXPECT_EQ(shown(2, EPGProgramListModel::DetailRole).toString(), QString());
}

TEST_F(GuidePanelTest, WhatEndedASecondAgoCanBePlayedAndWhatIsOnCannot) {
    add({program("over", now - hours(1), now - seconds(1)), program("ends now", now - minutes(30), now),
         program("on", now - minutes(20), now + seconds(1)),
         program("later", now + hours(1), now + hours(2))});
    show(channel(true, 1));
    for (int row = 0; row < 5; ++row) {
        panel.playCatchup(row);
    }
    panel.playCatchup(-1);
    EXPECT_THAT(played, ElementsAre("c1_over"));
    EXPECT_TRUE(shown(0, EPGProgramListModel::CanCatchupRole).toBool());
    for (int row = 1; row < 4; ++row) {
        EXPECT_FALSE(shown(row, EPGProgramListModel::CanCatchupRole).toBool()) << row;
    }
    EXPECT_EQ(moment(1), Moment::Past);
}

TEST_F(GuidePanelTest, WithoutAnArchiveNothingCanBePlayed) {
    addDay();
    show(channel(false, 7));
    for (int row = 0; row < 3; ++row) {
        EXPECT_FALSE(shown(row, EPGProgramListModel::CanCatchupRole).toBool()) << row;
        panel.playCatchup(row);
    }
    EXPECT_THAT(played, IsEmpty());
}

TEST_F(GuidePanelTest, TheLengthOfTheArchiveBoundsTheDaysAlone) {
    add({program("old", now - hours(24 * 30), now - hours(24 * 30 - 1))});
    panel.setSelectedDate(at(now - hours(24 * 30)));
    show(channel(true, 0));
    EXPECT_TRUE(shown(0, EPGProgramListModel::CanCatchupRole).toBool());
}

TEST_F(GuidePanelTest, AChannelWithoutAGuideIdIsEmptyAtOnceAndAsksNobody) {
    signIn();
    add({program("nobody's", now, now + hours(1), "")});
    for (const auto& id : {std::optional<std::string>(), std::optional<std::string>("")}) {
        panel.disappear();
        show(channel(true, 3, id));
        EXPECT_EQ(panel.content(), Content::Empty);
        EXPECT_THAT(titles(), IsEmpty());
    }
    drainEvents();
    EXPECT_EQ(requests, 0);
    EXPECT_THAT(contents, ElementsAre(Content::Empty));
}

TEST_F(GuidePanelTest, AnEmptyDayIsAskedForAtTheProvider) {
    signIn();
    serveListings(listing("Tarde", "2024-03-15 14:00:00", "2024-03-15 15:00:00") + "," +
                  listing("Ontem", "2024-03-14 14:00:00", "2024-03-14 15:00:00"));
    show(channel(true, 3));
    EXPECT_EQ(panel.content(), Content::Loading);
    ASSERT_TRUE(waitUntil([this] { return panel.content() == Content::Programs; }));
    EXPECT_THAT(titles(), ElementsAre("Tarde"));
    EXPECT_EQ(requests, 1);
    panel.setSelectedDate(at(now - hours(24)));
    EXPECT_THAT(titles(), ElementsAre("Ontem"));
    EXPECT_EQ(requests, 1) << "the store has that day by now";
}

TEST_F(GuidePanelTest, AnEmptyDayIsAskedForAtEachVisit) {
    signIn();
    show(channel(true, 3));
    ASSERT_TRUE(waitUntil([this] { return panel.content() == Content::Empty; }));
    panel.disappear();
    panel.appear();
    EXPECT_EQ(panel.content(), Content::Loading);
    ASSERT_TRUE(waitUntil([this] { return panel.content() == Content::Empty; }));
    EXPECT_EQ(requests, 2);
}

TEST_F(GuidePanelTest, ADayThatIsSetWhileThePanelOpensIsAskedForOnce) {
    signIn();
    show(channel(true, 3));
    panel.setSelectedDate(at(now - minutes(1)));
    endRequests();
    EXPECT_EQ(panel.content(), Content::Empty);
    EXPECT_EQ(requests, 1);
}

TEST_F(GuidePanelTest, ARequestThatFailsEndsOnNothingToShow) {
    signIn();
    serveListings("", 500);
    show(channel(false, 0));
    EXPECT_EQ(panel.content(), Content::Loading);
    ASSERT_TRUE(waitUntil([this] { return panel.content() == Content::Empty; }));
    http.stop();
    panel.disappear();
    panel.appear();
    EXPECT_EQ(panel.content(), Content::Loading);
    ASSERT_TRUE(waitUntil([this] { return panel.content() == Content::Empty; }));
}

TEST_F(GuidePanelTest, WithoutAnAccountNobodyIsAsked) {
    show(channel(false, 0));
    EXPECT_EQ(panel.content(), Content::Empty);
}

TEST_F(GuidePanelTest, ADayThatHasNotBegunIsNotAskedFor) {
    signIn();
    panel.setSelectedDate(at(now + std::chrono::milliseconds(1)));
    show(channel(false, 0));
    EXPECT_EQ(panel.content(), Content::Empty);
    EXPECT_EQ(requests, 0);
    panel.setSelectedDate(at(now));
    EXPECT_EQ(panel.content(), Content::Loading) << "now itself is not after now";
    EXPECT_TRUE(waitForRequests(1));
}

TEST_F(GuidePanelTest, TheListOfDaysStandsBeforeEverythingElse) {
    signIn();
    hold();
    show(channel(true, 3));
    EXPECT_EQ(panel.content(), Content::Loading);
    panel.setShowDatePicker(true);
    EXPECT_EQ(panel.content(), Content::Days);
    release();
    panel.setShowDatePicker(false);
    ASSERT_TRUE(waitUntil([this] { return panel.content() == Content::Empty; }));
}

TEST_F(GuidePanelTest, ALateAnswerChangesNothingOnAnotherDay) {
    signIn();
    add({program("yesterday", now - hours(24), now - hours(23))});
    serveListings(listing("Tarde", "2024-03-15 14:00:00", "2024-03-15 15:00:00"));
    hold();
    show(channel(true, 3));
    ASSERT_TRUE(waitForRequests(1));
    panel.setSelectedDate(at(now - hours(24)));
    EXPECT_EQ(panel.content(), Content::Programs);
    int resets = 0;
    QObject::connect(panel.programs(), &QAbstractItemModel::modelReset, &panel, [&resets] { ++resets; });
    endRequests();
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), 2);
    EXPECT_EQ(resets, 0);
    EXPECT_THAT(titles(), ElementsAre("yesterday"));
}

TEST_F(GuidePanelTest, ALateAnswerEndsNobodyElsesWait) {
    signIn();
    hold();
    show(channel(true, 3));
    ASSERT_TRUE(waitForRequests(1));
    serveListings(listing("Tarde", "2024-03-15 14:00:00", "2024-03-15 15:00:00"));
    auto other = channel(true, 3, "c2");
    panel.setChannel(other);
    ASSERT_TRUE(waitForRequests(2));
    EXPECT_EQ(panel.content(), Content::Loading);
    other.epgChannelId.reset();
    panel.setChannel(other);
    EXPECT_EQ(panel.content(), Content::Empty);
    contents.clear();
    endRequests();
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), 2) << "both have come";
    EXPECT_THAT(contents, IsEmpty());
}

TEST_F(GuidePanelTest, AnAnswerForAPanelThatIsOutOfSightIsDropped) {
    signIn();
    serveListings(listing("Tarde", "2024-03-15 14:00:00", "2024-03-15 15:00:00"));
    hold();
    show(channel(false, 0));
    ASSERT_TRUE(waitForRequests(1));
    panel.disappear();
    endRequests();
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), 1);
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(GuidePanelTest, AnAnswerForAPanelThatHasGoneHarmsNobody) {
    signIn();
    serveListings(listing("Tarde", "2024-03-15 14:00:00", "2024-03-15 15:00:00"));
    hold();
    auto gone = std::make_unique<EPGPanelViewModel>(
        EPGService({*store, makeCurlURLSession, folder.path() / "cache", guideWorkers}), appState);
    gone->setChannel(channel(false, 0));
    gone->appear();
    ASSERT_TRUE(waitForRequests(1));
    gone.reset();
    endRequests();
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), 1);
}

TEST_F(GuidePanelTest, AStoreThatCannotBeReadIsAChannelWithoutAGuide) {
    const auto lost = LibraryStore::open(folder.path() / "lost");
    std::filesystem::remove_all(folder.path() / "lost");
    const LogCapture log;
    EPGPanelViewModel other(EPGService({*lost, makeCurlURLSession, folder.path() / "cache", guideWorkers}),
                            appState);
    other.setChannel(channel(false, 0));
    other.appear();
    EXPECT_EQ(other.content(), Content::Empty);
}

TEST_F(GuidePanelTest, AbsurdTimesBreakNothing) {
    const Date farEnd = Date::max();
    add({program("endless", now - hours(1), farEnd), program("backwards", now - minutes(50), Date::min()),
         program("no length", now - minutes(40), now - minutes(40)), program("no length now", now, now),
         program("overlaps", now - minutes(30), now + hours(1)),
         program("backwards to come", now + hours(1), now - hours(1))});
    show(channel(true, 3));
    EXPECT_THAT(titles(), ElementsAre("endless", "backwards", "no length", "overlaps", "no length now",
                                      "backwards to come"));
    EXPECT_EQ(moment(0), Moment::Current);
    EXPECT_EQ(moment(1), Moment::Past);
    EXPECT_EQ(moment(2), Moment::Past);
    EXPECT_EQ(moment(3), Moment::Current);
    EXPECT_EQ(moment(4), Moment::Past);
    EXPECT_EQ(moment(5), Moment::Past);
    EXPECT_EQ(panel.programs()->currentRow(), 0);
    for (int row = 0; row < 6; ++row) {
        panel.playCatchup(row);
    }
    EXPECT_THAT(played, ElementsAre("c1_backwards", "c1_no length", "c1_backwards to come"));
}

/// A zone, a moment in it, and what its days are called and when they begin.
struct ZoneCase final {
    const char* zone;
    Date now;
    std::vector<Date> days;
    std::vector<std::string> names;
};

void PrintTo(const ZoneCase& one, std::ostream* stream) {
    *stream << one.zone;
}

class GuideZones : public ::testing::TestWithParam<ZoneCase> {};

TEST_P(GuideZones, DaysBeginAndAreNamedByTheDevicesCalendar) {
    const DeviceZone zone(GetParam().zone);
    const DayTexts texts;
    const auto days = calendarDaysBack(GetParam().now, static_cast<int>(GetParam().days.size()) - 1);
    EXPECT_EQ(days, GetParam().days);
    std::vector<std::string> names;
    for (const Date day : days) {
        names.push_back(texts.dayText(day, GetParam().now));
        EXPECT_EQ(calendarDayOf(day).begin, day);
    }
    EXPECT_EQ(names, GetParam().names);
}

INSTANTIATE_TEST_SUITE_P(
    Zones, GuideZones,
    ::testing::Values(
        // Forward at one in the morning of the 31st, which has 23 hours.
        ZoneCase{"Europe/Lisbon",
                 utc(2024, 4, 1, 12),
                 {utc(2024, 3, 31, 23), utc(2024, 3, 31), utc(2024, 3, 30)},
                 {"Hoje — Segunda-Feira, 01/04", "Domingo, 31/03", "Sábado, 30/03"}},
        // Back at two in the morning of the 27th, which has 25.
        ZoneCase{"Europe/Lisbon",
                 utc(2024, 10, 28, 0, 30),
                 {utc(2024, 10, 28), utc(2024, 10, 26, 23), utc(2024, 10, 25, 23)},
                 {"Hoje — Segunda-Feira, 28/10", "Domingo, 27/10", "Sábado, 26/10"}},
        ZoneCase{"Asia/Tokyo",
                 utc(2024, 3, 15, 15),
                 {utc(2024, 3, 15, 15), utc(2024, 3, 14, 15)},
                 {"Hoje — Sábado, 16/03", "Sexta-Feira, 15/03"}},
        ZoneCase{"America/Phoenix",
                 utc(2024, 11, 4, 6, 59),
                 {utc(2024, 11, 3, 7), utc(2024, 11, 2, 7)},
                 {"Hoje — Domingo, 03/11", "Sábado, 02/11"}},
        // A day whose midnight is skipped begins at one; the day before has its own midnight.
        ZoneCase{"Asia/Beirut",
                 utc(2024, 3, 31, 9),
                 {utc(2024, 3, 30, 22), utc(2024, 3, 29, 22), utc(2024, 3, 28, 22)},
                 {"Hoje — Domingo, 31/03", "Sábado, 30/03", "Sexta-Feira, 29/03"}},
        // One whose midnight comes twice begins with the first.
        ZoneCase{"America/Havana",
                 utc(2024, 11, 4, 12),
                 {utc(2024, 11, 4, 5), utc(2024, 11, 3, 4), utc(2024, 11, 2, 4)},
                 {"Hoje — Segunda-Feira, 04/11", "Domingo, 03/11", "Sábado, 02/11"}},
        ZoneCase{"Asia/Kathmandu",
                 utc(2024, 1, 1, 18, 15),
                 {utc(2024, 1, 1, 18, 15), utc(2023, 12, 31, 18, 15)},
                 {"Hoje — Terça-Feira, 02/01", "Segunda-Feira, 01/01"}}));

TEST(GuideClock, TellsTheDevicesTimeAlsoAroundAChangeOfIt) {
    const DeviceZone zone("Europe/Lisbon");
    const DayTexts texts;
    EXPECT_EQ(texts.clockText(utc(2024, 3, 31, 0, 59)), "00:59");
    EXPECT_EQ(texts.clockText(utc(2024, 3, 31, 1)), "02:00");
    EXPECT_EQ(texts.clockText(utc(2024, 10, 27, 0, 30)), "01:30");
    EXPECT_EQ(texts.clockText(utc(2024, 10, 27, 1, 30)), "01:30") << "the hour comes twice";
    const DeviceZone other("Asia/Kathmandu");
    EXPECT_EQ(DayTexts().clockText(utc(2024, 1, 1, 18, 20)), "00:05");
}

TEST_F(GuidePanelTest, ADayOf23HoursEndsWithTheNextDaysFirstMoment) {
    now = utc(2024, 4, 1, 12);
    add({program("first", utc(2024, 3, 31), utc(2024, 3, 31, 1)),
         program("after the change", utc(2024, 3, 31, 1), utc(2024, 3, 31, 2)),
         program("last", utc(2024, 3, 31, 22, 59), utc(2024, 4, 1)),
         program("next day", utc(2024, 3, 31, 23), utc(2024, 4, 1))});
    show(channel(true, 3));
    panel.toggleDatePicker();
    panel.pickDay(1);
    EXPECT_THAT(titles(), ElementsAre("first", "after the change", "last"));
    EXPECT_EQ(time(0), "00:00");
    EXPECT_EQ(time(1), "02:00");
    EXPECT_EQ(time(2), "23:59");
}

TEST_F(GuidePanelTest, ADayOf25HoursHoldsAllOfThem) {
    now = utc(2024, 10, 28, 12);
    add({program("first", utc(2024, 10, 26, 23), utc(2024, 10, 27)),
         program("half past one", utc(2024, 10, 27, 0, 30), utc(2024, 10, 27, 1)),
         program("half past one again", utc(2024, 10, 27, 1, 30), utc(2024, 10, 27, 2)),
         program("last", utc(2024, 10, 27, 23, 59), utc(2024, 10, 28)),
         program("next day", utc(2024, 10, 28), utc(2024, 10, 28, 1))});
    show(channel(true, 3));
    panel.toggleDatePicker();
    panel.pickDay(1);
    EXPECT_THAT(titles(), ElementsAre("first", "half past one", "half past one again", "last"));
    EXPECT_EQ(time(0), "00:00");
    EXPECT_EQ(time(1), time(2));
}

} // namespace
} // namespace ondavia::testing
