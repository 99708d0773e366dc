// The pages of a film and of a series in the window, under real keys and a real pointer.
#include "DetailWindow.h"
#include "screens/player/PlayerPresentation.h"

#include <QDir>
#include <QTemporaryFile>

#include <future>

namespace ondavia::testing {
namespace {

class DetailWindowTest : public DetailWindow, public ::testing::WithParamInterface<QSize> {
protected:
    void openFilm() {
        open(GetParam().width(), GetParam().height());
        openTab(AppTab::movies);
        click(longName);
        ASSERT_NE(named("movieDetail"), nullptr);
    }
    void openSeries() {
        open(GetParam().width(), GetParam().height());
        openTab(AppTab::series);
        click(longName);
        ASSERT_NE(named("seriesDetail"), nullptr);
        ASSERT_TRUE(waitUntil([this] { return find(QStringLiteral("T2")) != nullptr; }));
        settle();
    }
    [[nodiscard]] QRectF windowRect() const { return {0, 0, 1.0 * window->width(), 1.0 * window->height()}; }
    [[nodiscard]] int rowsMade() {
        int rows = 0;
        collect(*window->contentItem(), [&](QQuickItem& item) {
            rows += accessibleName(item).contains(QStringLiteral(", Capítulo "));
        });
        return rows;
    }
    [[nodiscard]] double scrolled() { return named("detailScroll")->property("contentY").toDouble(); }
    void expectFocusInSight() {
        settle();
        const QQuickItem* item = window->activeFocusItem();
        const QRectF place = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        EXPECT_TRUE(windowRect().contains(place)) << focusName() << " at " << place.y();
    }
};

TEST_P(DetailWindowTest, ATapOnAFilmOpensItsPageInsteadOfPlaying) {
    openFilm();
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_EQ(focusName(), "Reproduzir");
    EXPECT_NE(find(QStringLiteral("★ 7.8")), nullptr);
    EXPECT_NE(find(QStringLiteral("2h 05m")), nullptr);
    EXPECT_NE(find(QStringLiteral("Realizador: Margarida Cardoso")), nullptr);
    EXPECT_TRUE(windowRect().contains(place("detailPlay"))) << "the main button is seen at once";
    EXPECT_TRUE(windowRect().contains(place("detailPoster")));
}

TEST_P(DetailWindowTest, AFilmIsPlayedAndLeftForTheCardThatOpenedIt) {
    openFilm();
    press(Qt::Key_Return);
    ASSERT_TRUE(appState.isPlaying());
    EXPECT_EQ(appState.currentChannel()->id, "main_901");
    settle();
    press(Qt::Key_Escape);
    settle();
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_EQ(focusName(), "Reproduzir");
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(named("movieDetail"), nullptr);
    EXPECT_EQ(focusName(), longName);
    EXPECT_EQ(appState.selectedTab(), AppTab::movies);
}

TEST_P(DetailWindowTest, TheKeyThatOpensThePageDoesNotPlayWhenItIsHeld) {
    openFilm();
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    QCoreApplication::sendEvent(window, &held);
    drainEvents();
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_EQ(focusName(), "Reproduzir");
}

TEST_P(DetailWindowTest, TheLabelFollowsWhatWasWatched) {
    openFilm();
    press(Qt::Key_Return);
    settle();
    WatchHistory row("main", "main_901", 600, 6000, "movie");
    store->mainContext().insert(row);
    store->mainContext().save();
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] { return focusName() == "Continuar a ver"; })) << focusName();
}

TEST_P(DetailWindowTest, TheHeartMarksTheFilm) {
    openFilm();
    click("Favorito");
    EXPECT_EQ(store->mainContext().count<Favorite>(field(&Favorite::channelId) == "main_901"), 1);
    EXPECT_EQ(named("detailFavorite")->property("symbol").toString(), QStringLiteral("heart.fill"));
    click("Favorito");
    EXPECT_EQ(store->mainContext().count<Favorite>(), 0);
}

