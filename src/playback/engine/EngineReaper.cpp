#include "playback/engine/EngineReaper.h"

#include "base/AppLogger.h"

#include <mpv/client.h>

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace ondavia::engine {
namespace {

struct Ledger final {
    std::mutex mutex;
    std::condition_variable allEnded;
    int closing = 0;
};

/// Never destroyed: a handle that outlasts the wait at exit still reports here.
Ledger& ledger() {
    static auto* book = new Ledger;
    return *book;
}

void end(mpv_handle* handle) {
    mpv_terminate_destroy(handle);
    Ledger& book = ledger();
    const std::lock_guard lock(book.mutex);
    --book.closing;
    book.allEnded.notify_all();
}

} // namespace

void announceClosing() {
    Ledger& book = ledger();
    const std::lock_guard lock(book.mutex);
    ++book.closing;
}

void reap(mpv_handle* handle) {
    try {
        std::thread(end, handle).detach();
    } catch (const std::system_error& error) {
        AppLogger::player.error("No thread to end an engine on: %s", {error.what()});
        end(handle);
    }
}

bool waitForReapedEngines(std::chrono::milliseconds timeout) {
    Ledger& book = ledger();
    std::unique_lock lock(book.mutex);
    return book.allEnded.wait_for(lock, timeout, [&book] { return book.closing == 0; });
}

} // namespace ondavia::engine
