#pragma once

#include <string_view>

namespace ondavia {

inline constexpr std::string_view AVAudioSessionCategoryPlayback = "AVAudioSessionCategoryPlayback";
inline constexpr std::string_view AVAudioSessionModeMoviePlayback = "AVAudioSessionModeMoviePlayback";

/// The system's audio session. Linux asks for nothing at its activation but the order of calls. Main thread.
class AVAudioSession {
public:
    virtual ~AVAudioSession() = default;
    /// Whether the category was taken.
    virtual bool setCategory(std::string_view category, std::string_view mode) = 0;
    /// Whether the session changed over.
    virtual bool setActive(bool active) = 0;
    /// The device's output volume, from 0.0 to 1.0, as the sound server said last; never waits for it.
    [[nodiscard]] virtual float outputVolume() const = 0;
};

/// Keeps screen saver and idle suspend away. On Linux org.freedesktop.ScreenSaver on the session bus;
/// where nobody answers, nothing happens. Main thread; never waits for the bus.
class IdleInhibitor {
public:
    virtual ~IdleInhibitor() = default;
    virtual void setInhibited(bool inhibited) = 0;
};

} // namespace ondavia