TEST_P(DetailWindowTest, ALongPlotIsReadWholeAfterATap) {
    openFilm();
    const double before = place("plotToggle").y();
    click("Ler mais");
    EXPECT_GT(place("plotToggle").y() + scrolled(), before + 60);
    EXPECT_NE(find(QStringLiteral("Menos")), nullptr);
    click("Menos");
    EXPECT_NEAR(place("plotToggle").y() + scrolled(), before, 1);
}

TEST_P(DetailWindowTest, ArrowsReachTheEndOfWhatIsToRead) {
    openFilm();
    press(Qt::Key_Down);
    for (int step = 0; step < 30; ++step) {
        press(Qt::Key_Down);
    }
    QQuickItem* scroll = named("detailScroll");
    EXPECT_GE(scrolled() + 1, scroll->property("contentHeight").toDouble() - scroll->height());
}

TEST_P(DetailWindowTest, TheButtonAtTheTopGoesBack) {
    openFilm();
    click("Voltar");
    EXPECT_EQ(named("movieDetail"), nullptr);
}

TEST_P(DetailWindowTest, AFilmOfWhichNothingIsKnownHasAPageToo) {
    open(GetParam().width(), GetParam().height());
    models->details()->open(title(902, "movie", "Estreias", ""));
    // The first page has no poster, no facts, not even a name.
    settle();
    ASSERT_NE(named("movieDetail"), nullptr);
    EXPECT_TRUE(windowRect().contains(place("detailPlay")));
    EXPECT_EQ(named("plotToggle"), nullptr);
    EXPECT_EQ(focusName(), "Reproduzir");
}

