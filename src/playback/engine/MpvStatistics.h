#pragma once

#include "platform/FSPlayer.h"

#include <cstdint>
#include <string>

struct mpv_event;

namespace ondavia::engine {

class MpvHandle;

/// What of FSStatistics mpv knows, asked for when somebody wants it and not otherwise.
class MpvStatistics final {
public:
    /// Has mpv tell everything, unless it is about to. The answers come as events.
    void ask(MpvHandle& handle);
    /// Takes an event that may be an answer. False when it is somebody else's.
    bool take(const mpv_event& event);
    /// Puts what is known into `statistics`.
    void fill(FSStatistics& statistics) const;

    struct Values final {
        std::int64_t width = 0;
        std::int64_t height = 0;
        double frameRate = 0;
        std::int64_t videoBitrate = 0;
        std::int64_t audioBitrate = 0;
        std::string hardwareDecoder;
        std::int64_t shownTooLate = 0;
        std::int64_t decodedTooLate = 0;
    };

private:
    Values m_values;
    int m_asked = 0;
};

} // namespace ondavia::engine
