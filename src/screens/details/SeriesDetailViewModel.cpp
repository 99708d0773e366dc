#include "screens/details/SeriesDetailViewModel.h"

#include "base/AppLogger.h"
#include "base/LocalizedText.h"
#include "personal/HistoryService.h"
#include "protocol/XtreamAPIClient.h"
#include "state/AppState.h"

#include <QPointer>

namespace ondavia {
namespace {

/// A failure as the log names it. The status of a refusal says more than its kind.
struct FailureName final {
    std::int64_t code = 0;
    const char* domain = "";
};

FailureName nameOf(const std::exception& failure) {
    if (const auto* refusal = dynamic_cast<const XtreamError*>(&failure)) {
        const int status = refusal->statusCode();
        return {status != 0 ? status : static_cast<int>(refusal->kind()), "XtreamError"};
    }
    if (const auto* error = dynamic_cast<const URLError*>(&failure)) {
        return {static_cast<int>(error->kind()), "URLError"};
    }
    const bool isReply = dynamic_cast<const DecodingError*>(&failure) != nullptr;
    return {1, isReply ? "DecodingError" : "Error"};
}

} // namespace

SeriesDetailViewModel::SeriesDetailViewModel(const DetailServices& services, Channel series)
    : DetailViewModel(services, std::move(series))
    , m_seasons(this)
    , m_episodes(services.appState, channel(),
                 [this](const XtreamEpisode& episode) { playEpisodeDirectly(episode); }) {
    using Self = SeriesDetailViewModel;
    connect(this, &Self::seriesInfoChanged, this, &Self::updateLists);
    connect(this, &Self::selectedSeasonChanged, this, &Self::updateLists);
    connect(this, &Self::lastWatchedEpisodeChanged, this, &Self::continuesChanged);
    connect(this, &Self::lastWatchedEpisodeChanged, this, &Self::canPlayChanged);
    connect(this, &Self::seriesInfoChanged, this, &Self::canPlayChanged);
}

void SeriesDetailViewModel::appear() {
    // It raises nothing, and ends by itself when the page goes.
    (void)load(++m_generation);
}

QCoro::Task<void> SeriesDetailViewModel::load(std::uint64_t generation) {
    const QPointer self(this);
    co_await loadSeriesInfo(generation);
    if (self && generation == m_generation) {
        checkFavorite();
        loadWatchHistory();
    }
}

QCoro::Task<void> SeriesDetailViewModel::loadSeriesInfo(std::uint64_t generation) {
    const QPointer self(this);
    const auto client = series().seriesId ? services().appState.makeXtreamClient() : nullptr;
    if (client == nullptr) {
        setIsLoading(false);
        co_return;
    }
    try {
        auto info = co_await client->getSeriesInfo(*series().seriesId);
        if (self && generation == m_generation) {
            take(std::move(info));
        }
    } catch (const std::exception& failure) {
        if (self && generation == m_generation) {
            reportFailure(failure);
        }
    }
    if (self && generation == m_generation) {
        setIsLoading(false);
    }
}

void SeriesDetailViewModel::take(XtreamSeriesInfo info) {
    const auto& seasons = info.seasons;
    const auto first = seasons && !seasons->empty() ? seasons->front().seasonNumber : std::nullopt;
    setSeriesInfo(std::move(info));
    setSelectedSeason(first.value_or(selectedSeason()));
}

void SeriesDetailViewModel::reportFailure(const std::exception& failure) {
    services().appState.showToast(localizedText("series.loadError", "Erro ao carregar detalhes da série."),
                                  ToastType::error);
    const FailureName name = nameOf(failure);
    AppLogger::network.error("Series load error for %ld code=%{public}ld domain=%{public}s",
                             {*series().seriesId, name.code, name.domain});
    AppLogger::network.debug("Series load error: %s", {failure.what()});
}

void SeriesDetailViewModel::loadWatchHistory() {
    if (series().seriesId) {
        setLastWatchedEpisode(HistoryService(services().modelContext, mainProfileId)
                                  .lastWatchedForSeriesId(*series().seriesId));
    }
}

void SeriesDetailViewModel::updateLists() {
    const bool hasSeasons = seriesInfo() && seriesInfo()->seasons;
    m_seasons.setSelected(selectedSeason());
    m_seasons.setSeasons(hasSeasons ? *seriesInfo()->seasons : std::vector<XtreamSeason>());
    m_episodes.setEpisodes(currentEpisodes());
}

void SeriesDetailViewModel::chooseSeason(int row) {
    if (const auto number = m_seasons.number(row)) {
        setSelectedSeason(*number);
    }
}

std::vector<DetailBadge> SeriesDetailViewModel::badges() const {
    return presentBadges({textBadge(series().year), ratingBadge(series().rating), genreBadge(series().genre),
                          textBadge(series().releaseDate)});
}

} // namespace ondavia
