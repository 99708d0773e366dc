#pragma once

#include "screens/browse/CarouselListModel.h"
#include "screens/browse/ChannelListModel.h"

#include <QObject>
#include <QPointer>
#include <qqmlregistration.h>

namespace ondavia {

/// The titles of one row of carousels. Belongs to whoever draws the row, and goes from category to category
/// with it: its list stays, so that cards that are there show other titles instead of being made anew. Main
/// thread.
class CarouselTitles : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        ondavia::CarouselListModel* carousels READ carousels WRITE setCarousels NOTIFY carouselsChanged)
    Q_PROPERTY(int row READ row WRITE setRow NOTIFY rowChanged)
    Q_PROPERTY(ondavia::ChannelListModel* list READ list CONSTANT)

public:
    using QObject::QObject;

    [[nodiscard]] CarouselListModel* carousels() const { return m_carousels; }
    void setCarousels(CarouselListModel* carousels);
    [[nodiscard]] int row() const { return m_row; }
    void setRow(int row);
    [[nodiscard]] ChannelListModel* list() { return &m_list; }

    Q_SIGNAL void carouselsChanged();
    Q_SIGNAL void rowChanged();

private:
    void follow();

    QPointer<CarouselListModel> m_carousels;
    int m_row = -1;
    ChannelListModel m_list{this};
};

} // namespace ondavia
