#pragma once

#include "screens/liveplayer/LiveChannels.h"

#include <QAbstractListModel>
#include <qqmlregistration.h>

#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace ondavia {

/// The channels of one category of the live player. Main thread.
class LiveChannelListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the live player")

public:
    enum Role { NameRole = Qt::UserRole, NumberRole, LogoRole };

    explicit LiveChannelListModel(std::shared_ptr<const LiveChannels> channels, QObject* parent = nullptr);

    void setCategory(std::string_view name);
    /// Of the channel at a row of this list, among all channels.
    [[nodiscard]] std::optional<std::size_t> placeOf(int row) const;
    /// Row of a channel in this list; -1 where it is not in it.
    [[nodiscard]] int rowOf(std::string_view channelId) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    std::shared_ptr<const LiveChannels> m_channels;
    std::span<const std::size_t> m_rows;
};

} // namespace ondavia
