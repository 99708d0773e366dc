#include "screens/search/SearchViewModel.h"

#include "screens/ScreensFixture.h"

#include <QAbstractItemModelTester>
#include <QThreadPool>

#include <gmock/gmock.h>

#include <filesystem>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using Content = SearchViewModel::Content;

/// A search whose models are watched from before they have data.
struct WatchedSearch final {
    WatchedSearch(std::optional<std::string> type, const SearchServices& services)
        : model(std::move(type), services)
        , rows(model.rows(), QAbstractItemModelTester::FailureReportingMode::Fatal)
        , chips(model.chips(), QAbstractItemModelTester::FailureReportingMode::Fatal) {}
    SearchViewModel model;
    QAbstractItemModelTester rows;
    QAbstractItemModelTester chips;
};

class SearchTest : public ScreensFixture {
protected:
    SearchServices searchServices() { return {appState, *store, search, scheduler}; }
    SearchViewModel& open(std::optional<std::string> type = {}) {
        m_search.emplace(std::move(type), searchServices());
        return m_search->model;
    }
    void closePage() { m_search.reset(); }
    SearchViewModel& model() { return m_search->model; }

    void type(const char* text) { model().setSearchText(QString::fromUtf8(text)); }
    /// Lets the pending search run.
    void finish() {
        scheduler.advance(SearchViewModel::debounce);
        EXPECT_TRUE(waitUntil([this] { return !model().isSearching(); }));
    }
    void searchFor(const char* text) {
        type(text);
        finish();
    }
    /// The rows as they are shown: each group with its names.
    [[nodiscard]] std::vector<std::pair<std::string, std::vector<std::string>>> shown() {
        std::vector<std::pair<std::string, std::vector<std::string>>> groups;
        const QAbstractItemModel& rows = *model().rows();
        for (int row = 0; row < rows.rowCount(); ++row) {
            const QModelIndex index = rows.index(row, 0);
            auto group = index.data(SearchResultListModel::GroupRole).toString().toStdString();
            if (groups.empty() || groups.back().first != group) {
                groups.emplace_back(std::move(group), std::vector<std::string>());
            }
            groups.back().second.push_back(
                index.data(SearchResultListModel::NameRole).toString().toStdString());
        }
        return groups;
    }
    [[nodiscard]] std::vector<std::string> names() {
        std::vector<std::string> found;
        for (const auto& [group, rows] : shown()) {
            found.insert(found.end(), rows.begin(), rows.end());
        }
        return found;
    }
    /// Title and count of each chip.
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> chips() {
        std::vector<std::pair<std::string, std::string>> found;
        const QAbstractItemModel& rows = *model().chips();
        for (int row = 0; row < rows.rowCount(); ++row) {
            const QModelIndex index = rows.index(row, 0);
            found.emplace_back(index.data(FilterChipListModel::TitleRole).toString().toStdString(),
                               index.data(FilterChipListModel::CountTextRole).toString().toStdString());
        }
        return found;
    }
    void removeAll() {
        store->mainContext().removeAll<Channel>();
        store->mainContext().save();
    }
    void fillWithLighthouses() {
        fill({title(3, "movie", "Drama", "O Farol"), title(1, "live", "Notícias", "Farol TV"),
              title(2, "series", "Suspense", "Faroleiros"), title(4, "live", "Desporto", "Golo TV")});
    }

private:
    std::optional<WatchedSearch> m_search;
};

TEST_F(SearchTest, OneCharacterEmptiesTheResultsAndRunsNoQuery) {
    fillWithLighthouses();
    open();
    searchFor("farol");
    ASSERT_EQ(model().results().size(), 3U);
    const std::size_t sleeps = scheduler.requestedSleeps().size();
    type("f");
    EXPECT_TRUE(model().results().isEmpty());
    EXPECT_EQ(model().rows()->rowCount(), 0);
    EXPECT_THAT(chips(), IsEmpty());
    scheduler.advance(5);
    drainEvents();
    EXPECT_EQ(scheduler.requestedSleeps().size(), sleeps) << "nothing waits";
    EXPECT_TRUE(model().results().isEmpty());
    EXPECT_EQ(model().content(), Content::NoResults);
}

