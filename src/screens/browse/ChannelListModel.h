#pragma once

#include "entities/Channel.h"
#include "screens/browse/ChannelRowCache.h"
#include "screens/browse/SteadyListModel.h"

#include <qqmlregistration.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ondavia {

/// Rows of the catalogue by their keys, read one by one as they come into sight: a list of 120,000 titles
/// holds its keys and a few screens of rows. A row that is gone from the store shows empty. Main thread.
class ChannelListModel final : public ondavia::SteadyListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a browser")

public:
    enum Role { NameRole = Qt::UserRole, PictureRole, RatingRole, SymbolRole, ProgramRole };
    /// Titles of programmes by the channels' guide ids.
    using Programs = std::unordered_map<std::string, std::string>;

    explicit ChannelListModel(QObject* parent)
        : SteadyListModel(parent) {}

    /// Whence the rows are read, from now on. Views keep their place.
    void setKeys(std::shared_ptr<ChannelRowCache> rows, std::vector<std::int64_t> keys);
    /// The same for another list: views begin anew.
    void startWith(std::shared_ptr<ChannelRowCache> rows, std::vector<std::int64_t> keys);
    /// What is on, for lists of channels.
    void setPrograms(Programs programs);
    [[nodiscard]] std::optional<Channel> channel(int row) const;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    [[nodiscard]] int size() const override { return static_cast<int>(m_keys.size()); }
    [[nodiscard]] QString currentProgram(const Channel& channel) const;

    std::vector<std::int64_t> m_keys;
    std::shared_ptr<ChannelRowCache> m_rows;
    Programs m_programs;
};

} // namespace ondavia
