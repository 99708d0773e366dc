#include "screens/search/FilterChipListModel.h"

#include "style/Texts.h"

#include <QLocale>

#include <algorithm>

namespace ondavia {
namespace {

QString titleOf(const std::string& type) {
    if (type == "live") {
        return textFor("TV", "TV");
    }
    if (type == "movie") {
        return textFor("Filmes", "Filmes");
    }
    return type == "series" ? textFor("Series", "Series") : textFor("Todos", "Todos");
}

} // namespace

void FilterChipListModel::setCounts(std::size_t all, const TypeCounts& counts) {
    std::vector<Row> rows{{std::string(everyType), all},
                          {"live", counts.live},
                          {"movie", counts.movie},
                          {"series", counts.series}};
    std::erase_if(rows, [](const Row& row) { return row.count == 0; });
    if (rows == m_rows) {
        return;
    }
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
    Q_EMIT selectedRowChanged();
}

void FilterChipListModel::select(const std::string& type) {
    if (type != m_selected) {
        m_selected = type;
        Q_EMIT selectedRowChanged();
    }
}

int FilterChipListModel::selectedRow() const {
    const auto selected = std::ranges::find(m_rows, m_selected, &Row::type);
    return selected == m_rows.end() ? -1 : static_cast<int>(selected - m_rows.begin());
}

std::string FilterChipListModel::type(int row) const {
    const bool isThere = row >= 0 && row < rowCount();
    return isThere ? m_rows[static_cast<std::size_t>(row)].type : std::string(everyType);
}

int FilterChipListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant FilterChipListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Row& row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
        return titleOf(row.type);
    case CountTextRole:
        return QLocale().toString(static_cast<qulonglong>(row.count));
    default:
        return {};
    }
}

QHash<int, QByteArray> FilterChipListModel::roleNames() const {
    return {{TitleRole, "title"}, {CountTextRole, "countText"}};
}

} // namespace ondavia
