#pragma once

#include "platform/SystemVolumeHelper.h"

#include <memory>

namespace ondavia {

/// The volume of the sound server's default output, over libpulse on a thread of its own, which also hears
/// of changes made elsewhere. An output that is switched to mute has volume 0, and sounds again when a
/// volume is set. Main thread; waits for nobody.
///
/// The server is looked for at the first call, and again when it has gone. What is set while none answers
/// is forgotten when the attempt fails.
class PulseVolume final : public SystemVolumeHelper {
public:
    PulseVolume();
    ~PulseVolume() override;
    PulseVolume(const PulseVolume&) = delete;
    PulseVolume& operator=(const PulseVolume&) = delete;

    void setVolume(float volume) override;
    /// From 0.0 to 1.0, as it was set here or as the server said last, whichever is later; 1.0 until there
    /// is one of them.
    [[nodiscard]] float outputVolume();
    /// Whether a server has taken a connection of this process's and not said a word for two seconds: whoever
    /// waits for such a one waits for ever. Any thread.
    [[nodiscard]] static bool isServerSilent();

private:
    class Link;
    Link& link();

    std::unique_ptr<Link> m_link;
};

} // namespace ondavia
