#include "BrowseFixture.h"

#include <QUrl>

namespace ondavia::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr int names = ChannelListModel::NameRole;

/// Rows of one group, whose numbers go down from `count` to 1 in the order in which they are stored.
std::vector<Channel> backwards(int count, const std::string& type, const std::string& group) {
    std::vector<Channel> rows;
    for (int number = count; number >= 1; --number) {
        rows.push_back(title(number, type, group, group + " " + std::to_string(number)));
    }
    return rows;
}

class BrowserTest : public BrowseFixture {
protected:
    /// What the row of that category shows.
    std::vector<std::string> row(int index) {
        CarouselTitles titles;
        titles.setCarousels(films.carousels());
        titles.setRow(index);
        return texts(*titles.list(), names);
    }
    std::vector<std::string> categories() { return texts(*films.carousels(), CarouselListModel::NameRole); }

    std::vector<std::string> opened;
    BrowserViewModel films{BrowserKind::Movies, appState, *store, catalogue,
                           [this](const Channel& title) { opened.push_back(title.name); }};
    Watch watch{films.carousels(), films.titles()};
};

TEST_F(BrowserTest, LoadsWhenItAppearsAndNotBefore) {
    fill({title(1, "movie", "Drama", "One")});
    appState.setVodCategories(categoryItems({"Drama"}));
    drainEvents();
    EXPECT_TRUE(films.isLoading());
    EXPECT_EQ(films.carousels()->rowCount(), 0);
    films.appear();
    ASSERT_TRUE(waitUntil([this] { return !films.isLoading(); }));
    EXPECT_THAT(categories(), ElementsAre("Drama"));
}

TEST_F(BrowserTest, WhatIsCountedAlreadyShowsAtOnce) {
    fill({title(1, "movie", "Drama", "One")});
    appState.setVodCategories(categoryItems({"Drama"}));
    catalogue.prefetch();
    ASSERT_TRUE(waitUntil([this] { return catalogue.isReady(); }));
    films.appear();
    EXPECT_FALSE(films.isLoading()) << "a page that is made shows its rows in its first frame";
    EXPECT_THAT(categories(), ElementsAre("Drama"));
}

TEST_F(BrowserTest, ACategoryOfSixteenShowsFifteenInItsRowAndAllWhenItIsOpened) {
    fill(backwards(16, "movie", "Drama"));
    appState.setVodCategories(categoryItems({"Drama"}));
    appear(films);
    const auto shown = row(0);
    EXPECT_THAT(shown, SizeIs(15));
    EXPECT_EQ(shown.front(), "Drama 1") << "in the order of numbers";
    EXPECT_EQ(shown.back(), "Drama 15");
    films.openCategory(0);
    EXPECT_EQ(films.categoryName(), QStringLiteral("Drama"));
    const auto all = texts(*films.titles(), names);
    EXPECT_THAT(all, SizeIs(16));
    EXPECT_EQ(all.front(), "Drama 1");
    EXPECT_EQ(all.back(), "Drama 16");
}

TEST_F(BrowserTest, CategoriesWithoutTitlesHaveNoRowAndTheOthersTheProvidersOrder) {
    appState.setVodCategories(categoryItems({"Empty", "Drama", "Crime"}));
    fill({title(1, "movie", "Crime", "One"), title(2, "movie", "Drama", "Two"),
          title(3, "series", "Empty", "A series in a category of the same name")});
    appear(films);
    EXPECT_THAT(categories(), ElementsAre("Drama", "Crime"));
    EXPECT_THAT(row(0), ElementsAre("Two"));
    EXPECT_THAT(row(1), ElementsAre("One"));
}

TEST_F(BrowserTest, ATitleOfNoCategoryCannotBeReached) {
    appState.setVodCategories(categoryItems({"Drama"}));
    fill({title(1, "movie", "Lost", "One"), title(2, "movie", "Drama", "Two")});
    appear(films);
    EXPECT_THAT(categories(), ElementsAre("Drama"));
    EXPECT_THAT(row(0), ElementsAre("Two"));
}

TEST_F(BrowserTest, CategoriesOfOneNameHaveARowEach) {
    appState.setVodCategories(categoryItems({"Drama", "Drama"}));
    fill({title(1, "movie", "Drama", "One")});
    appear(films);
    EXPECT_THAT(row(0), ElementsAre("One"));
    EXPECT_THAT(row(1), ElementsAre("One"));
}

