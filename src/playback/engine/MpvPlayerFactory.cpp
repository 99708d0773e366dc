#include "playback/engine/MpvPlayerFactory.h"

#include "playback/engine/EngineReaper.h"
#include "playback/engine/EngineShelf.h"
#include "playback/engine/FFmpegLog.h"
#include "playback/engine/MpvPlayer.h"

#include <QCoreApplication>

#include <clocale>

namespace ondavia {
namespace {

/// A server that never answers may hold a thread longer than anybody wants to wait for the program's end.
void waitAtEnd() {
    waitForShutDownEngines(std::chrono::seconds(2));
}

void waitAtEndOnce() {
    [[maybe_unused]] static const bool registered = [] {
        qAddPostRoutine(waitAtEnd);
        return true;
    }();
}

} // namespace

FSPlayerFactory makeMpvPlayerFactory(NotificationCenter& center, MpvOutputs outputs) {
    std::setlocale(LC_NUMERIC, "C");
    engine::takeOverFFmpegLog();
    waitAtEndOnce();
    return [&center, outputs, shelf = std::make_shared<engine::EngineShelf>()](
               const std::string& content, const FSOptions& options) -> std::shared_ptr<FSPlayer> {
        return std::make_shared<engine::MpvPlayer>(center, outputs, shelf, content, options);
    };
}

bool waitForShutDownEngines(std::chrono::milliseconds timeout) {
    return engine::waitForReapedEngines(timeout);
}

} // namespace ondavia
