#include "screens/guide/EPGDayListModel.h"

#include "guide/DayTexts.h"

#include <algorithm>

namespace ondavia {

void EPGDayListModel::setDays(std::vector<Date> days, Date selected, Date now) {
    beginResetModel();
    m_days = std::move(days);
    m_now = now;
    const auto found = std::ranges::find(m_days, selected);
    m_selectedRow = found == m_days.end() ? -1 : static_cast<int>(found - m_days.begin());
    endResetModel();
    Q_EMIT selectedRowChanged();
}

std::optional<Date> EPGDayListModel::day(int row) const {
    const bool isThere = row >= 0 && row < rowCount();
    return isThere ? std::optional(m_days[static_cast<std::size_t>(row)]) : std::nullopt;
}

int EPGDayListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_days.size());
}

QVariant EPGDayListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return QString::fromStdString(m_texts.dayText(*day(index.row()), m_now));
    case IsSelectedRole:
        return index.row() == m_selectedRow;
    default:
        return {};
    }
}

QHash<int, QByteArray> EPGDayListModel::roleNames() const {
    return {{NameRole, "name"}, {IsSelectedRole, "isSelected"}};
}

} // namespace ondavia
