#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace ondavia {

/// A picture of what plays, ready for whoever shows it. The same for every size asked.
struct MPMediaItemArtwork final {
    /// In pixels.
    int width = 0;
    int height = 0;
    /// As PNG, made here: nothing of the bytes that came from outside is in it.
    std::string png;
};

/// What plays, as the system shows it. Times in seconds.
struct MPNowPlayingInfo final {
    std::string title;
    /// 0 while paused; 1.0 is normal.
    double playbackRate = 0;
    double defaultPlaybackRate = 1.0;
    bool isLiveStream = false;
    std::optional<std::string> artist;
    /// Where playback stood when this was written; from there on it moves by the rate.
    std::optional<double> elapsedPlaybackTime;
    std::optional<double> playbackDuration;
    std::shared_ptr<const MPMediaItemArtwork> artwork;

    bool operator==(const MPNowPlayingInfo&) const = default;
};

/// The system's Now Playing centre. On Linux MPRIS on the session bus. Main thread.
class MPNowPlayingInfoCenter final {
public:
    /// Absent while nothing plays.
    [[nodiscard]] const std::optional<MPNowPlayingInfo>& nowPlayingInfo() const { return m_info; }
    /// Tells whoever shows it, also of what is as before: the time that it was written at counts.
    void setNowPlayingInfo(std::optional<MPNowPlayingInfo> info) {
        m_info = std::move(info);
        if (m_onChange) {
            m_onChange();
        }
    }

    /// For the one that shows it; empty to be told no more.
    void setOnChange(std::function<void()> onChange) { m_onChange = std::move(onChange); }

private:
    std::optional<MPNowPlayingInfo> m_info;
    std::function<void()> m_onChange;
};

} // namespace ondavia
