#pragma once

#include "DetailProvider.h"
#include "screens/ScreensWindow.h"

#include <string>

namespace ondavia::testing {

/// A catalogue with one film and one series of which everything is known, and one each of which nothing is.
class DetailWindow : public ScreensTest {
protected:
    static constexpr const char* longName =
        "As Crónicas Inacabadas da Família Vasconcelos e Albuquerque na Ilha de São Jorge";
    static constexpr int episodes = 300;

    void open(int width = 1280, int height = 800) {
        signInWithCatalogue();
        fill({knownFilm(), title(902, "movie", "Estreias", "Zero"), knownSeries(), series(952, "Sem Nada")});
        defaults.setStringArray("ondavia_series_cat_order", {"Drama"});
        provider.answer(seasons());
        appState.setServer(provider.url());
        appState.setPassword("s3cr3t-word");
        show(width, height);
    }
    void openTab(AppTab tab) {
        appState.setSelectedTab(tab);
        settle();
    }
    /// Down the page by keys.
    void walkTo(const std::string& name) {
        constexpr int steps = 30;
        for (int step = 0; step < steps && focusName() != name; ++step) {
            press(Qt::Key_Down);
        }
        ASSERT_EQ(focusName(), name);
        settle();
    }
    /// Words of a plot, of so many characters.
    [[nodiscard]] static std::string plotOf(std::size_t characters) {
        std::string plot;
        while (plot.size() < characters) {
            plot += "Numa noite sem lua o faroleiro ouve bater. ";
        }
        plot.resize(characters);
        plot.back() = '.';
        return plot;
    }
    [[nodiscard]] Channel knownFilm() const {
        Channel film = title(901, "movie", "Estreias", longName);
        film.num = -2;
        film.logo = posters.poster(3);
        describe(film);
        film.duration = "2h 05m";
        return film;
    }
    [[nodiscard]] Channel knownSeries() const {
        Channel known = series(951, longName);
        known.logo = posters.poster(5);
        known.backdrop = posters.backdrop(5);
        describe(known);
        known.releaseDate = "2015-09-15";
        return known;
    }
    [[nodiscard]] static Channel series(std::int64_t id, const std::string& name) {
        Channel series = title(id, "series", "Drama", name);
        series.id = "main_series_" + std::to_string(id);
        series.seriesId = id;
        return series;
    }
    [[nodiscard]] QRectF place(const char* objectName) {
        QQuickItem* item = named(objectName);
        return item != nullptr ? item->mapRectToScene(QRectF(0, 0, item->width(), item->height())) : QRectF();
    }

    DetailProvider provider;

private:
    static void describe(Channel& title) {
        title.year = "2015";
        title.rating = "7.8";
        title.genre = "Drama, Mistério";
        title.plot = plotOf(620);
        title.cast = "Beatriz Batarda, Nuno Lopes, Rita Blanco, Miguel Guilherme, Maria de Medeiros";
        title.director = "Margarida Cardoso";
    }
    static std::string episode(int season, int number) {
        return R"({"id": ")" + std::to_string(season * 1000 + number) + R"(", "episode_num": )" +
               std::to_string(number) + R"(, "season": )" + std::to_string(season) +
               R"(, "title": "Capítulo )" + std::to_string(season) + "." + std::to_string(number) +
               R"(", "info": {"duration": "00:42:10"}})";
    }
    static std::string seasons() {
        std::string second;
        for (int number = 1; number <= episodes; ++number) {
            second += (number > 1 ? "," : "") + episode(2, number);
        }
        return R"({"seasons": [{"season_number": 1}, {"season_number": 2}], "episodes": {"1": [)" +
               episode(1, 1) + "," + episode(1, 2) + R"(], "2": [)" + second + "]}}";
    }
};

} // namespace ondavia::testing
