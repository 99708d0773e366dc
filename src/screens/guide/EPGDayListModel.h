#pragma once

#include <QAbstractListModel>
#include <QString>
#include <qqmlregistration.h>

#include <vector>

namespace ondavia {

/// A day as the guide offers it.
struct EPGDayRow final {
    QString name;
    bool isSelected = false;

    bool operator==(const EPGDayRow&) const = default;
};

/// The days that a channel's guide offers. Main thread.
class EPGDayListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a guide")

public:
    enum Role { NameRole = Qt::UserRole, IsSelectedRole };

    [[nodiscard]] const std::vector<EPGDayRow>& rows() const { return m_rows; }
    void setRows(std::vector<EPGDayRow> rows);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<EPGDayRow> m_rows;
};

} // namespace ondavia
