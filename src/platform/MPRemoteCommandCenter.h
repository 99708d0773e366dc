#pragma once

#include <algorithm>
#include <functional>
#include <utility>
#include <variant>
#include <vector>

namespace ondavia {

enum class MPRemoteCommandHandlerStatus { success = 0, commandFailed = 200 };

/// In seconds, never negative: the command says in which direction.
struct MPSkipIntervalCommandEvent final {
    double interval = 0;
};
/// In seconds.
struct MPChangePlaybackPositionCommandEvent final {
    double positionTime = 0;
};
/// What comes with a command; nothing with most of them.
using MPRemoteCommandEvent =
    std::variant<std::monostate, MPSkipIntervalCommandEvent, MPChangePlaybackPositionCommandEvent>;

/// One thing that the system, a headset or another program may ask of playback. Set up on the main thread;
/// `send` may be called from any thread after that.
class MPRemoteCommand final {
public:
    using Handler = std::function<MPRemoteCommandHandlerStatus(const MPRemoteCommandEvent&)>;

    /// `onChange` must outlive the command.
    explicit MPRemoteCommand(const std::function<void()>& onChange)
        : m_onChange(onChange) {}
    MPRemoteCommand(const MPRemoteCommand&) = delete;
    MPRemoteCommand& operator=(const MPRemoteCommand&) = delete;

    void addTarget(Handler handler) { m_targets.push_back(std::move(handler)); }

    [[nodiscard]] bool isEnabled() const { return m_isEnabled; }
    void setEnabled(bool enabled) {
        if (m_isEnabled != enabled) {
            m_isEnabled = enabled;
            if (m_onChange) {
                m_onChange();
            }
        }
    }
    /// Seconds that a skip is offered with.
    [[nodiscard]] const std::vector<double>& preferredIntervals() const { return m_preferredIntervals; }
    void setPreferredIntervals(std::vector<double> seconds) { m_preferredIntervals = std::move(seconds); }

    /// Hands the event to every target; success when one took it. Enabled or not: whoever offers the command
    /// to the outside asks for that.
    MPRemoteCommandHandlerStatus send(const MPRemoteCommandEvent& event = {}) const {
        const auto take = [&event](const Handler& handler) {
            return handler(event) == MPRemoteCommandHandlerStatus::success;
        };
        return std::ranges::count_if(m_targets, take) > 0 ? MPRemoteCommandHandlerStatus::success
                                                          : MPRemoteCommandHandlerStatus::commandFailed;
    }

private:
    const std::function<void()>& m_onChange;
    std::vector<Handler> m_targets;
    std::vector<double> m_preferredIntervals;
    bool m_isEnabled = true;
};

/// The system's remote commands. On Linux MPRIS on the session bus. Main thread.
class MPRemoteCommandCenter final {
public:
    /// For the one that offers the commands: called when one is enabled or disabled. Empty to be told no
    /// more.
    void setOnChange(std::function<void()> onChange) { m_onChange = std::move(onChange); }

private:
    std::function<void()> m_onChange;

public:
    MPRemoteCommand playCommand{m_onChange};
    MPRemoteCommand pauseCommand{m_onChange};
    MPRemoteCommand togglePlayPauseCommand{m_onChange};
    MPRemoteCommand nextTrackCommand{m_onChange};
    MPRemoteCommand previousTrackCommand{m_onChange};
    MPRemoteCommand skipForwardCommand{m_onChange};
    MPRemoteCommand skipBackwardCommand{m_onChange};
    MPRemoteCommand changePlaybackPositionCommand{m_onChange};
};

} // namespace ondavia
