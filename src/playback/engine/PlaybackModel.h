#pragma once

#include "base/PlaybackClock.h"
#include "platform/FSPlayer.h"
#include "playback/engine/MpvProperties.h"

#include <vector>

namespace ondavia::engine {

/// How far an engine has come with its one URL.
enum class Stage {
    /// Nothing was asked for yet, or the stream is being opened.
    Opening,
    /// The stream is open; no picture or sound yet.
    Prepared,
    /// The first picture or sound is out.
    Started,
    /// The end was reached; seeking back leads to Started again.
    Ended,
    /// The stream failed; this engine does nothing more.
    Failed,
};

enum class SeekDirection { Forward, Backward };

[[nodiscard]] FSPlaybackState playbackStateOf(Stage stage, const MpvState& state, SeekDirection lastSeek);

/// FSLoadState bits; 0 until the first picture or sound is out.
[[nodiscard]] unsigned loadStateOf(Stage stage, const MpvState& state);

/// What a change of states has to be told by, in order: the load state after the playback state and, once a
/// stream plays although it is stalled, again. Who listens takes "playing" for the end of a stall.
[[nodiscard]] std::vector<const char*> stateNotifications(bool playbackChanged, FSPlaybackState playback,
                                                          bool loadChanged, unsigned load);

/// Seconds; 0 for a stream without an end, as a live channel. For those mpv counts what was read so far, so
/// a duration stands only when the stream can be sought through, is a file of known size or says itself how
/// long it is.
[[nodiscard]] double durationOf(const MpvState& state);

/// How the data of a stream ended, as far as that is known.
enum class DataEnd {
    /// All of it came.
    Whole,
    /// The connection broke off, or never gave any.
    BrokenOff,
    /// FFmpeg fetched it itself, as it does with playlists, or the demuxer stopped before the end.
    Unknown
};

/// What an end of playback means. mpv takes a cut connection for the end of the data, so that the
/// connection decides. Where it cannot be asked the position does: an end well before the known end is an
/// error. `isLive` marks what has no end: every end is an error, unless it has a duration as a recording has.
[[nodiscard]] FSFinishReason reasonOfEnd(DataEnd end, bool isLive, double position, double duration);

/// mpv's volume (0 to 100, a cube root of the gain) for a gain of 0.0 to 1.0.
[[nodiscard]] double mpvVolume(float gain);

} // namespace ondavia::engine
