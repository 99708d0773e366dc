#include "app/Services.h"
#include "base/VisibleText.h"
#include "cli/Account.h"
#include "cli/Arguments.h"
#include "cli/Items.h"
#include "cli/Output.h"
#include "protocol/XtreamAPIClient.h"
#include "subtitles/SRTParser.h"
#include "subtitles/SubtitleLoader.h"
#include "subtitles/SubtitleText.h"

#include <QCoroFuture>
#include <QtConcurrent>

#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <memory>

namespace ondavia::cli {
namespace {

constexpr double secondsUntilFirstFrame = 30;

Record recordOfTrack(const OndaviaMediaTrack& track) {
    const bool isAudio = track.kind == OndaviaMediaTrack::Kind::audio;
    return {{"id", track.id},
            {"kind", std::string(isAudio ? "audio" : "subtitle")},
            {"name", track.name},
            {"isEnabled", track.isEnabled},
            {"streamIndex", toValue(isAudio ? track.audioStreamIndex : track.subtitleStreamIndex)}};
}

/// All that the application would load of such a file. Raises CommandError.
std::string bytesOf(const std::string& path) {
    constexpr std::size_t limit = SubtitleLoader::maximumLoad;
    std::string bytes;
    std::string block(std::size_t{1} << 20, '\0');
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    while (file && bytes.size() <= limit) {
        file.read(block.data(), static_cast<std::streamsize>(block.size()));
        bytes.append(block, 0, static_cast<std::size_t>(file.gcount()));
    }
    if (bytes.size() > limit) {
        throw CommandError(path + " is longer than " + std::to_string(limit) + " bytes");
    }
    if (!file.eof()) {
        throw CommandError("cannot read " + path + ": " + std::strerror(errno != 0 ? errno : EIO));
    }
    return bytes;
}

} // namespace

QCoro::Task<void> showTracks(CommandContext context) {
    const Channel item = co_await findItem(context.services, context.arguments.id);
    requireStream(item);
    PlayerManager& manager = context.services.playerManager;
    std::stop_source firstFrame;
    const QObject listener;
    QObject::connect(&manager, &PlayerManager::hasLoggedFirstFrameTracksChanged, &listener,
                     [&firstFrame] { firstFrame.request_stop(); });
    manager.play(item, 0);
    if (manager.error()) {
        throw CommandError(*manager.error());
    }
    const std::stop_token end = firstFrame.get_token();
    const bool isTooLate = co_await context.services.scheduler->sleep(secondsUntilFirstFrame, end);
    auto tracks = manager.availableAudioTracks();
    const auto subtitles = manager.availableSubtitleTracks();
    manager.stop();
    if (isTooLate) {
        throw CommandError("nothing was played in this time");
    }
    tracks.insert(tracks.end(), subtitles.begin(), subtitles.end());
    Output::Table table(context.output, {"id", "kind", "name", "isEnabled"});
    for (const auto& track : tracks) {
        table.add(recordOfTrack(track));
    }
    table.finish();
}

QCoro::Task<void> parseSubtitles(CommandContext context) {
    const std::string& path = context.arguments.file;
    std::string bytes;
    // Qt's future would take its name from it.
    std::exception_ptr failure;
    // A pipe may never end, and an interruption is heard on this thread.
    const QFuture<void> reading = QtConcurrent::run([&] {
        try {
            bytes = bytesOf(path);
        } catch (const CommandError&) {
            failure = std::current_exception();
        }
    });
    co_await reading;
    if (failure) {
        std::rethrow_exception(failure);
    }
    const auto cues = SRTParser::parse(decodeSubtitleText(std::move(bytes)));
    if (cues.empty()) {
        throw CommandError("no subtitles can be read out of " + path);
    }
    Output::Table table(context.output, {"start", "end", "text"});
    for (const auto& cue : cues) {
        table.add({{"start", cue.start}, {"end", cue.end}, {"text", cue.text}});
    }
    table.finish();
    co_return;
}

QCoro::Task<void> findSubtitles(CommandContext context) {
    const Channel item = requireItem(context.services, context.arguments.id);
    if (item.type != "movie") {
        throw CommandError(item.id + " is no film: only films have subtitle files to be found");
    }
    const auto client = requireClient(context.services.appState);
    const auto urls = co_await client->getSubtitleURLsForVOD(item.streamId);
    if (urls.empty()) {
        writeLine(stderr, "the provider lists no subtitle files for this film, or could not be asked");
    }
    for (const std::string& url : urls) {
        context.output.printURL(item.id, url);
    }
}

} // namespace ondavia::cli
