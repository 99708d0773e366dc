#include "playback/TrackDump.h"

#include "base/AppLogger.h"
#include "playback/StreamMeta.h"

#include <string>

namespace ondavia {
namespace {

std::int64_t number(const QVariantMap& stream, const char* key, std::int64_t otherwise) {
    return metaInt(stream, key).value_or(otherwise);
}

std::string detailOf(const QVariantMap& stream, const std::string& type) {
    if (type == "video") {
        return std::to_string(number(stream, "width", 0)) + "x" + std::to_string(number(stream, "height", 0));
    }
    if (type == "audio") {
        return std::to_string(number(stream, "sample_rate", 0)) + "Hz";
    }
    if (type == "timedtext") {
        return "lang=" + metaText(stream, "language").value_or("") +
               " title=" + metaText(stream, "title").value_or("");
    }
    return {};
}

void logStream(const QVariantMap& stream) {
    const std::string type = metaText(stream, "type").value_or("?");
    AppLogger::player.debug("  [%ld] type=%s codec=%s profile=%s %s bitrate=%ld",
                            {number(stream, "stream_idx", -1), type,
                             metaText(stream, "codec_name").value_or("?"),
                             metaText(stream, "codec_profile").value_or(""), detailOf(stream, type),
                             number(stream, "bitrate", 0)});
}

} // namespace

void logTrackDump(const FSMonitor& monitor) {
    const auto streams = streamsOf(monitor.mediaMeta);
    AppLogger::player.debug("==== First frame track dump ====");
    AppLogger::player.debug("Active video stream index: %ld", {number(monitor.videoMeta, "stream_idx", -1)});
    AppLogger::player.debug("Active audio stream index: %ld", {number(monitor.audioMeta, "stream_idx", -1)});
    AppLogger::player.debug("Active subtitle stream index: %ld",
                            {number(monitor.subtitleMeta, "stream_idx", -1)});
    AppLogger::player.debug("Stream count: %ld", {streams.size()});
    for (const auto& stream : streams) {
        logStream(stream);
    }
    AppLogger::player.debug("================================");
}

} // namespace ondavia
