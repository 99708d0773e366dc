#pragma once

#include "ScreensFixture.h"
#include "screens/player/PlayerPresentation.h"
#include "screens/player/PlayerViewModel.h"

#include <gmock/gmock.h>

namespace ondavia::testing {

/// The player of the open session, over an engine that writes down what it is told.
class PlayerFixture : public ScreensFixture {
protected:
    [[nodiscard]] PlayerScreenServices playerServices() {
        return {appState, store->mainContext(), playerManager,   scheduler,
                audio,    systemVolume,         screenBrightness};
    }

    [[nodiscard]] long count(const std::string& line) const { return std::ranges::count(journal, line); }
    [[nodiscard]] PlayerViewModel& player() { return dynamic_cast<PlayerViewModel&>(*presentation.player()); }
    [[nodiscard]] FakePlayer& engine() const { return *lastEngine.lock(); }

    [[nodiscard]] static Channel film(std::int64_t number = 1) {
        return title(number, "movie", "Drama", "Uma Longa Noite");
    }

    /// Opens a session and lets the engine run.
    void play(const Channel& channel) {
        appState.playChannel(channel);
        scheduler.runPending();
        playerManager.setIsBuffering(false);
        playerManager.setIsPlaying(true);
    }
    void playFilm() { play(film()); }
    /// The engine has come this far.
    void reach(double position, double duration) {
        engine().time = position;
        engine().length = duration;
        playerManager.setDuration(duration);
        playerManager.setCurrentTime(position);
    }

    void playSeries(std::int64_t index = 0) {
        appState.setServer("http://tv.example");
        appState.setUsername("ana");
        appState.setPassword("s3cr3t-word");
        std::vector<XtreamEpisode> episodes(3);
        for (std::size_t place = 0; place < episodes.size(); ++place) {
            episodes[place].id = std::to_string(701 + place);
            episodes[place]._episodeNum.value = static_cast<std::int64_t>(place + 1);
            episodes[place].title = "Capítulo " + std::to_string(place + 1);
        }
        episodes[1].subtitles = {{"http://tv.example/pt.srt", "no url", ""}};
        Channel parent = title(70, "series", "Drama", "O Faroleiro");
        parent.id = "main_series_70";
        parent.seriesId = 70;
        Channel first = title(701, "series", "Drama", "O Faroleiro - Ep. 1");
        first.id = "main_series_70_ep_701";
        first.seriesId = 70;
        first.seriesName = "O Faroleiro";
        appState.playSeriesEpisode(first, std::move(episodes), index, std::move(parent));
        scheduler.runPending();
        playerManager.setIsPlaying(true);
    }

    [[nodiscard]] std::optional<WatchHistory> row(const std::string& channelId) {
        return store->mainContext().fetchFirst<WatchHistory>(
            {.where = field(&WatchHistory::channelId) == channelId});
    }
    void keep(const std::string& channelId, double position, double duration) {
        WatchHistory kept("main", channelId, position, duration, "movie");
        kept.isComplete = kept.progress() >= 95;
        store->mainContext().insert(kept);
        store->mainContext().save();
    }

    AllOrientationsAgain orientations;
    PlayerPresentation presentation{appState, [this](const Channel& item) {
                                        return std::make_unique<PlayerViewModel>(playerServices(), item);
                                    }};
};

} // namespace ondavia::testing
