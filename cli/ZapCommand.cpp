#include "app/Services.h"
#include "base/VisibleText.h"
#include "cli/Arguments.h"
#include "cli/Items.h"
#include "cli/Output.h"

#include <chrono>
#include <optional>
#include <vector>

namespace ondavia::cli {
namespace {

using Milliseconds = std::optional<std::int64_t>;

/// Plays the item for so many seconds, in place of what plays. The time to its first frame; absent when there
/// was none in that time.
QCoro::Task<Milliseconds> zapTo(Services& services, Channel item, double seconds) {
    PlayerManager& manager = services.playerManager;
    const QObject listener;
    const auto begin = std::chrono::steady_clock::now();
    Milliseconds firstFrame;
    manager.play(item, 0);
    if (manager.error()) {
        writeLine(stderr, "warning: " + item.id + ": " + *manager.error());
        co_return std::nullopt;
    }
    QObject::connect(&manager, &PlayerManager::hasLoggedFirstFrameTracksChanged, &listener, [&] {
        if (manager.hasLoggedFirstFrameTracks() && !firstFrame) {
            const auto taken = std::chrono::steady_clock::now() - begin;
            firstFrame = std::chrono::duration_cast<std::chrono::milliseconds>(taken).count();
        }
    });
    co_await services.scheduler->sleep(seconds);
    co_return firstFrame;
}

Record recordOfZap(const Channel& item, const Milliseconds& firstFrame, OutputFormat format) {
    const Value time = format == OutputFormat::Json ? toValue(firstFrame)
                       : firstFrame                 ? Value(std::to_string(*firstFrame) + " ms")
                                                    : Value(std::string("no frame"));
    return {{"id", item.id}, {"name", item.name}, {"milliseconds", time}};
}

} // namespace

QCoro::Task<void> zapThrough(CommandContext context) {
    std::vector<Channel> items;
    for (const auto& id : context.arguments.ids) {
        const Channel item = co_await findItem(context.services, id);
        requireStream(item);
        items.push_back(item);
    }
    std::size_t dark = 0;
    for (const auto& item : items) {
        const auto firstFrame = co_await zapTo(context.services, item, context.arguments.playFor);
        dark += firstFrame ? 0 : 1;
        context.output.printLine(recordOfZap(item, firstFrame, context.output.format()), {16, 32, 8});
    }
    context.services.playerManager.stop();
    if (dark > 0) {
        throw CommandError(std::to_string(dark) + " of " + std::to_string(items.size()) +
                           " showed no frame in this time");
    }
}

} // namespace ondavia::cli
