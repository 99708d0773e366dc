#pragma once

#include "screens/search/SearchResults.h"

#include <QAbstractListModel>
#include <qqmlregistration.h>

#include <string>
#include <vector>

namespace ondavia {

/// The types that a search can be narrowed to, each with the number of its results: all of them first, then
/// those that have any. None without results. Main thread.
class FilterChipListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a search")
    /// Row of the chip that is selected; -1 for none.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)

public:
    enum Role { TitleRole = Qt::UserRole, CountTextRole };

    explicit FilterChipListModel(QObject* parent)
        : QAbstractListModel(parent) {}

    /// `all` is the number of results, of whatever type.
    void setCounts(std::size_t all, const TypeCounts& counts);
    void select(const std::string& type);
    [[nodiscard]] int selectedRow() const;
    /// The type that a chip stands for; that of all where there is no such row.
    [[nodiscard]] std::string type(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    Q_SIGNAL void selectedRowChanged();

private:
    struct Row final {
        std::string type;
        std::size_t count;

        bool operator==(const Row&) const = default;
    };

    std::vector<Row> m_rows;
    std::string m_selected{everyType};
};

} // namespace ondavia
