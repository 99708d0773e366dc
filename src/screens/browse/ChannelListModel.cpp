#include "screens/browse/ChannelListModel.h"

#include "base/AppLogger.h"
#include "screens/pictures/PictureProvider.h"
#include "store/LibraryStore.h"
#include "style/ShownText.h"

#include <QUrl>

namespace ondavia {

namespace {

/// A rating that says something: "0" is what providers send for none.
QString ratingText(const Channel& channel) {
    return channel.rating && *channel.rating != "0" ? QString::fromStdString(*channel.rating) : QString();
}

} // namespace

ChannelListModel::ChannelListModel(LibraryStore& store, QObject* parent)
    : QAbstractListModel(parent)
    , m_store(store)
    , m_rows(store) {}

void ChannelListModel::setQuery(Query<Channel> query) {
    m_query = std::move(query);
    reload();
}

void ChannelListModel::reload() {
    beginResetModel();
    m_rows.clear();
    m_keys = fetchKeys();
    endResetModel();
}

std::vector<std::int64_t> ChannelListModel::fetchKeys() const {
    if (!m_query) {
        return {};
    }
    try {
        return m_store.mainContext().fetchKeys(*m_query);
    } catch (const StoreError& error) {
        AppLogger::general.error("The titles could not be read: %s", {error.what()});
        return {};
    }
}

const Channel* ChannelListModel::cachedRow(int row) const {
    return m_rows.row(m_keys[static_cast<std::size_t>(row)]);
}

std::optional<Channel> ChannelListModel::channel(int row) const {
    const bool isThere = row >= 0 && row < rowCount();
    const Channel* found = isThere ? cachedRow(row) : nullptr;
    return found != nullptr ? std::optional(*found) : std::nullopt;
}

int ChannelListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_keys.size());
}

QVariant ChannelListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Channel* row = cachedRow(index.row());
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
    default:
        return {};
    }
}

QHash<int, QByteArray> ChannelListModel::roleNames() const {
    return {{NameRole, "name"}, {PictureRole, "picture"}, {RatingRole, "rating"}};
}

} // namespace ondavia
