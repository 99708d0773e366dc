#include "screens/browse/CategoryListModel.h"
#include "style/ShownText.h"

namespace ondavia {

void CategoryListModel::setRows(std::vector<CategoryRow> rows) {
    mergeRows(m_rows, std::move(rows), &CategoryRow::name);
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
        // "%lld": digits alone, in every language.
        return row.count ? QString::number(*row.count) : QString();
    default:
        return {};
    }
}

QHash<int, QByteArray> CategoryListModel::roleNames() const {
    return {{NameRole, "name"}, {CountTextRole, "countText"}};
}

} // namespace ondavia
