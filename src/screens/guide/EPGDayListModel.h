#pragma once

#include "base/Date.h"

#include <QAbstractListModel>
#include <qqmlregistration.h>

#include <optional>
#include <vector>

namespace ondavia {

class DayTexts;

/// The days that a channel's guide offers. Main thread.
class EPGDayListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a guide")
    /// Row of the day that is shown; -1 where it is none of these.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)

public:
    enum Role { NameRole = Qt::UserRole, IsSelectedRole };

    /// `texts` must outlive the object.
    explicit EPGDayListModel(const DayTexts& texts)
        : m_texts(texts) {}

    /// Days by their first moments. `now` says which of them is today.
    void setDays(std::vector<Date> days, Date selected, Date now);
    [[nodiscard]] std::optional<Date> day(int row) const;
    [[nodiscard]] int selectedRow() const { return m_selectedRow; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    Q_SIGNAL void selectedRowChanged();

private:
    const DayTexts& m_texts;
    std::vector<Date> m_days;
    Date m_now{};
    int m_selectedRow = -1;
};

} // namespace ondavia
