#include "screens/browse/ChannelListModel.h"

#include "screens/pictures/PictureProvider.h"
#include "style/ShownText.h"

#include <QUrl>

namespace ondavia {

namespace {

/// A rating that says something: "0" is what providers send for none.
QString ratingText(const Channel& channel) {
    return channel.rating && *channel.rating != "0" ? shownText(*channel.rating) : QString();
}

QString symbolOf(const Channel& channel) {
    return channel.type == "live"    ? QStringLiteral("tv.fill")
           : channel.type == "movie" ? QStringLiteral("film.fill")
                                     : QStringLiteral("play.rectangle.fill");
}

} // namespace

void ChannelListModel::setKeys(std::shared_ptr<ChannelRowCache> rows, std::vector<std::int64_t> keys) {
    m_rows = std::move(rows);
    if (m_keys != keys) {
        replaceRows(m_keys, std::move(keys));
    }
}

void ChannelListModel::startWith(std::shared_ptr<ChannelRowCache> rows, std::vector<std::int64_t> keys) {
    beginResetModel();
    m_rows = std::move(rows);
    m_keys = std::move(keys);
    endResetModel();
}

void ChannelListModel::setPrograms(Programs programs) {
    m_programs = std::move(programs);
    tellChanged(0, size() - 1, {ProgramRole});
}

std::optional<Channel> ChannelListModel::channel(int row) const {
    const bool isThere = row >= 0 && row < size();
    const Channel* found = isThere ? m_rows->row(m_keys[static_cast<std::size_t>(row)]) : nullptr;
    return found != nullptr ? std::optional(*found) : std::nullopt;
}

QString ChannelListModel::currentProgram(const Channel& channel) const {
    const auto found = channel.epgChannelId ? m_programs.find(*channel.epgChannelId) : m_programs.end();
    return found != m_programs.end() ? shownText(found->second) : QString();
}

QVariant ChannelListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Channel* row = m_rows->row(m_keys[static_cast<std::size_t>(index.row())]);
    const Channel gone;
    const Channel& channel = row != nullptr ? *row : gone;
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return shownText(channel.name);
    case PictureRole:
        return pictureUrl(channel.logo);
    case RatingRole:
        return ratingText(channel);
    case SymbolRole:
        return symbolOf(channel);
    case ProgramRole:
        return currentProgram(channel);
    default:
        return {};
    }
}

QHash<int, QByteArray> ChannelListModel::roleNames() const {
    return {{NameRole, "name"},
            {PictureRole, "picture"},
            {RatingRole, "rating"},
            {SymbolRole, "symbol"},
            {ProgramRole, "currentProgram"}};
}

} // namespace ondavia
