#include "screens/browse/CategoryListModel.h"
#include "style/ShownText.h"

#include <QLocale>

namespace ondavia {

void CategoryListModel::setRows(std::vector<CategoryRow> rows) {
    if (rows == m_rows) {
        return;
    }
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int CategoryListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant CategoryListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const CategoryRow& row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return shownText(row.name);
    case CountTextRole:
        return row.count ? QLocale().toString(static_cast<qlonglong>(*row.count)) : QString();
    default:
        return {};
    }
}

QHash<int, QByteArray> CategoryListModel::roleNames() const {
    return {{NameRole, "name"}, {CountTextRole, "countText"}};
}

} // namespace ondavia
