#pragma once

#include "screens/liveplayer/LiveChannels.h"
#include "screens/shell/ScreenServices.h"

#include <QObject>

#include <memory>

namespace ondavia {

struct Channel;
class PlayerScreen;

/// Which player the root view shows for an item: the live one for a channel, among all channels of the
/// catalogue, the other one for the rest. Main thread.
class FullScreenPlayers final : public QObject {
public:
    /// What `services` refers to must outlive the object and the players.
    explicit FullScreenPlayers(const ScreenServices& services);

    [[nodiscard]] std::unique_ptr<PlayerScreen> make(const Channel& item);
    /// Read when the first channel is opened, and not again when the catalogue changes: of the account that
    /// was in use then.
    [[nodiscard]] const std::shared_ptr<const LiveChannels>& cachedLiveChannels() const {
        return m_cachedLiveChannels;
    }

private:
    [[nodiscard]] std::shared_ptr<const LiveChannels> fetchLiveChannels();

    ScreenServices m_services;
    std::shared_ptr<const LiveChannels> m_cachedLiveChannels = std::make_shared<LiveChannels>();
};

} // namespace ondavia
