#include "screens/details/EpisodeRow.h"

#include "protocol/Episode.h"
#include "screens/pictures/PictureProvider.h"
#include "state/AppState.h"
#include "style/ShownText.h"
#include "style/Texts.h"

namespace ondavia {

QString EpisodeRow::label() const {
    return QStringLiteral("Ep. %1").arg(m_episode.episodeNum().value_or(0));
}

QString EpisodeRow::title() const {
    return m_episode.title ? shownText(*m_episode.title) : textFor("series.episodeLabel", "Episodio");
}

QString EpisodeRow::duration() const {
    return m_episode.info ? shownText(m_episode.info->duration.value_or(std::string())) : QString();
}

QUrl EpisodeRow::picture() const {
    return m_episode.info ? pictureUrl(m_episode.info->movieImage) : QUrl();
}

void EpisodeRow::tap(AppState& appState, const EpisodeAction& onPlay) const {
    if (onPlay) {
        onPlay(m_episode);
    } else if (auto item = prepareEpisode(appState, m_episode, m_seriesChannel)) {
        appState.playChannel(std::move(*item));
    }
}

std::optional<Channel> prepareEpisode(AppState& appState, const XtreamEpisode& episode,
                                      const Channel& series) {
    const auto client = episode.id ? appState.makeXtreamClient() : nullptr;
    if (client == nullptr) {
        return std::nullopt;
    }
    appState.setPendingSubtitleURLs(subtitleURLsOf(episode));
    return makeEpisode(episode, *episode.id, series, *client);
}

} // namespace ondavia
