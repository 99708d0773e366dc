#include "screens/browse/BrowserViewModel.h"
#include "ScreensFixture.h"

#include <QAbstractItemModelTester>
#include <QUrl>

namespace ondavia::testing {
namespace {

class BrowserTest : public ScreensFixture {
protected:
    std::vector<std::string> texts(const QAbstractItemModel& model, int role) const {
        std::vector<std::string> found;
        for (int row = 0; row < model.rowCount(); ++row) {
            found.push_back(model.index(row, 0).data(role).toString().toStdString());
        }
        return found;
    }
    using Texts = std::vector<std::string>;
};

/// A browser whose models are watched from before they have data.
struct WatchedBrowser final {
    WatchedBrowser(BrowserKind kind, AppState& appState, LibraryStore& store, CatalogueSummary& catalogue)
        : model(kind, appState, store, catalogue)
        , categories(model.categories(), QAbstractItemModelTester::FailureReportingMode::Fatal)
        , titles(model.titles(), QAbstractItemModelTester::FailureReportingMode::Fatal) {}
    BrowserViewModel model;
    QAbstractItemModelTester categories;
    QAbstractItemModelTester titles;
};

TEST_F(BrowserTest, LiveCategoriesKeepTheProvidersOrderAndCountTheStoredChannels) {
    WatchedBrowser browser(BrowserKind::Live, appState, *store, catalogue);
    fill({title(1, "live", "Sport", "One"), title(2, "live", "Sport", "Two"),
          title(3, "live", "Lost", "Three"),
          title(4, "movie", "News", "A film in a category of the same name")});
    appState.setLiveCategories(categoryItems({"Sport", "News"}));
    EXPECT_EQ(texts(*browser.model.categories(), CategoryListModel::NameRole), (Texts{"Sport", "News"}));
    EXPECT_EQ(texts(*browser.model.categories(), CategoryListModel::CountTextRole), (Texts{"2", ""}))
        << "a category without channels shows no number";
    EXPECT_EQ(browser.model.categoryRow(), -1);
}

TEST_F(BrowserTest, OpensACategoryInTheOrderOfNumbersAndPlaysARow) {
    WatchedBrowser browser(BrowserKind::Live, appState, *store, catalogue);
    appState.setLiveCategories(categoryItems({"News", "Sport"}));
    fill({title(9, "live", "Sport", "Nine"), title(2, "live", "Sport", "Two"),
          title(3, "live", "News", "Three")});
    browser.model.openCategory(1);
    EXPECT_EQ(browser.model.categoryName(), QStringLiteral("Sport"));
    EXPECT_EQ(texts(*browser.model.titles(), ChannelListModel::NameRole), (Texts{"Two", "Nine"}));
    browser.model.play(1);
    ASSERT_TRUE(appState.currentChannel());
    EXPECT_EQ(appState.currentChannel()->id, "main_9");
}

TEST_F(BrowserTest, AnEmptyCategoryOpensAnEmptyList) {
    WatchedBrowser browser(BrowserKind::Live, appState, *store, catalogue);
    appState.setLiveCategories(categoryItems({"Empty"}));
    browser.model.openCategory(0);
    EXPECT_EQ(browser.model.titles()->rowCount(), 0);
    browser.model.play(0);
    browser.model.play(-1);
    browser.model.openCategory(7);
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_EQ(browser.model.categoryName(), QStringLiteral("Empty"));
}

TEST_F(BrowserTest, CategoriesOfOneNameShowTheSame) {
    WatchedBrowser browser(BrowserKind::Live, appState, *store, catalogue);
    fill({title(1, "live", "Twin", "One")});
    appState.setLiveCategories(categoryItems({"Twin", "Twin"}));
    EXPECT_EQ(texts(*browser.model.categories(), CategoryListModel::CountTextRole), (Texts{"1", "1"}));
    browser.model.openCategory(1);
    EXPECT_EQ(browser.model.titles()->rowCount(), 1);
}

TEST_F(BrowserTest, FilmsHideEmptyCategoriesAndOpenTheFirst) {
    WatchedBrowser browser(BrowserKind::Movies, appState, *store, catalogue);
    appState.setVodCategories(categoryItems({"Empty", "Drama", "Crime"}));
    EXPECT_EQ(browser.model.categories()->rowCount(), 0);
    fill({title(1, "movie", "Crime", "One"), title(2, "movie", "Drama", "Two")});
    EXPECT_EQ(texts(*browser.model.categories(), CategoryListModel::NameRole), (Texts{"Drama", "Crime"}));
    EXPECT_EQ(browser.model.categoryRow(), 0);
    EXPECT_EQ(texts(*browser.model.titles(), ChannelListModel::NameRole), (Texts{"Two"}));
}

TEST_F(BrowserTest, FilmsStayInTheirCategoryWhenTheOrderChanges) {
    WatchedBrowser browser(BrowserKind::Movies, appState, *store, catalogue);
    fill({title(1, "movie", "Crime", "One"), title(2, "movie", "Drama", "Two")});
    appState.setVodCategories(categoryItems({"Drama", "Crime"}));
    browser.model.openCategory(1);
    appState.setVodCategories(categoryItems({"Crime", "Drama"}));
    EXPECT_EQ(browser.model.categoryName(), QStringLiteral("Crime"));
    EXPECT_EQ(browser.model.categoryRow(), 0);
}

TEST_F(BrowserTest, FollowsTheCatalogue) {
    WatchedBrowser browser(BrowserKind::Live, appState, *store, catalogue);
    appState.setLiveCategories(categoryItems({"News"}));
    fill({title(1, "live", "News", "One")});
    browser.model.openCategory(0);
    fill({title(2, "live", "News", "Two"), title(1, "live", "News", "Renamed")});
    EXPECT_EQ(texts(*browser.model.titles(), ChannelListModel::NameRole), (Texts{"Renamed", "Two"}));
    EXPECT_EQ(texts(*browser.model.categories(), CategoryListModel::CountTextRole), (Texts{"2"}));
    store->mainContext().removeAll<Channel>();
    store->mainContext().save();
    drainEvents();
    EXPECT_EQ(browser.model.titles()->rowCount(), 0);
}

TEST_F(BrowserTest, ARatingOfZeroIsNone) {
    Channel rated = title(1, "movie", "Crime", "Rated");
    rated.rating = "7.5";
    Channel zero = title(2, "movie", "Crime", "Zero");
    zero.rating = "0";
    WatchedBrowser browser(BrowserKind::Movies, appState, *store, catalogue);
    fill({rated, zero, title(3, "movie", "Crime", "Without")});
    appState.setVodCategories(categoryItems({"Crime"}));
    EXPECT_EQ(texts(*browser.model.titles(), ChannelListModel::RatingRole), (Texts{"7.5", "", ""}));
}

} // namespace
} // namespace ondavia::testing
