#include "screens/details/MovieDetailViewModel.h"

#include "personal/HistoryService.h"
#include "protocol/XtreamAPIClient.h"
#include "state/AppState.h"

#include <QPointer>

namespace ondavia {

MovieDetailViewModel::MovieDetailViewModel(const DetailServices& services, Channel movie)
    : DetailViewModel(services, std::move(movie)) {
    connect(this, &MovieDetailViewModel::watchHistoryChanged, this, &DetailViewModel::continuesChanged);
}

void MovieDetailViewModel::appear() {
    checkFavorite();
    setWatchHistory(HistoryService(services().modelContext, mainProfileId).lastWatchedForMovieId(movie().id));
    // It raises nothing, and ends by itself when the page goes.
    (void)fetchSubtitleURLs();
}

QCoro::Task<void> MovieDetailViewModel::fetchSubtitleURLs() {
    const QPointer self(this);
    const std::uint64_t generation = ++m_generation;
    const auto client = movie().streamId >= 1 ? services().appState.makeXtreamClient() : nullptr;
    if (client == nullptr) {
        co_return;
    }
    auto urls = co_await client->getSubtitleURLsForVOD(movie().streamId);
    if (self && generation == m_generation) {
        setSubtitleURLs(std::move(urls));
    }
}

void MovieDetailViewModel::play() {
    services().appState.setPendingSubtitleURLs(subtitleURLs());
    services().appState.playChannel(movie());
}

std::vector<DetailBadge> MovieDetailViewModel::badges() const {
    return presentBadges({textBadge(movie().year), ratingBadge(movie().rating), textBadge(movie().duration),
                          genreBadge(movie().genre)});
}

} // namespace ondavia
