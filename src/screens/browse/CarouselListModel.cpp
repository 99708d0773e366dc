#include "screens/browse/CarouselListModel.h"

#include "screens/browse/ChannelRowCache.h"
#include "style/ShownText.h"

namespace ondavia {

void CarouselListModel::setRows(std::shared_ptr<ChannelRowCache> titles, std::vector<Carousel> rows) {
    m_titles = std::move(titles);
    mergeRows(m_rows, std::move(rows), &Carousel::name);
    Q_EMIT rowsReplaced();
}

QVariant CarouselListModel::data(const QModelIndex& index, int role) const {
    const bool isIt = checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid);
    return isIt && (role == NameRole || role == Qt::DisplayRole)
               ? shownText(m_rows[static_cast<std::size_t>(index.row())].name)
               : QVariant();
}

QHash<int, QByteArray> CarouselListModel::roleNames() const {
    return {{NameRole, "name"}};
}

} // namespace ondavia