TEST_F(SearchTest, ACharacterIsWhatAReaderTakesForOne) {
    fill({title(1, "movie", "x", "e\xcc\x81\xf0\x9f\x8f\xb4")});
    open();
    for (const char* single :
         {"e\xcc\x81", "\xf0\x9f\x91\xa8\xe2\x80\x8d\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x91\xa7", "映"}) {
        type(single);
        EXPECT_FALSE(model().isSearching()) << single;
    }
    searchFor("e\xcc\x81\xf0\x9f\x8f\xb4");
    EXPECT_EQ(model().results().size(), 1U);
}

TEST_F(SearchTest, WhatIsTypedWithinTheDebounceRunsOneQuery) {
    fillWithLighthouses();
    open();
    int queries = 0;
    QObject::connect(&model(), &SearchViewModel::isSearchingChanged, &model(),
                     [&] { queries += model().isSearching() ? 0 : 1; });
    type("go");
    scheduler.advance(0.2);
    type("gol");
    scheduler.advance(0.2);
    drainEvents();
    EXPECT_EQ(queries, 0) << "neither has waited long enough";
    EXPECT_TRUE(model().isSearching());
    EXPECT_EQ(scheduler.activeSleeps(), 1) << "the first one was cancelled";
    scheduler.advance(0.1);
    EXPECT_TRUE(waitUntil([&] { return queries > 0; }));
    scheduler.advance(5);
    drainEvents();
    EXPECT_EQ(queries, 1);
    EXPECT_THAT(names(), ElementsAre("Golo TV"));
    EXPECT_THAT(scheduler.requestedSleeps(), ElementsAre(0.3, 0.3));
}

TEST_F(SearchTest, ASearchThatWasOvertakenShowsNothing) {
    fillWithLighthouses();
    open();
    type("farol");
    scheduler.advance(0.3);
    type("golo");
    finish();
    EXPECT_THAT(names(), ElementsAre("Golo TV"));
    drainEvents();
    EXPECT_THAT(names(), ElementsAre("Golo TV"));
}

TEST_F(SearchTest, SubmittingTheFieldSearchesAgain) {
    fillWithLighthouses();
    open();
    searchFor("farol");
    model().pickChip(1);
    model().debouncedSearch();
    EXPECT_EQ(model().content(), Content::Searching);
    finish();
    EXPECT_EQ(model().results().size(), 3U);
    EXPECT_EQ(model().typeFilter(), "all");
}

TEST_F(SearchTest, FindsByTheGroupTitleToo) {
    fillWithLighthouses();
    open();
    searchFor("desporto");
    EXPECT_THAT(shown(), ElementsAre(Pair("Desporto", ElementsAre("Golo TV"))));
}

TEST_F(SearchTest, AnEpisodeFoundByItsSeriesStandsUnderItsGroup) {
    Channel episode = title(5, "series", "Drama | HD", "Ep. 3");
    episode.seriesName = "Os Faroleiros";
    fill({episode});
    open();
    searchFor("faroleiros");
    EXPECT_THAT(shown(), ElementsAre(Pair("Drama | HD", ElementsAre("Ep. 3"))));
}

TEST_F(SearchTest, UpperCaseFindsLowerCase) {
    fill({title(1, "movie", "x", "coração de maré"), title(2, "movie", "x", "Ωμέγα")});
    open();
    searchFor("CORAÇÃO");
    EXPECT_THAT(names(), ElementsAre("coração de maré"));
    searchFor("ΩΜΈ");
    EXPECT_THAT(names(), ElementsAre("Ωμέγα"));
}

TEST_F(SearchTest, NothingIsTrimmedAndNoAccentIsLeftOut) {
    fill({title(1, "movie", "x", "A Maré")});
    open();
    searchFor("mare");
    EXPECT_EQ(model().content(), Content::NoResults);
    searchFor("maré ");
    EXPECT_EQ(model().content(), Content::NoResults);
    searchFor("a m");
    EXPECT_THAT(names(), ElementsAre("A Maré"));
}

TEST_F(SearchTest, GroupsStandInTheOrderOfTheirFirstRowsAndKeepTheirRowsInOrder) {
    fill({title(5, "movie", "Aventura", "Mar 5"), title(1, "movie", "Terror", "Mar 1"),
          title(2, "live", "Aventura", "Mar 2"), title(4, "movie", "Terror", "Mar 4"),
          title(3, "movie", "", "Mar 3")});
    open();
    searchFor("mar ");
    EXPECT_THAT(shown(),
                ElementsAre(Pair("Terror", ElementsAre("Mar 1", "Mar 4")),
                            Pair("Aventura", ElementsAre("Mar 2", "Mar 5")), Pair("", ElementsAre("Mar 3"))));
}

