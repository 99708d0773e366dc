#pragma once

#include <QQuickItem>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>

namespace ondavia::bench {

/// When a first frame was drawn; 0 until then. Any thread.
using FirstFrame = std::atomic<std::chrono::steady_clock::rep>;

/// libmpv with the engine's own options for `url`, drawn into an item that fills `window`: the least that a
/// film in a Qt Quick window needs. Opens the film as soon as the item is drawn; its end ends mpv. `window`,
/// which is on screen, and `firstFrame` outlive it. Raises std::runtime_error where mpv cannot be had.
[[nodiscard]] std::unique_ptr<QQuickItem> makeBareVideo(QQuickWindow& window, const std::string& url,
                                                        FirstFrame& firstFrame);

} // namespace ondavia::bench
