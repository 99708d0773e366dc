#pragma once

#include "base/Date.h"
#include "guide/EPGService.h"
#include "screens/player/PlayerScreenServices.h"

#include <qcoro/qcorotask.h>

#include <functional>
#include <memory>

namespace ondavia {

class MPRemoteCommandCenter;
class UserDefaults;
class XtreamAPIClient;

/// What the live player works with. All of it must outlive the player.
struct LivePlayerServices final {
    PlayerScreenServices player;
    MPRemoteCommandCenter& remoteCommands;
    const UserDefaults& defaults;
    EPGService guide;
    /// Replaces the guide by the provider's present one, and keeps the time of that. Raises what it failed
    /// for.
    std::function<QCoro::Task<void>(std::shared_ptr<XtreamAPIClient>)> loadGuide;
    std::function<Date()> now = currentDate;
};

} // namespace ondavia
