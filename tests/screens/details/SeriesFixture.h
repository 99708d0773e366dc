#pragma once

#include "DetailFixture.h"
#include "screens/details/SeriesDetailViewModel.h"

namespace ondavia::testing {

/// A series of two seasons and a special.
class SeriesFixture : public DetailFixture {
protected:
    static constexpr const char* question = "get_series_info 70";
    static constexpr const char* twoSeasons = R"({
        "seasons": [{"season_number": 2, "name": "Segunda"}, {"season_number": 1}, {"name": "Sem número"}],
        "episodes": {
            "2": [{"id": "21", "episode_num": 1, "season": 2, "title": "Regresso"}],
            "1": [{"id": "12", "episode_num": "2", "season": 1, "title": "Nevoeiro",
                   "subtitles": ["http://s.example/pt.srt", "no url", "http://s.example/en.srt"]},
                  {"id": "11", "episode_num": 1, "season": 1, "title": "Chegada"}],
            "extra": [{"id": "91", "episode_num": 7, "season": 9}]
        }})";

    SeriesFixture() {
        signIn();
        provider.answer(twoSeasons);
    }
    [[nodiscard]] static Channel series() {
        Channel series = title(70, "series", "Drama", "O Faroleiro");
        series.id = "main_series_70";
        series.seriesId = 70;
        series.url.clear();
        return series;
    }
    /// As the provider answers it now.
    void load(SeriesDetailViewModel& model) {
        visit(model, question);
        ASSERT_TRUE(waitForTransfers(std::chrono::minutes(1)));
        drainEvents();
        ASSERT_FALSE(model.isLoading());
    }
    [[nodiscard]] static std::vector<std::string> ids(const std::vector<XtreamEpisode>& episodes) {
        std::vector<std::string> found;
        for (const XtreamEpisode& episode : episodes) {
            found.push_back(episode.id.value_or("none"));
        }
        return found;
    }
    [[nodiscard]] std::string playing() const {
        return appState.currentChannel() ? appState.currentChannel()->id : std::string("nothing");
    }
    [[nodiscard]] static std::vector<std::string> column(const QAbstractItemModel& model, int role) {
        std::vector<std::string> found;
        for (int row = 0; row < model.rowCount(); ++row) {
            found.push_back(model.index(row, 0).data(role).toString().toStdString());
        }
        return found;
    }
};

} // namespace ondavia::testing