TEST_F(SearchTest, FindingOnlyFilmsShowsTheChipsOfAllAndOfFilms) {
    fill({title(1, "movie", "x", "Mar 1"), title(2, "movie", "x", "Mar 2"), title(3, "live", "x", "Rio")});
    open();
    EXPECT_THAT(chips(), IsEmpty());
    searchFor("mar");
    EXPECT_THAT(chips(), ElementsAre(Pair("Todos", "2"), Pair("Filmes", "2")));
    EXPECT_EQ(model().chips()->selectedRow(), 0);
}

TEST_F(SearchTest, ChipsNarrowWhatWasFoundWithoutAQuery) {
    fillWithLighthouses();
    open();
    searchFor("farol");
    EXPECT_THAT(chips(),
                ElementsAre(Pair("Todos", "3"), Pair("TV", "1"), Pair("Filmes", "1"), Pair("Series", "1")));
    EXPECT_EQ(model().results().typeCounts(), (TypeCounts{.live = 1, .movie = 1, .series = 1}));
    const std::size_t sleeps = scheduler.requestedSleeps().size();
    model().pickChip(2);
    EXPECT_EQ(model().typeFilter(), "movie");
    EXPECT_EQ(model().chips()->selectedRow(), 2);
    EXPECT_THAT(names(), ElementsAre("O Farol"));
    EXPECT_EQ(chips().size(), 4U) << "the chips count the results, not what is shown of them";
    EXPECT_EQ(model().countText(), QStringLiteral("3 resultados"));
    model().pickChip(0);
    EXPECT_EQ(names().size(), 3U);
    EXPECT_EQ(scheduler.requestedSleeps().size(), sleeps);
}

TEST_F(SearchTest, ASearchAfterAChipComesBackWithAllOfThem) {
    fillWithLighthouses();
    open();
    searchFor("farol");
    model().pickChip(1);
    searchFor("faro");
    EXPECT_EQ(model().typeFilter(), "all");
    EXPECT_EQ(model().chips()->selectedRow(), 0);
    EXPECT_EQ(names().size(), 3U);
}

TEST_F(SearchTest, ASearchOfOneTypeFindsThatTypeAlone) {
    fillWithLighthouses();
    open("live");
    EXPECT_EQ(model().title(), QStringLiteral("Pesquisar canais"));
    searchFor("farol");
    EXPECT_THAT(names(), ElementsAre("Farol TV"));
    EXPECT_THAT(chips(), IsEmpty());
    open("movie");
    EXPECT_EQ(model().title(), QStringLiteral("Pesquisar filmes"));
    searchFor("farol");
    EXPECT_THAT(names(), ElementsAre("O Farol"));
    open("series");
    EXPECT_EQ(model().typeLabel(), QStringLiteral("series"));
    searchFor("golo");
    EXPECT_EQ(model().content(), Content::NoResults);
}

TEST_F(SearchTest, ShowsAHintThenAWaitThenWhatWasFound) {
    fillWithLighthouses();
    open();
    EXPECT_EQ(model().content(), Content::Hint);
    EXPECT_EQ(model().title(), QStringLiteral("Pesquisar"));
    type("farol");
    EXPECT_EQ(model().content(), Content::Searching);
    finish();
    EXPECT_EQ(model().content(), Content::Results);
    EXPECT_EQ(model().countText(), QStringLiteral("3 resultados"));
    type("farola");
    EXPECT_EQ(model().content(), Content::Searching) << "the results of before are still there";
    finish();
    EXPECT_EQ(model().content(), Content::NoResults);
    type("");
    EXPECT_EQ(model().content(), Content::Hint);
}

TEST_F(SearchTest, ATextThatBecameTooShortLeavesTheWaitAsItStands) {
    open();
    type("fa");
    type("f");
    scheduler.advance(5);
    drainEvents();
    EXPECT_TRUE(model().isSearching());
    EXPECT_EQ(model().content(), Content::Searching);
    searchFor("fa");
    EXPECT_EQ(model().content(), Content::NoResults);
}

TEST_F(SearchTest, AChannelPlaysAndAnythingElseAsksForItsPage) {
    fillWithLighthouses();
    open();
    std::vector<std::string> wanted;
    QObject::connect(&model(), &SearchViewModel::detailWanted, &model(),
                     [&](const Channel& channel) { wanted.push_back(channel.id); });
    searchFor("farol");
    model().open(1);
    model().open(2);
    EXPECT_THAT(wanted, ElementsAre("main_2", "main_3"));
    EXPECT_FALSE(appState.isPlaying());
    model().open(0);
    ASSERT_TRUE(appState.currentChannel());
    EXPECT_EQ(appState.currentChannel()->id, "main_1");
    model().open(3);
    model().open(-1);
    EXPECT_EQ(wanted.size(), 2U);
}

