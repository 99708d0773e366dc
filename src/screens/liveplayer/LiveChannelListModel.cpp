#include "screens/liveplayer/LiveChannelListModel.h"

#include "screens/pictures/PictureProvider.h"
#include "style/ShownText.h"

#include <algorithm>

namespace ondavia {

LiveChannelListModel::LiveChannelListModel(std::shared_ptr<const LiveChannels> channels, QObject* parent)
    : QAbstractListModel(parent)
    , m_channels(std::move(channels)) {}

void LiveChannelListModel::setCategory(std::string_view name) {
    beginResetModel();
    m_rows = m_channels->inCategory(name);
    endResetModel();
}

std::optional<std::size_t> LiveChannelListModel::placeOf(int row) const {
    const bool isThere = row >= 0 && row < rowCount();
    return isThere ? std::optional(m_rows[static_cast<std::size_t>(row)]) : std::nullopt;
}

int LiveChannelListModel::rowOf(std::string_view channelId) const {
    const auto found = std::ranges::find_if(
        m_rows, [this, channelId](std::size_t place) { return m_channels->at(place).id == channelId; });
    return found != m_rows.end() ? static_cast<int>(found - m_rows.begin()) : -1;
}

int LiveChannelListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant LiveChannelListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const LiveChannel& channel = m_channels->at(m_rows[static_cast<std::size_t>(index.row())]);
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return shownText(channel.name);
    case NumberRole:
        return QString::number(channel.num);
    case LogoRole:
        return pictureUrl(channel.logo);
    default:
        return {};
    }
}

QHash<int, QByteArray> LiveChannelListModel::roleNames() const {
    return {{NameRole, "name"}, {NumberRole, "number"}, {LogoRole, "logo"}};
}

} // namespace ondavia
