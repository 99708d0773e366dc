#pragma once

#include "base/Observable.h"

#include <QObject>
#include <QString>

#include <cstdint>

namespace ondavia {

/// What the viewer chose for one player screen, and what the settings sheet writes back to it. It lives as
/// long as the screen and is stored nowhere. Main thread.
class PlaybackChoices final : public QObject {
    Q_OBJECT

    /// A new engine starts at 1.0 all the same.
    ONDAVIA_OBSERVABLE(float, playbackSpeed, setPlaybackSpeed, 1.0F);
    /// Seconds of one skip.
    ONDAVIA_OBSERVABLE(std::int64_t, skipInterval, setSkipInterval, 10);
};

/// A speed in at most two digits: "1x", "0.75x", "1.2x" for 1.25.
[[nodiscard]] QString speedLabel(float speed);

} // namespace ondavia