TEST_F(SearchTest, FollowsTheCatalogueAndKeepsTheChip) {
    fillWithLighthouses();
    open();
    searchFor("farol");
    model().pickChip(2);
    fill({title(9, "movie", "Drama", "O Farol do Fim do Mundo")});
    EXPECT_TRUE(waitUntil([this] { return model().results().size() == 4; }));
    EXPECT_EQ(model().typeFilter(), "movie");
    EXPECT_THAT(names(), ElementsAre("O Farol", "O Farol do Fim do Mundo"));
    removeAll();
    fill({title(1, "live", "Notícias", "Farol TV")});
    EXPECT_TRUE(waitUntil([this] { return model().results().size() == 1; }));
    EXPECT_EQ(model().typeFilter(), "all") << "that chip has gone";
    EXPECT_THAT(names(), ElementsAre("Farol TV"));
    EXPECT_EQ(model().content(), Content::Results);
}

TEST_F(SearchTest, AChangeWhileTheUserTypesEndsInTheNewCatalogue) {
    open();
    type("farol");
    fillWithLighthouses();
    EXPECT_TRUE(waitUntil([this] { return !model().isSearching(); }));
    EXPECT_EQ(names().size(), 3U);
    scheduler.advance(1);
    drainEvents();
    EXPECT_EQ(scheduler.activeSleeps(), 0);
}

TEST_F(SearchTest, ACatalogueThatCannotBeReadLeavesTheResultsOfBefore) {
    fillWithLighthouses();
    open();
    searchFor("farol");
    model().pickChip(1);
    const std::filesystem::path link = folder.path() / "store" / "catalogue.db";
    std::filesystem::rename(link, folder.path() / "kept.db");
    store->announce({EntityKind::Channel});
    drainEvents();
    searchFor("golo");
    EXPECT_EQ(model().results().size(), 3U);
    EXPECT_EQ(model().typeFilter(), "all");
    EXPECT_EQ(model().content(), Content::Results);
    std::filesystem::rename(folder.path() / "kept.db", link);
    model().debouncedSearch();
    finish();
    EXPECT_EQ(model().results().size(), 1U);
}

TEST_F(SearchTest, ThePageMayGoWhileASearchIsPending) {
    fillWithLighthouses();
    open();
    type("farol");
    closePage();
    scheduler.advance(1);
    drainEvents();
    EXPECT_EQ(scheduler.activeSleeps(), 0);
    open();
    type("farol");
    scheduler.advance(0.3);
    closePage();
    // What was under way comes to its end.
    resultOf(search.index());
    QThreadPool::globalInstance()->waitForDone();
    drainEvents();
}

TEST_F(SearchTest, RowsShowWhatAListNeeds) {
    Channel film = title(1, "movie", "x", "Mar \n\xe2\x80\xae" + std::string(1000, 'a'));
    film.year = "1999";
    film.logo = "http://tv.example/poster.png";
    fill({film, title(2, "live", "x", "Mar TV"), title(3, "series", "x", "Mar Alto")});
    open();
    searchFor("mar");
    const QAbstractItemModel& rows = *model().rows();
    const auto cell = [&rows](int row, int role) { return rows.index(row, 0).data(role); };
    EXPECT_EQ(cell(0, SearchResultListModel::NameRole).toString().left(6), QStringLiteral("Mar  a"));
    EXPECT_LE(cell(0, SearchResultListModel::NameRole).toString().size(), 300);
    EXPECT_EQ(cell(0, SearchResultListModel::DetailRole).toString(), QStringLiteral("1999"));
    EXPECT_FALSE(cell(0, SearchResultListModel::PictureRole).toUrl().isEmpty());
    EXPECT_FALSE(cell(0, SearchResultListModel::IsLiveRole).toBool());
    EXPECT_TRUE(cell(1, SearchResultListModel::IsLiveRole).toBool());
    EXPECT_TRUE(cell(1, SearchResultListModel::PictureRole).toUrl().isEmpty());
    EXPECT_EQ(cell(2, SearchResultListModel::SymbolRole).toString(),
              QStringLiteral("play.rectangle.on.rectangle.fill"));
}

} // namespace
} // namespace ondavia::testing
