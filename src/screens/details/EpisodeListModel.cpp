#include "screens/details/EpisodeListModel.h"

namespace ondavia {

EpisodeListModel::EpisodeListModel(AppState& appState, const Channel& series, EpisodeAction onPlay)
    : m_appState(appState)
    , m_series(series)
    , m_onPlay(std::move(onPlay)) {}

/// The same episodes once more leave the list where the viewer has scrolled it to.
void EpisodeListModel::setEpisodes(std::vector<XtreamEpisode> episodes) {
    if (episodes == m_episodes) {
        return;
    }
    beginResetModel();
    m_episodes = std::move(episodes);
    endResetModel();
}

void EpisodeListModel::play(int row) {
    if (row < 0 || row >= rowCount()) {
        return;
    }
    // By value: what it starts may change the list.
    const XtreamEpisode episode = m_episodes[static_cast<std::size_t>(row)];
    EpisodeRow(episode, m_series).tap(m_appState, m_onPlay);
}

int EpisodeListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_episodes.size());
}

QVariant EpisodeListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const EpisodeRow row(m_episodes[static_cast<std::size_t>(index.row())], m_series);
    switch (role) {
    case LabelRole:
        return row.label();
    case Qt::DisplayRole:
    case TitleRole:
        return row.title();
    case DurationRole:
        return row.duration();
    case PictureRole:
        return row.picture();
    default:
        return {};
    }
}

QHash<int, QByteArray> EpisodeListModel::roleNames() const {
    return {{LabelRole, "label"}, {TitleRole, "title"}, {DurationRole, "duration"}, {PictureRole, "picture"}};
}

} // namespace ondavia
