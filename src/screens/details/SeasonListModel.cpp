#include "screens/details/SeasonListModel.h"

#include "style/Texts.h"

#include <algorithm>

namespace ondavia {

void SeasonListModel::setSeasons(const std::vector<XtreamSeason>& seasons) {
    std::vector<std::int64_t> numbers;
    for (const XtreamSeason& season : seasons) {
        numbers.push_back(season.seasonNumber.value_or(1));
    }
    if (numbers == m_numbers) {
        return;
    }
    beginResetModel();
    m_numbers = std::move(numbers);
    endResetModel();
    Q_EMIT selectedRowChanged();
}

void SeasonListModel::setSelected(std::int64_t number) {
    if (number == m_selected) {
        return;
    }
    m_selected = number;
    if (!m_numbers.empty()) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {IsSelectedRole});
    }
    Q_EMIT selectedRowChanged();
}

std::optional<std::int64_t> SeasonListModel::number(int row) const {
    const bool isThere = row >= 0 && row < rowCount();
    return isThere ? std::optional(m_numbers[static_cast<std::size_t>(row)]) : std::nullopt;
}

int SeasonListModel::selectedRow() const {
    const auto found = std::ranges::find(m_numbers, m_selected);
    return found != m_numbers.end() ? static_cast<int>(found - m_numbers.begin()) : -1;
}

int SeasonListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_numbers.size());
}

QVariant SeasonListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const std::int64_t shown = m_numbers[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return textFor("T%lld", "T%lld").replace(QStringLiteral("%lld"), QString::number(shown));
    case IsSelectedRole:
        return shown == m_selected;
    default:
        return {};
    }
}

QHash<int, QByteArray> SeasonListModel::roleNames() const {
    return {{NameRole, "name"}, {IsSelectedRole, "isSelected"}};
}

} // namespace ondavia
