// The search in the application's window; with ONDAVIA_SHOTS, a picture of each state.
#include "screens/ScreensWindow.h"
#include "screens/search/SearchViewModel.h"

namespace ondavia::testing {
namespace {

using Content = SearchViewModel::Content;

class SearchWindowTest : public ScreensTest {
protected:
    /// Of the page that is open; null for none.
    [[nodiscard]] SearchViewModel* model() const { return models->findChild<SearchViewModel*>(); }
    void type(const std::string& text) {
        for (const char letter : text) {
            QTest::keyClick(window, letter);
        }
    }
    /// Lets what was typed be searched for.
    void finish() {
        scheduler.advance(SearchViewModel::debounce);
        EXPECT_TRUE(waitUntil([this] { return !model()->isSearching(); }));
        settle();
    }
    void openByKey() {
        QTest::keyClick(window, '/');
        settle();
        ASSERT_NE(model(), nullptr);
    }
    [[nodiscard]] QString typed() { return named("searchText")->property("text").toString(); }
    void expectFocusInSight() {
        const QQuickItem* row = window->activeFocusItem();
        const QQuickItem* list = named("searchResults");
        const QRectF place = row->mapRectToItem(list, QRectF(0, 0, row->width(), row->height()));
        EXPECT_TRUE(QRectF(0, 0, list->width(), list->height()).contains(place)) << place.bottom();
    }
    [[nodiscard]] int currentRow() { return named("searchResults")->property("currentIndex").toInt(); }
};

TEST_F(SearchWindowTest, IsAKeyAwayFromEveryTabAndLeadsBack) {
    signInWithCatalogue();
    show();
    models->content()->start();
    for (const AppTab tab : allAppTabs) {
        appState.setSelectedTab(tab);
        settle();
        openByKey();
        EXPECT_EQ(focusName(), "Pesquisar") << "the field, ready to be typed into";
        EXPECT_EQ(typed(), QString()) << "the key opens, it is not typed";
        press(Qt::Key_Escape);
        settle();
        EXPECT_TRUE(waitUntil([this] { return model() == nullptr; })) << "what was typed goes with the page";
        QTest::keyClick(window, Qt::Key_F, Qt::ControlModifier);
        settle();
        EXPECT_EQ(focusName(), "Pesquisar");
        press(Qt::Key_Escape);
        settle();
        EXPECT_EQ(appState.selectedTab(), tab) << "one step back, not two";
    }
}

TEST_F(SearchWindowTest, ASlashIsTypedIntoTheFieldAndLeadsToItFromElsewhere) {
    signInWithCatalogue();
    show();
    openByKey();
    type("desporto");
    finish();
    type("/");
    EXPECT_EQ(typed(), QStringLiteral("desporto/"));
    press(Qt::Key_Backspace);
    EXPECT_EQ(typed(), QStringLiteral("desporto")) << "the field keeps its Backspace";
    finish();
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "Todos  23");
    QTest::keyClick(window, '/');
    EXPECT_EQ(focusName(), "Pesquisar");
    type("golo");
    EXPECT_EQ(typed(), QStringLiteral("golo")) << "typed over what stood there";
    EXPECT_EQ(models->findChildren<SearchViewModel*>().size(), 1);
    finish();
}

TEST_F(SearchWindowTest, KeyboardAloneFindsPlaysAndComesBackToTheSameResult) {
    signInWithCatalogue();
    show();
    openByKey();
    type("desporto");
    EXPECT_NE(find(QStringLiteral("Em curso")), nullptr);
    finish();
    EXPECT_NE(find(QStringLiteral("23 resultados")), nullptr);
    EXPECT_NE(find(QStringLiteral("Desporto")), nullptr) << "the group's title";
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "Todos  23");
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "Desporto HD 1");
    press(Qt::Key_PageDown);
    press(Qt::Key_Down);
    settle();
    const int row = currentRow();
    EXPECT_GT(row, 1);
    const std::string name = focusName();
    press(Qt::Key_Return);
    settle();
    ASSERT_TRUE(appState.isPlaying());
    EXPECT_EQ(appState.currentChannel()->name, name);
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(focusName(), name);
    EXPECT_EQ(currentRow(), row);
    EXPECT_EQ(model()->content(), Content::Results);
}

