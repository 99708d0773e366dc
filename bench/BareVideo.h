#pragma once

#include <QQuickItem>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>

namespace ondavia::bench {

/// What becomes of bare videos. Any thread.
struct BareSigns final {
    /// When the first frame was drawn; 0 until then.
    std::atomic<std::chrono::steady_clock::rep> firstFrame = 0;
    /// Instances of mpv that have not ended.
    std::atomic<int> running = 0;
};

/// libmpv with the engine's own options for `url`, drawn into an item that fills `window`: the least that a
/// film in a Qt Quick window needs. Opens the film as soon as the item is drawn; its end ends mpv. `window`,
/// which is on screen, and `signs` outlive it. Raises std::runtime_error where mpv cannot be had.
[[nodiscard]] std::unique_ptr<QQuickItem> makeBareVideo(QQuickWindow& window, const std::string& url,
                                                        BareSigns& signs);

} // namespace ondavia::bench
