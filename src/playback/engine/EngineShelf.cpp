#include "playback/engine/EngineShelf.h"

#include "playback/engine/MpvHandle.h"
#include "playback/engine/VideoRenderer.h"

#include <utility>

namespace ondavia::engine {

void end(EngineCore& core) {
    if (core.renderer != nullptr) {
        core.renderer->stop();
    }
    core.handle->beginClosing();
    core = {};
}

EngineShelf::EngineShelf(std::chrono::milliseconds wait) {
    m_nextTurn.setSingleShot(true);
    QObject::connect(&m_nextTurn, &QTimer::timeout, &m_nextTurn, [this] { m_core->handle->unload(); });
    m_tooLate.setSingleShot(true);
    m_tooLate.setInterval(wait);
    QObject::connect(&m_tooLate, &QTimer::timeout, &m_tooLate, [this] { clear(); });
}

EngineShelf::~EngineShelf() {
    clear();
}

void EngineShelf::put(EngineCore core) {
    clear();
    m_core = std::move(core);
    m_nextTurn.start();
    m_tooLate.start();
}

std::optional<EngineCore> EngineShelf::take(const std::vector<MpvOption>& options) {
    if (!m_core || m_core->options != options) {
        return std::nullopt;
    }
    m_nextTurn.stop();
    m_tooLate.stop();
    return std::exchange(m_core, std::nullopt);
}

void EngineShelf::clear() {
    m_nextTurn.stop();
    m_tooLate.stop();
    if (auto core = std::exchange(m_core, std::nullopt)) {
        end(*core);
    }
}

} // namespace ondavia::engine
