#pragma once

namespace ondavia::engine {

/// Sends what FFmpeg says to the application's log, with URLs masked, for the rest of the process. Of mpv's
/// instances the oldest has FFmpeg's log, and when it ends the others' lines go to standard error as they
/// are; so an instance that never plays is made first and never ends. Main thread, before the first engine;
/// further calls do nothing.
void takeOverFFmpegLog();

} // namespace ondavia::engine