TEST_F(BrowserTest, ACatalogueThatCannotBeReadHasNoRowsAndSaysNothingToTheViewer) {
    fill({title(1, "movie", "Drama", "One")});
    appState.setVodCategories(categoryItems({"Drama"}));
    store->mainContext().closeReplacedFiles();
    const std::filesystem::path link = folder.path() / "store" / "catalogue.db";
    std::filesystem::rename(link, folder.path() / "kept.db");
    std::filesystem::create_directory(link);
    store->announce({EntityKind::Channel});
    const LogCapture log;
    films.appear();
    ASSERT_TRUE(waitUntil([this] { return !films.isLoading(); }));
    EXPECT_EQ(films.carousels()->rowCount(), 0);
    EXPECT_FALSE(appState.toastMessage());
    std::filesystem::remove(link);
    std::filesystem::rename(folder.path() / "kept.db", link);
}

TEST_F(BrowserTest, LeadsToTheTitleOfARowAndOfTheOpenCategory) {
    fill(backwards(16, "movie", "Drama"));
    appState.setVodCategories(categoryItems({"Drama"}));
    appear(films);
    CarouselTitles titles;
    titles.setCarousels(films.carousels());
    titles.setRow(0);
    films.openFrom(titles.list(), 2);
    films.openFrom(titles.list(), 15);
    films.openFrom(titles.list(), -1);
    films.openCategory(1);
    films.openCategory(-1);
    EXPECT_TRUE(films.categoryName().isEmpty());
    films.openCategory(0);
    films.open(15);
    films.open(16);
    EXPECT_THAT(opened, ElementsAre("Drama 3", "Drama 16"));
}

TEST_F(BrowserTest, ARatingThatSaysNothingIsNone) {
    std::vector<Channel> rows;
    for (const auto& rating : std::vector<std::optional<std::string>>{"7.5", "0", "", {}, "0.0"}) {
        rows.push_back(title(static_cast<int>(rows.size()) + 1, "movie", "Crime", "Title"));
        rows.back().rating = rating;
    }
    fill(rows);
    appState.setVodCategories(categoryItems({"Crime"}));
    appear(films);
    films.openCategory(0);
    EXPECT_THAT(texts(*films.titles(), ChannelListModel::RatingRole), ElementsAre("7.5", "", "", "", "0.0"));
}

TEST_F(BrowserTest, SeriesAreTheirTwins) {
    BrowserViewModel series{BrowserKind::Series, appState, *store, catalogue,
                            [this](const Channel& title) { opened.push_back(title.name); }};
    const Watch watched{series.carousels(), series.titles()};
    auto rows = backwards(16, "series", "Drama");
    rows.push_back(title(99, "movie", "Drama", "A film"));
    fill(rows);
    appState.setVodCategories(categoryItems({"Films alone"}));
    appState.setSeriesCategories(categoryItems({"Drama", "Empty"}));
    appear(series);
    EXPECT_THAT(texts(*series.carousels(), CarouselListModel::NameRole), ElementsAre("Drama"));
    series.openCategory(0);
    EXPECT_THAT(texts(*series.titles(), names), SizeIs(16));
    series.open(0);
    EXPECT_THAT(opened, ElementsAre("Drama 1"));
    EXPECT_THAT(texts(*series.titles(), ChannelListModel::SymbolRole), Each("play.rectangle.fill"));
    appear(films);
    EXPECT_EQ(films.carousels()->rowCount(), 0);
}

TEST_F(BrowserTest, AFilmHasItsOwnPlaceholder) {
    fill({title(1, "movie", "Drama", "One")});
    appState.setVodCategories(categoryItems({"Drama"}));
    appear(films);
    films.openCategory(0);
    EXPECT_THAT(texts(*films.titles(), ChannelListModel::SymbolRole), ElementsAre("film.fill"));
}

TEST_F(BrowserTest, OnlyPicturesOfTheWebAreAskedFor) {
    Channel file = title(1, "movie", "Drama", "One");
    file.logo = "file:///etc/passwd";
    Channel web = title(2, "movie", "Drama", "Two");
    web.logo = "https://pictures.example/2.jpg";
    fill({file, web});
    appState.setVodCategories(categoryItems({"Drama"}));
    appear(films);
    films.openCategory(0);
    const auto pictures = texts(*films.titles(), ChannelListModel::PictureRole);
    EXPECT_EQ(pictures.at(0), "");
    EXPECT_TRUE(pictures.at(1).starts_with("image://pictures/"));
}

