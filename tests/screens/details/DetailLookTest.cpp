// Pictures of both pages for the eye, and the absence of warnings for the machine.
#include "DetailWindow.h"

namespace ondavia::testing {
namespace {

class DetailLookTest : public DetailWindow, public ::testing::WithParamInterface<QSize> {
protected:
    void shootPage(const Channel& title, const std::string& name) {
        models->details()->open(title);
        settle();
        ASSERT_TRUE(waitForTransfers(std::chrono::minutes(1)));
        settle();
        shoot(name);
    }
};

TEST_P(DetailLookTest, DrawsWithoutAWarning) {
    open(GetParam().width(), GetParam().height());
    openTab(AppTab::movies);
    shootPage(knownFilm(), "film-known");
    shootPage(title(902, "movie", "Estreias", "Zero"), "film-unknown");
    for (const std::size_t length : {std::size_t{150}, std::size_t{151}}) {
        Channel film = knownFilm();
        film.plot = plotOf(length);
        shootPage(film, "film-plot-" + std::to_string(length));
    }
    Channel withBackdrop = knownFilm();
    withBackdrop.backdrop = posters.backdrop(8);
    shootPage(withBackdrop, "film-backdrop");
    openTab(AppTab::series);
    shoot("series-grid");
    shootPage(knownSeries(), "series-known");
    walkTo("Ler mais");
    press(Qt::Key_Return);
    shoot("series-plot");
    walkTo("T1");
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    settle();
    press(Qt::Key_Down);
    press(Qt::Key_PageDown);
    shoot("series-episodes");
    Channel strange = series(953, "\u202Eمسلسل البحر والجبل\u0007 \u0001");
    strange.plot = "\u05D0\u05D1\u05D2 \u05D3\u05D4 \u05D5\u05D6 0123";
    strange.genre = longName;
    shootPage(strange, "series-right-to-left");
    provider.answer(R"({"episodes": {}})");
    shootPage(series(952, "Sem Nada"), "series-unknown");
}

INSTANTIATE_TEST_SUITE_P(Sizes, DetailLookTest,
                         ::testing::Values(QSize(1280, 800), QSize(412, 892), QSize(360, 640),
                                           QSize(1000, 480), QSize(3840, 2160)));

} // namespace
} // namespace ondavia::testing
