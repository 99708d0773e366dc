#pragma once

namespace ondavia::engine {

/// Sends what FFmpeg says to the application's log, with URLs masked. mpv takes FFmpeg's log over with its
/// first instance and sends it to standard error once that instance is gone, while others still play; so
/// this is called after each start of an instance. Any thread.
void takeOverFFmpegLog();

} // namespace ondavia::engine
