#include "playback/engine/EngineReaper.h"

#include "base/AppLogger.h"
#include "platform/CountedThreads.h"

#include <mpv/client.h>

#include <system_error>

namespace ondavia::engine {
namespace {

/// Never destroyed, since that would wait for the last of them.
CountedThreads& threads() {
    static auto* const all = new CountedThreads;
    return *all;
}

} // namespace

std::shared_ptr<void> announceClosing() {
    return threads().announce();
}

void reap(mpv_handle* handle, std::shared_ptr<void> announcement) {
    try {
        threads().start([handle, announcement](const std::stop_token&) { mpv_terminate_destroy(handle); });
    } catch (const std::system_error& error) {
        AppLogger::player.error("No thread to end an engine on: %s", {error.what()});
        mpv_terminate_destroy(handle);
    }
}

bool waitForReapedEngines(std::chrono::milliseconds timeout) {
    return threads().wait(timeout);
}

} // namespace ondavia::engine
