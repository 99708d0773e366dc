#pragma once

#include <QAbstractListModel>
#include <qqmlregistration.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

/// A category as a browser lists it.
struct CategoryRow final {
    std::string name;
    /// Absent when the catalogue has no title under that name.
    std::optional<std::int64_t> count;

    bool operator==(const CategoryRow&) const = default;
};

/// The categories of one browser. Main thread.
class CategoryListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a browser")

public:
    enum Role { NameRole = Qt::UserRole, CountTextRole };

    explicit CategoryListModel(QObject* parent)
        : QAbstractListModel(parent) {}

    [[nodiscard]] const std::vector<CategoryRow>& rows() const { return m_rows; }
    void setRows(std::vector<CategoryRow> rows);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<CategoryRow> m_rows;
};

} // namespace ondavia
