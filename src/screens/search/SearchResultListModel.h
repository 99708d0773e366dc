#pragma once

#include "screens/browse/ChannelRowCache.h"
#include "screens/search/SearchResults.h"

#include <QAbstractListModel>
#include <qqmlregistration.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

class LibraryStore;

/// What a search shows, group after group: the keys of the rows, each of which is read when it comes into
/// sight. A row that is gone from the store shows empty. Main thread.
class SearchResultListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a search")

public:
    enum Role { NameRole = Qt::UserRole, PictureRole, GroupRole, DetailRole, IsLiveRole, SymbolRole };

    /// `store` must outlive the object.
    explicit SearchResultListModel(LibraryStore& store, QObject* parent = nullptr);

    void setGroups(std::vector<ResultGroup> groups);
    [[nodiscard]] std::optional<Channel> channel(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    struct Group final {
        int firstRow;
        std::string title;
    };

    [[nodiscard]] const std::string& groupTitle(int row) const;

    std::vector<std::int64_t> m_keys;
    std::vector<Group> m_groups;
    mutable ChannelRowCache m_rows;
};

} // namespace ondavia
