#include "screens/search/SearchResultListModel.h"

#include "screens/pictures/PictureProvider.h"
#include "style/ShownText.h"

#include <QUrl>

#include <algorithm>

namespace ondavia {
namespace {

QString symbolOf(const Channel& channel) {
    if (channel.type == "live") {
        return QStringLiteral("tv.fill");
    }
    return channel.type == "series" ? QStringLiteral("play.rectangle.on.rectangle.fill")
                                    : QStringLiteral("film.fill");
}

} // namespace

SearchResultListModel::SearchResultListModel(LibraryStore& store, QObject* parent)
    : QAbstractListModel(parent)
    , m_rows(store) {}

void SearchResultListModel::setGroups(std::vector<ResultGroup> groups) {
    beginResetModel();
    m_rows.clear();
    m_keys.clear();
    m_groups.clear();
    for (ResultGroup& group : groups) {
        m_groups.push_back({static_cast<int>(m_keys.size()), std::move(group.groupTitle)});
        m_keys.insert(m_keys.end(), group.keys.begin(), group.keys.end());
    }
    endResetModel();
}

std::optional<Channel> SearchResultListModel::channel(int row) const {
    const bool isThere = row >= 0 && row < rowCount();
    const Channel* found = isThere ? m_rows.row(m_keys[static_cast<std::size_t>(row)]) : nullptr;
    return found != nullptr ? std::optional(*found) : std::nullopt;
}

const std::string& SearchResultListModel::groupTitle(int row) const {
    const auto next = std::ranges::upper_bound(m_groups, row, {}, &Group::firstRow);
    return std::prev(next)->title;
}

int SearchResultListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_keys.size());
}

QVariant SearchResultListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    // A list asks for the groups of more rows than it shows.
    if (role == GroupRole) {
        return shownText(groupTitle(index.row()));
    }
    const Channel* row = m_rows.row(m_keys[static_cast<std::size_t>(index.row())]);
    const Channel gone;
    const Channel& channel = row != nullptr ? *row : gone;
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return shownText(channel.name);
    case PictureRole:
        return pictureUrl(channel.logo);
    case DetailRole:
        return shownText(channel.year.value_or(std::string()));
    case IsLiveRole:
        return channel.type == "live";
    case SymbolRole:
        return symbolOf(channel);
    default:
        return {};
    }
}

QHash<int, QByteArray> SearchResultListModel::roleNames() const {
    return {{NameRole, "name"},     {PictureRole, "picture"}, {GroupRole, "group"},
            {DetailRole, "detail"}, {IsLiveRole, "isLive"},   {SymbolRole, "symbol"}};
}

} // namespace ondavia
