#pragma once

#include "entities/Channel.h"
#include "protocol/wire/SeriesRecords.h"

#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace ondavia {

class AppState;

/// What a tap on an episode does.
using EpisodeAction = std::function<void(const XtreamEpisode&)>;

/// An episode as a list shows it. Made where it is needed: what it is made of outlives it. Main thread.
class EpisodeRow final {
public:
    EpisodeRow(const XtreamEpisode& episode, const Channel& seriesChannel)
        : m_episode(episode)
        , m_seriesChannel(seriesChannel) {}

    [[nodiscard]] QString label() const;
    [[nodiscard]] QString title() const;
    /// Empty for none.
    [[nodiscard]] QString duration() const;
    [[nodiscard]] QUrl picture() const;
    /// Runs `onPlay`. Without one the episode plays for itself, and the player knows of no next one.
    void tap(AppState& appState, const EpisodeAction& onPlay) const;

private:
    const XtreamEpisode& m_episode;
    const Channel& m_seriesChannel;
};

/// The item that the episode plays as, when its subtitle files wait for the player; absent, with nothing
/// changed, for an episode without an id and where there is no account. Main thread.
[[nodiscard]] std::optional<Channel> prepareEpisode(AppState& appState, const XtreamEpisode& episode,
                                                    const Channel& series);

} // namespace ondavia