TEST_P(DetailWindowTest, ANameOfTenThousandCharactersLeavesRoomForTheButton) {
    open(GetParam().width(), GetParam().height());
    Channel film = title(903, "movie", "Estreias", std::string(10'000, 'W'));
    film.genre = std::string(10'000, 'W');
    film.plot = std::string(10'000, 'W');
    film.cast = film.plot;
    models->details()->open(film);
    settle();
    EXPECT_TRUE(windowRect().contains(place("detailPlay"))) << place("detailPlay").y();
    collect(*named("movieDetail"), [&](QQuickItem& item) {
        EXPECT_LE(item.mapToScene(QPointF(item.width(), 0)).x(), window->width() + 1)
            << item.metaObject()->className() << accessibleName(item).left(40).toStdString();
    });
}

TEST_P(DetailWindowTest, WordsOfAnotherDirectionOrOfNoneTurnNothingElse) {
    open(GetParam().width(), GetParam().height());
    Channel film = title(904, "movie", "Estreias", "\u202Eمسلسل\u0007البحر");
    film.plot = "\u05D0\u05D1\u05D2 \u05D3\u05D4";
    film.genre = "\u0001\u0002";
    film.director = "\u0007";
    models->details()->open(film);
    settle();
    EXPECT_NE(find(QStringLiteral("مسلسل البحر")), nullptr);
    EXPECT_EQ(find(QStringLiteral("Realizador: ")), nullptr) << "control characters say nothing";
    EXPECT_LT(place("detailPoster").x(), place("detailFavorite").x());
    EXPECT_TRUE(windowRect().contains(place("detailPlay")));
    models->details()->open(title(905, "movie", "Estreias", "\u0001\u0002\u0007"));
    settle();
    EXPECT_EQ(focusName(), "Reproduzir");
}

TEST_P(DetailWindowTest, APictureThatNeverComesOrIsNoneHoldsUpNothing) {
    HttpServer pictures;
    std::promise<void> end;
    const std::shared_future<void> ended = end.get_future().share();
    pictures.server.Get("/never", [ended](const httplib::Request&, httplib::Response&) { ended.wait(); });
    pictures.server.Get("/text", [](const httplib::Request&, httplib::Response& response) {
        response.set_content("<html>", "image/png");
    });
    pictures.start();
    QTemporaryFile local(QDir::tempPath() + QStringLiteral("/XXXXXX.png"));
    ASSERT_TRUE(local.open());
    QImage red(60, 90, QImage::Format_RGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(&local, "PNG") && local.flush());
    open(GetParam().width(), GetParam().height());
    for (const std::string& address :
         {pictures.url("/missing"), pictures.url("/text"), "file://" + local.fileName().toStdString(),
          std::string("http://127.0.0.1:1/none.png"), pictures.url("/never")}) {
        Channel film = title(906, "movie", "Estreias", "Sem Imagem");
        film.logo = address;
        film.backdrop = address;
        models->details()->open(film);
        settle();
        EXPECT_EQ(focusName(), "Reproduzir") << address;
        const QRectF poster = place("detailPoster");
        const QColor seen = window->grabWindow().pixelColor(poster.topLeft().toPoint() + QPoint(30, 30));
        EXPECT_LT(seen.lightness(), 60) << address << ": the placeholder, not the picture of a local file";
    }
    press(Qt::Key_Return);
    EXPECT_TRUE(appState.isPlaying()) << "while the picture is waited for";
    end.set_value();
    settle();
}

TEST_P(DetailWindowTest, ASeriesShowsTheEpisodesOfASeason) {
    openSeries();
    EXPECT_NE(find(QStringLiteral("Ep. 1, Capítulo 1.1, 00:42:10")), nullptr);
    EXPECT_EQ(find(QStringLiteral("Ep. 1, Capítulo 2.1, 00:42:10")), nullptr);
    QQuickItem* chip = find(QStringLiteral("T2"));
    named("detailScroll")->setProperty("contentY", 200);
    settle();
    ASSERT_TRUE(windowRect().contains(chip->mapToScene(QPointF(1, 1))));
    click("T2");
    EXPECT_NE(find(QStringLiteral("Ep. 1, Capítulo 2.1, 00:42:10")), nullptr);
    EXPECT_GT(rowsMade(), 1);
    EXPECT_LT(rowsMade(), 60) << "of three hundred";
}

TEST_P(DetailWindowTest, KeysLeadToTheLastEpisodeAndPlayIt) {
    openSeries();
    walkTo("T1");
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    settle();
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "Ep. 1, Capítulo 2.1, 00:42:10");
    expectFocusInSight();
    press(Qt::Key_End);
    EXPECT_EQ(focusName(), "Ep. 300, Capítulo 2.300, 00:42:10");
    expectFocusInSight();
    EXPECT_LT(rowsMade(), 60);
    press(Qt::Key_Up);
    expectFocusInSight();
    press(Qt::Key_End);
    press(Qt::Key_Return);
    ASSERT_TRUE(appState.isPlaying());
    EXPECT_EQ(appState.currentChannel()->id, "main_series_951_ep_2300");
    EXPECT_EQ(appState.currentEpisodeIndex(), 301);
}

TEST_P(DetailWindowTest, TheMainButtonOfASeriesPlaysItsFirstEpisode) {
    openSeries();
    click("Reproduzir");
    ASSERT_TRUE(appState.isPlaying());
    EXPECT_EQ(appState.currentChannel()->id, "main_series_951_ep_1001");
    settle();
    press(Qt::Key_Escape);
    settle();
    EXPECT_NE(named("seriesDetail"), nullptr);
    EXPECT_TRUE(waitUntil([this] { return provider.count("get_series_info 951") == 2; }));
    EXPECT_TRUE(waitForTransfers(std::chrono::minutes(1)));
}

TEST_P(DetailWindowTest, WhileTheProviderIsSilentThePageSaysSo) {
    open(GetParam().width(), GetParam().height());
    provider.hold();
    openTab(AppTab::series);
    click(longName);
    EXPECT_NE(find(QStringLiteral("A carregar episodios...")), nullptr);
    shoot("series-loading");
    provider.answer("no", 500);
    provider.letGo();
    EXPECT_TRUE(waitUntil([this] { return find(QStringLiteral("A carregar episodios...")) == nullptr; }));
}

TEST_P(DetailWindowTest, AnotherAccountClosesThePage) {
    openFilm();
    appState.saveCredentials("http://127.0.0.1:1", "rui", "word");
    EXPECT_TRUE(waitUntil([this] { return named("movieDetail") == nullptr; }));
}

INSTANTIATE_TEST_SUITE_P(Sizes, DetailWindowTest, ::testing::Values(QSize(1280, 800), QSize(412, 892)));

} // namespace
} // namespace ondavia::testing
