#pragma once

#include "playback/engine/MpvOptions.h"

#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace ondavia::engine {

class MpvHandle;
class VideoRenderer;

/// What an engine needs besides its stream: mpv with its threads and its sound output, and the render context
/// with its shaders.
struct EngineCore final {
    std::shared_ptr<MpvHandle> handle;
    /// Null without a picture.
    std::shared_ptr<VideoRenderer> renderer;
    /// What mpv was started with.
    std::vector<MpvOption> options;
};

/// Releases the core for good.
void end(EngineCore& core);

/// Keeps the core of the engine that was shut down last for the next one, so that changing the channel costs
/// the connection and nothing else. There is one at the most, and only after something has played. Taken in
/// the same turn of the event loop, it still has its sound output open; after that nothing is loaded in it
/// any more, and when nobody has come for it for a while, it ends. Main thread.
class EngineShelf final {
public:
    static constexpr std::chrono::seconds patience{30};

    explicit EngineShelf(std::chrono::milliseconds wait = patience);
    ~EngineShelf();
    EngineShelf(const EngineShelf&) = delete;
    EngineShelf& operator=(const EngineShelf&) = delete;

    /// `core` has changed its owner; the one that was here ends.
    void put(EngineCore core);
    /// Absent where there is none that was started with these options.
    [[nodiscard]] std::optional<EngineCore> take(const std::vector<MpvOption>& options);

private:
    void clear();

    std::optional<EngineCore> m_core;
    QTimer m_nextTurn;
    QTimer m_tooLate;
};

} // namespace ondavia::engine
