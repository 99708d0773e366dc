#include "BrowseFixture.h"
#include "screens/search/SearchViewModel.h"

namespace ondavia::testing {
namespace {

using std::chrono::minutes;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LiveBrowserTest : public BrowseFixture {
protected:
    void openCategory(int row) {
        live.openCategory(row);
        live.loadCurrentEPG();
    }
    std::vector<std::string> programs() { return texts(*live.titles(), ChannelListModel::ProgramRole); }
    std::vector<std::string> channels() { return texts(*live.titles(), ChannelListModel::NameRole); }
    std::vector<std::string> categories() { return texts(*live.categories(), CategoryListModel::NameRole); }
    std::vector<std::string> counts() { return texts(*live.categories(), CategoryListModel::CountTextRole); }
    void addProgram(const std::string& channel, const std::string& name, Date start, Date stop) {
        store->mainContext().insert(EPGProgram{channel + name, channel, name, {}, start, stop, {}});
        store->mainContext().save();
        drainEvents();
    }
    static Channel withGuide(Channel channel, const std::string& guideId) {
        channel.epgChannelId = guideId;
        return channel;
    }

    Date now = currentDate();
    LiveViewModel live{appState, *store, catalogue, [this] { return now; }};
    Watch watch{live.categories(), live.titles()};
};

TEST_F(LiveBrowserTest, CategoriesKeepTheProvidersOrderAndCountTheStoredChannels) {
    appState.setLiveCategories(categoryItems({"Sport", "News"}));
    fill({title(1, "live", "Sport", "One"), title(2, "live", "Sport", "Two"),
          title(3, "live", "Lost", "Three"),
          title(4, "movie", "News", "A film in a category of the same name")});
    EXPECT_TRUE(live.isLoading());
    appear(live);
    EXPECT_THAT(categories(), ElementsAre("Sport", "News"));
    EXPECT_THAT(counts(), ElementsAre("2", "")) << "a category without channels shows no number";
}

TEST_F(LiveBrowserTest, CountsAreDigitsAloneAndThoseOfTheStoredRows) {
    std::vector<Channel> rows;
    for (int number = 1; number <= 1234; ++number) {
        rows.push_back(title(number, "live", "Sport", "Channel"));
    }
    fill(rows);
    appState.setLiveCategories({{"Sport", "Sport", 7}});
    appear(live);
    EXPECT_THAT(counts(), ElementsAre("1234"));
}

TEST_F(LiveBrowserTest, OpensACategoryInTheOrderOfNumbersAndPlaysARow) {
    appState.setLiveCategories(categoryItems({"News", "Sport"}));
    fill({title(9, "live", "Sport", "Nine"), title(2, "live", "Sport", "Two"),
          title(3, "live", "News", "Three")});
    appear(live);
    live.openCategory(1);
    EXPECT_EQ(live.categoryName(), QStringLiteral("Sport"));
    EXPECT_THAT(channels(), ElementsAre("Two", "Nine"));
    live.play(1);
    ASSERT_TRUE(appState.currentChannel());
    EXPECT_EQ(appState.currentChannel()->id, "main_9");
}

TEST_F(LiveBrowserTest, AnEmptyCategoryOpensAnEmptyList) {
    appState.setLiveCategories(categoryItems({"Empty"}));
    fill({title(1, "live", "Lost", "One")});
    appear(live);
    live.openCategory(0);
    EXPECT_THAT(channels(), IsEmpty());
    live.play(0);
    live.play(-1);
    live.openCategory(7);
    live.openCategory(-1);
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_EQ(live.categoryName(), QStringLiteral("Empty"));
}

TEST_F(LiveBrowserTest, CategoriesOfOneNameShowTheSame) {
    fill({title(1, "live", "Twin", "One")});
    appState.setLiveCategories(categoryItems({"Twin", "Twin"}));
    appear(live);
    EXPECT_THAT(counts(), ElementsAre("1", "1"));
    live.openCategory(0);
    EXPECT_THAT(channels(), ElementsAre("One"));
    live.openCategory(1);
    EXPECT_THAT(channels(), ElementsAre("One"));
}

TEST_F(LiveBrowserTest, AChannelOfNoCategoryIsNotListedButFound) {
    appState.setLiveCategories(categoryItems({"Sport"}));
    fill({title(1, "live", "Lost", "Ilha Perdida"), title(2, "live", "Sport", "Two")});
    appear(live);
    EXPECT_THAT(categories(), ElementsAre("Sport"));
    live.openCategory(0);
    EXPECT_THAT(channels(), ElementsAre("Two"));
    SearchViewModel finder("live", {appState, *store, search, scheduler});
    finder.setSearchText(QStringLiteral("perdida"));
    scheduler.advance(SearchViewModel::debounce + 0.1);
    ASSERT_TRUE(waitUntil([&] { return finder.rows()->rowCount() == 1; }));
}

TEST_F(LiveBrowserTest, ShowsWhatIsOnFromItsBeginningUntilJustBeforeItsEnd) {
    appState.setLiveCategories(categoryItems({"Sport"}));
    fill({withGuide(title(1, "live", "Sport", "Begins"), "begins"),
          withGuide(title(2, "live", "Sport", "Ends"), "ends"),
          withGuide(title(3, "live", "Sport", "Without a programme"), "nothing"),
          title(4, "live", "Sport", "Without a guide"),
          withGuide(title(5, "live", "Sport", "Goes on"), "on")});
    addProgram("begins", "Starts now", now, now + minutes(30));
    addProgram("ends", "Ends now", now - minutes(30), now);
    addProgram("nothing", "Later", now + std::chrono::microseconds(1), now + minutes(30));
    addProgram("on", "In the middle", now - minutes(30), now + std::chrono::microseconds(1));
    addProgram("", "Of nobody", now - minutes(30), now + minutes(30));
    appear(live);
    openCategory(0);
    ASSERT_TRUE(waitUntil([this] { return programs().front() != ""; }));
    EXPECT_THAT(programs(), ElementsAre("Starts now", "", "", "", "In the middle"));
}

TEST_F(LiveBrowserTest, OfTwoProgrammesTheLaterShows) {
    appState.setLiveCategories(categoryItems({"Sport"}));
    fill({withGuide(title(1, "live", "Sport", "One"), "one")});
    addProgram("one", "Before", now - minutes(40), now + minutes(30));
    addProgram("one", "After", now - minutes(10), now + minutes(30));
    appear(live);
    openCategory(0);
    ASSERT_TRUE(waitUntil([this] { return programs().front() != ""; }));
    EXPECT_THAT(programs(), ElementsAre("After"));
}

TEST_F(LiveBrowserTest, AProgrammeDoesNotMoveOnByItself) {
    appState.setLiveCategories(categoryItems({"Sport"}));
    fill({withGuide(title(1, "live", "Sport", "One"), "one")});
    addProgram("one", "First", now - minutes(10), now + minutes(10));
    addProgram("one", "Second", now + minutes(10), now + minutes(30));
    appear(live);
    openCategory(0);
    ASSERT_TRUE(waitUntil([this] { return programs().front() != ""; }));
    now += minutes(15);
    scheduler.advance(900);
    drainEvents();
    EXPECT_THAT(programs(), ElementsAre("First"));
    live.loadCurrentEPG();
    ASSERT_TRUE(waitUntil([this] { return programs().front() != "First"; }));
    EXPECT_THAT(programs(), ElementsAre("Second")) << "the channels have come into sight again";
}

TEST_F(LiveBrowserTest, FollowsTheCatalogueAndKeepsItsPlace) {
    appState.setLiveCategories(categoryItems({"News"}));
    fill({title(1, "live", "News", "One")});
    appear(live);
    live.openCategory(0);
    int resets = 0;
    QObject::connect(live.titles(), &QAbstractItemModel::modelReset, live.titles(), [&] { ++resets; });
    fillAndFollow({title(2, "live", "News", "Two"), title(1, "live", "News", "Renamed")});
    EXPECT_THAT(channels(), ElementsAre("Renamed", "Two"));
    EXPECT_THAT(counts(), ElementsAre("2"));
    removeAll();
    EXPECT_THAT(channels(), IsEmpty());
    EXPECT_THAT(counts(), ElementsAre(""));
    EXPECT_EQ(resets, 0);
}

TEST_F(LiveBrowserTest, MayGoWhileTheGuideIsRead) {
    auto other = std::make_unique<LiveViewModel>(appState, *store, catalogue);
    other->loadCurrentEPG();
    other.reset();
    drainEvents();
}

} // namespace
} // namespace ondavia::testing