TEST_F(BrowserTest, FollowsTheCatalogueAndItsOrder) {
    fill({title(1, "movie", "Crime", "One"), title(2, "movie", "Drama", "Two")});
    appState.setVodCategories(categoryItems({"Drama", "Crime"}));
    appear(films);
    films.openCategory(1);
    fillAndFollow({title(3, "movie", "Crime", "Three"), title(1, "movie", "Crime", "Renamed")});
    EXPECT_THAT(row(1), ElementsAre("Renamed", "Three"));
    EXPECT_THAT(texts(*films.titles(), names), ElementsAre("Renamed", "Three"));
    appState.setVodCategories(categoryItems({"Crime", "New", "Drama"}));
    EXPECT_THAT(categories(), ElementsAre("Crime", "Drama"));
    fillAndFollow({title(4, "movie", "New", "Four")});
    EXPECT_THAT(categories(), ElementsAre("Crime", "New", "Drama"));
    removeAll();
    EXPECT_THAT(categories(), IsEmpty());
    EXPECT_EQ(films.titles()->rowCount(), 0);
    EXPECT_EQ(films.categoryName(), QStringLiteral("Crime"));
}

TEST_F(BrowserTest, ARowThatGoesToAnotherCategoryChangesItsListAndMakesNoneAnew) {
    fill({title(1, "movie", "Drama", "One"), title(2, "movie", "Drama", "Two"),
          title(3, "movie", "Crime", "Three")});
    appState.setVodCategories(categoryItems({"Drama", "Crime"}));
    appear(films);
    CarouselTitles titles;
    const Watch watched{titles.list()};
    int resets = 0;
    QObject::connect(titles.list(), &QAbstractItemModel::modelReset, titles.list(), [&] { ++resets; });
    titles.setCarousels(films.carousels());
    titles.setRow(0);
    EXPECT_THAT(texts(*titles.list(), names), ElementsAre("One", "Two"));
    titles.setRow(1);
    EXPECT_THAT(texts(*titles.list(), names), ElementsAre("Three"));
    titles.setRow(7);
    titles.setRow(0);
    EXPECT_THAT(texts(*titles.list(), names), ElementsAre("One", "Two"));
    EXPECT_EQ(resets, 0) << "a reset would have all cards made anew";
}

TEST_F(BrowserTest, ASynchronisationTakesNoPlaceAway) {
    fill({title(1, "movie", "A", "One"), title(2, "movie", "B", "Two"), title(3, "movie", "C", "Three")});
    appState.setVodCategories(categoryItems({"A", "B", "C"}));
    appear(films);
    films.openCategory(2);
    const QPersistentModelIndex last = films.carousels()->index(2);
    int resets = 0;
    for (QAbstractItemModel* model : std::vector<QAbstractItemModel*>{films.carousels(), films.titles()}) {
        QObject::connect(model, &QAbstractItemModel::modelReset, model, [&] { ++resets; });
    }
    appState.setVodCategories(categoryItems({"C", "New", "B"}));
    fillAndFollow({title(4, "movie", "New", "Four"), title(5, "movie", "C", "Five")});
    EXPECT_THAT(categories(), ElementsAre("C", "New", "B"));
    EXPECT_EQ(last.row(), 0) << "the row has gone along with its category";
    EXPECT_THAT(texts(*films.titles(), names), ElementsAre("Three", "Five"));
    EXPECT_EQ(resets, 0);
}

TEST_F(BrowserTest, NamesOfAnyKindAreShownWithinBounds) {
    fill({title(1, "movie", "Drama", std::string(10'000, 'a')), title(2, "movie", "Drama", "\u202Eabc"),
          title(3, "movie", "Drama", "\x01\x02\x03")});
    appState.setVodCategories(categoryItems({"Drama"}));
    appear(films);
    EXPECT_THAT(row(0), ElementsAre(std::string(300, 'a'), "abc", "   "));
}

TEST_F(BrowserTest, MayGoWhileItLoads) {
    fill({title(1, "movie", "Drama", "One")});
    auto series = std::make_unique<BrowserViewModel>(BrowserKind::Series, appState, *store, catalogue,
                                                     [](const Channel&) {});
    series->appear();
    series.reset();
    follow();
}

} // namespace
} // namespace ondavia::testing
