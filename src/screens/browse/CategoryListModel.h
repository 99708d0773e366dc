#pragma once

#include "screens/browse/SteadyListModel.h"

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

/// The categories of the channels. Main thread.
class CategoryListModel final : public ondavia::SteadyListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a browser")

public:
    enum Role { NameRole = Qt::UserRole, CountTextRole };

    explicit CategoryListModel(QObject* parent)
        : SteadyListModel(parent) {}

    [[nodiscard]] const std::vector<CategoryRow>& rows() const { return m_rows; }
    void setRows(std::vector<CategoryRow> rows);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    [[nodiscard]] int size() const override { return static_cast<int>(m_rows.size()); }

    std::vector<CategoryRow> m_rows;
};

} // namespace ondavia
