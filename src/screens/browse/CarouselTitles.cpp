#include "screens/browse/CarouselTitles.h"

namespace ondavia {

void CarouselTitles::setCarousels(CarouselListModel* carousels) {
    if (m_carousels == carousels) {
        return;
    }
    if (m_carousels) {
        m_carousels->disconnect(this);
    }
    m_carousels = carousels;
    if (m_carousels) {
        connect(m_carousels, &CarouselListModel::rowsReplaced, this, &CarouselTitles::follow);
    }
    Q_EMIT carouselsChanged();
    follow();
}

void CarouselTitles::setRow(int row) {
    if (m_row != row) {
        m_row = row;
        Q_EMIT rowChanged();
        follow();
    }
}

void CarouselTitles::follow() {
    const bool isThere = m_carousels && m_row >= 0 && m_row < m_carousels->rowCount();
    if (isThere) {
        m_list.setKeys(m_carousels->titles(), m_carousels->rows()[static_cast<std::size_t>(m_row)].keys);
    }
}

} // namespace ondavia
