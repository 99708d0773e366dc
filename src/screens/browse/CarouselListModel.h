#pragma once

#include "screens/browse/SteadyListModel.h"

#include <qqmlregistration.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ondavia {

class ChannelRowCache;

/// A category with its first titles, by their keys.
struct Carousel final {
    std::string name;
    std::vector<std::int64_t> keys;

    bool operator==(const Carousel&) const = default;
};

/// The categories of films or series that have titles. `CarouselTitles` is what one of them shows. Main
/// thread.
class CarouselListModel final : public ondavia::SteadyListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a browser")

public:
    enum Role { NameRole = Qt::UserRole };

    explicit CarouselListModel(QObject* parent)
        : SteadyListModel(parent) {}

    [[nodiscard]] const std::vector<Carousel>& rows() const { return m_rows; }
    [[nodiscard]] const std::shared_ptr<ChannelRowCache>& titles() const { return m_titles; }
    /// `titles` has the rows of all keys.
    void setRows(std::shared_ptr<ChannelRowCache> titles, std::vector<Carousel> rows);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The rows are others, and so may be their titles. Comes when the model is whole again.
    Q_SIGNAL void rowsReplaced();

private:
    [[nodiscard]] int size() const override { return static_cast<int>(m_rows.size()); }

    std::vector<Carousel> m_rows;
    std::shared_ptr<ChannelRowCache> m_titles;
};

} // namespace ondavia
