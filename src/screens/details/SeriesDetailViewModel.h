#pragma once

#include "entities/WatchHistory.h"
#include "protocol/wire/SeriesRecords.h"
#include "screens/details/DetailViewModel.h"
#include "screens/details/EpisodeListModel.h"
#include "screens/details/SeasonListModel.h"

#include <qcoro/qcorotask.h>
#include <qqmlregistration.h>

#include <cstdint>
#include <exception>
#include <optional>
#include <vector>

namespace ondavia {

/// The page of a series: asks the provider for seasons and episodes at each visit, and plays one of them with
/// its place among all, so that the player can go on to the next. Main thread.
// With its namespace, by which QML knows the base.
class SeriesDetailViewModel final : public ondavia::DetailViewModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    /// The provider has not answered yet for the first time.
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(ondavia::SeasonListModel* seasons READ seasonList CONSTANT)
    /// Of the selected season.
    Q_PROPERTY(ondavia::EpisodeListModel* episodes READ episodeList CONSTANT)

    /// The provider's answer.
    ONDAVIA_OBSERVABLE(std::optional<XtreamSeriesInfo>, seriesInfo, setSeriesInfo);
    /// The number of the season whose episodes are listed.
    ONDAVIA_OBSERVABLE(std::int64_t, selectedSeason, setSelectedSeason, 1);
    ONDAVIA_OBSERVABLE(bool, isLoading, setIsLoading, true);
    /// The episode that the main button goes on with.
    ONDAVIA_OBSERVABLE(std::optional<WatchHistory>, lastWatchedEpisode, setLastWatchedEpisode);

public:
    SeriesDetailViewModel(const DetailServices& services, Channel series);

    void appear() override;
    void play() override;

    [[nodiscard]] const Channel& series() const { return channel(); }
    [[nodiscard]] std::vector<DetailBadge> badges() const override;
    [[nodiscard]] bool continues() const override { return lastWatchedEpisode().has_value(); }
    /// With nothing to go on with, there must be an episode.
    [[nodiscard]] bool canPlay() const override;
    [[nodiscard]] SeasonListModel* seasonList() { return &m_seasons; }
    [[nodiscard]] EpisodeListModel* episodeList() { return &m_episodes; }
    [[nodiscard]] std::vector<XtreamEpisode> currentEpisodes() const;
    /// By the numbers of their seasons; what is no number counts as 0.
    [[nodiscard]] std::vector<XtreamEpisode> allEpisodesSorted() const;

    /// A season of the list was chosen.
    Q_INVOKABLE void chooseSeason(int row);
    void playEpisodeDirectly(const XtreamEpisode& episode);
    void playEpisodeFromHistory(const WatchHistory& history);
    void playFirstEpisode();

private:
    QCoro::Task<void> load(std::uint64_t generation);
    QCoro::Task<void> loadSeriesInfo(std::uint64_t generation);
    void take(XtreamSeriesInfo info);
    void reportFailure(const std::exception& failure);
    void loadWatchHistory();
    void updateLists();
    [[nodiscard]] bool hasEpisodes() const;
    [[nodiscard]] std::optional<Channel> findChannelFromHistory(const WatchHistory& history) const;

    SeasonListModel m_seasons;
    EpisodeListModel m_episodes;
    /// Of the latest visit; what an earlier one asked for is dropped.
    std::uint64_t m_generation = 0;
};

} // namespace ondavia
