#pragma once

#include "entities/Channel.h"
#include "screens/browse/ChannelRowCache.h"
#include "store/Query.h"

#include <QAbstractListModel>
#include <qqmlregistration.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace ondavia {

class LibraryStore;

/// The rows of one query over the catalogue, read one by one as they come into sight: a list of 120,000
/// titles holds its keys and a few screens of rows. A row that is gone from the store shows empty until
/// the next `reload`. A read that fails is logged and gives no rows. Main thread.
class ChannelListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a browser")

public:
    enum Role { NameRole = Qt::UserRole, PictureRole, RatingRole };

    /// `store` must outlive the object.
    explicit ChannelListModel(LibraryStore& store, QObject* parent = nullptr);

    void setQuery(Query<Channel> query);
    /// Runs the query again.
    void reload();
    [[nodiscard]] std::optional<Channel> channel(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    [[nodiscard]] std::vector<std::int64_t> fetchKeys() const;
    [[nodiscard]] const Channel* cachedRow(int row) const;

    LibraryStore& m_store;
    std::optional<Query<Channel>> m_query;
    std::vector<std::int64_t> m_keys;
    mutable ChannelRowCache m_rows;
};

} // namespace ondavia
