#pragma once

namespace ondavia {

/// Sets the device's output volume: the sound server's default output. Main thread; never waits.
class SystemVolumeHelper {
public:
    virtual ~SystemVolumeHelper() = default;
    /// From 0.0 to 1.0; what lies outside is brought to the nearer end, what is no number is ignored.
    /// Nothing happens where there is no output.
    virtual void setVolume(float volume) = 0;
};

} // namespace ondavia
