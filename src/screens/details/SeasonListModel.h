#pragma once

#include "protocol/wire/SeriesRecords.h"

#include <QAbstractListModel>
#include <qqmlregistration.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace ondavia {

/// The seasons of a series to choose from, in the provider's order. Main thread.
class SeasonListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a series")
    /// Row of the first season of the selected number; -1 where there is none.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)

public:
    enum Role { NameRole = Qt::UserRole, IsSelectedRole };

    explicit SeasonListModel(QObject* parent)
        : QAbstractListModel(parent) {}

    void setSeasons(const std::vector<XtreamSeason>& seasons);
    void setSelected(std::int64_t number);
    /// A season that has no number counts as the first.
    [[nodiscard]] std::optional<std::int64_t> number(int row) const;
    [[nodiscard]] int selectedRow() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    Q_SIGNAL void selectedRowChanged();

private:
    std::vector<std::int64_t> m_numbers;
    std::int64_t m_selected = 1;
};

} // namespace ondavia
