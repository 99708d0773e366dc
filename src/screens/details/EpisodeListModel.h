#pragma once

#include "screens/details/EpisodeRow.h"

#include <QAbstractListModel>
#include <qqmlregistration.h>

#include <vector>

namespace ondavia {

/// The episodes of one season, in the provider's order. Main thread.
class EpisodeListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a series")

public:
    enum Role { LabelRole = Qt::UserRole, TitleRole, DurationRole, PictureRole };

    /// Both must outlive the object.
    EpisodeListModel(AppState& appState, const Channel& series, EpisodeAction onPlay = {});

    void setEpisodes(std::vector<XtreamEpisode> episodes);
    [[nodiscard]] const std::vector<XtreamEpisode>& episodes() const { return m_episodes; }
    /// A row was tapped.
    Q_INVOKABLE void play(int row);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    AppState& m_appState;
    const Channel& m_series;
    EpisodeAction m_onPlay;
    std::vector<XtreamEpisode> m_episodes;
};

} // namespace ondavia