TEST_F(SearchWindowTest, ATapNarrowsByAChipAndOpens) {
    signInWithCatalogue();
    show(412, 892);
    openByKey();
    type("ilha");
    finish();
    ASSERT_EQ(model()->chips()->rowCount(), 3);
    const std::string films = "Filmes  " + std::to_string(model()->results().typeCounts().movie);
    EXPECT_NE(find(QStringLiteral("Regionais e Ilhas Atlânticas HD 1")), nullptr);
    click(films.c_str());
    EXPECT_EQ(model()->typeFilter(), "movie");
    EXPECT_EQ(find(QStringLiteral("Regionais e Ilhas Atlânticas HD 1")), nullptr);
    EXPECT_NE(find(QStringLiteral("Estreias")), nullptr) << "the title of another group in the same place";
    const char* film = "O Faroleiro da Ilha de São Jorge e Outras Histórias de Mar";
    click(film);
    EXPECT_NE(named("movieDetail"), nullptr);
    EXPECT_FALSE(appState.isPlaying());
    click("Voltar");
    EXPECT_EQ(focusName(), film) << "the result that was left";
    EXPECT_EQ(model()->typeFilter(), "movie");
    EXPECT_EQ(typed(), QStringLiteral("ilha"));
}

TEST_F(SearchWindowTest, ABrowserOpensTheSearchOfItsTypeAndGetsTheFocusBack) {
    signInWithCatalogue();
    show();
    models->content()->start();
    for (const auto& [tab, name] :
         {std::pair(AppTab::live, "Pesquisar canais"), std::pair(AppTab::movies, "Pesquisar filmes")}) {
        appState.setSelectedTab(tab);
        settle();
        click("Pesquisar");
        ASSERT_NE(model(), nullptr);
        EXPECT_EQ(focusName(), name);
        type("desporto");
        finish();
        EXPECT_EQ(model()->results().isEmpty(), tab == AppTab::movies);
        EXPECT_EQ(model()->chips()->rowCount(), 0);
        click("Fechar");
        EXPECT_EQ(focusName(), "Pesquisar") << "the button that opened it";
        EXPECT_TRUE(waitUntil([this] { return model() == nullptr; }));
    }
}

TEST_F(SearchWindowTest, TheFocusStaysWithTheFieldWhenTheResultsGo) {
    signInWithCatalogue();
    show();
    openByKey();
    type("desporto");
    finish();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    ASSERT_EQ(focusName(), "Desporto HD 1");
    store->mainContext().removeAll<Channel>();
    store->mainContext().save();
    EXPECT_TRUE(waitUntil([this] { return model()->content() == Content::NoResults; }));
    settle();
    EXPECT_EQ(focusName(), "Pesquisar");
}

TEST_F(SearchWindowTest, NoKeyOpensItBelowASheetOrAFilm) {
    signInWithCatalogue();
    show();
    appState.playChannel(title(1, "movie", "Drama", "Sal"));
    settle();
    QTest::keyClick(window, '/');
    QTest::keyClick(window, Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(model(), nullptr);
}

TEST_F(SearchWindowTest, ManyResultsMakeOnlyTheRowsInSight) {
    std::vector<Channel> rows;
    for (int number = 1; number <= 20'000; ++number) {
        rows.push_back(title(number, "movie", "Grupo " + std::to_string(number % 500),
                             "Filme " + std::to_string(number)));
    }
    fill(rows);
    show();
    openByKey();
    type("filme");
    finish();
    ASSERT_EQ(model()->rows()->rowCount(), 20'000);
    int shown = 0;
    collect(*window->contentItem(),
            [&](QQuickItem& item) { shown += accessibleName(item).startsWith(QStringLiteral("Filme ")); });
    EXPECT_GT(shown, 2);
    EXPECT_LT(shown, 60);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_End);
    settle();
    EXPECT_EQ(currentRow(), 19'999);
    expectFocusInSight();
    EXPECT_TRUE(QString::fromStdString(focusName()).startsWith(QStringLiteral("Filme "))) << focusName();
}

class SearchLookTest : public SearchWindowTest, public ::testing::WithParamInterface<QSize> {};

TEST_P(SearchLookTest, DrawsEveryStateWithoutAWarning) {
    signInWithCatalogue();
    Channel series = title(9001, "series", "", "A Ilha das Marés");
    series.year = "2019";
    fill({series});
    show(GetParam().width(), GetParam().height());
    models->content()->start();
    appState.setSelectedTab(AppTab::live);
    shoot("search-live-header");
    openByKey();
    shoot("search-hint");
    type("ilha");
    shoot("search-searching");
    finish();
    shoot("search-results");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_End);
    settle();
    expectFocusInSight();
    shoot("search-results-end");
    model()->pickChip(2);
    shoot("search-chip");
    model()->setSearchText(QStringLiteral("nada disto"));
    finish();
    shoot("search-nothing");
    press(Qt::Key_Escape);
    settle();
    models->live()->searchWanted();
    settle();
    ASSERT_TRUE(waitUntil([this] { return models->findChildren<SearchViewModel*>().size() == 1; }));
    model()->setSearchText(QStringLiteral("notícias"));
    finish();
    shoot("search-live");
    EXPECT_THAT(messages, ::testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sizes, SearchLookTest,
                         ::testing::Values(QSize(1280, 800), QSize(412, 892), QSize(360, 640),
                                           QSize(1000, 480)));

} // namespace
} // namespace ondavia::testing
