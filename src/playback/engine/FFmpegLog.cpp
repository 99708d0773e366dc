#include "playback/engine/FFmpegLog.h"

#include "base/AppLogger.h"
#include "base/Redaction.h"

#include <mpv/client.h>

#include <array>
#include <cstdarg>
#include <string>
#include <string_view>

extern "C" {
#include <libavutil/log.h>
}

namespace ondavia::engine {
namespace {

/// Damaged streams make decoders and demuxers complain many times a second, and play on: diagnostics. What
/// protocols report is why a stream failed.
bool isFailure(void* source, int level) {
    const auto* avClass = source == nullptr ? nullptr : *static_cast<const AVClass* const*>(source);
    return level <= AV_LOG_ERROR && avClass != nullptr && avClass->category == AV_CLASS_CATEGORY_NA;
}

void write(void* source, int level, const char* format, va_list arguments) {
    if (level > AV_LOG_WARNING) {
        return;
    }
    std::array<char, 1024> buffer{};
    // Not kept from call to call: a line that FFmpeg writes in pieces comes out in pieces.
    int printPrefix = 1;
    const int needed = av_log_format_line2(source, level, format, arguments, buffer.data(),
                                           static_cast<int>(buffer.size()), &printPrefix);
    const auto end = needed < static_cast<int>(buffer.size()) ? TextEnd::Whole : TextEnd::Cut;
    std::string_view line(buffer.data());
    while (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    if (isFailure(source, level)) {
        AppLogger::player.error("%{public}s", {maskSecrets(line, end)});
    } else {
        AppLogger::player.debug("%{public}s", {maskSecrets(line, end)});
    }
}

} // namespace

void takeOverFFmpegLog() {
    [[maybe_unused]] static mpv_handle* const owner = [] {
        mpv_handle* handle = mpv_create();
        av_log_set_callback(write);
        return handle;
    }();
}

} // namespace ondavia::engine
