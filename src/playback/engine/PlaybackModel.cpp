#include "playback/engine/PlaybackModel.h"

#include <algorithm>
#include <cmath>

namespace ondavia::engine {
namespace {

/// A channel made of a movie's fragments states the length of its first ones, which it soon outgrows.
bool saysItsLength(const MpvState& state) {
    constexpr double roundingSeconds = 1;
    const double stated = state.statedDuration.value_or(0);
    return stated > 0 && state.reportedDuration <= stated + roundingSeconds;
}

} // namespace

FSPlaybackState playbackStateOf(Stage stage, const MpvState& state, SeekDirection lastSeek) {
    if (stage != Stage::Started) {
        return FSPlaybackState::Stopped;
    }
    if (state.seeking) {
        return lastSeek == SeekDirection::Forward ? FSPlaybackState::SeekingForward
                                                  : FSPlaybackState::SeekingBackward;
    }
    return state.paused ? FSPlaybackState::Paused : FSPlaybackState::Playing;
}

unsigned loadStateOf(Stage stage, const MpvState& state) {
    if (stage == Stage::Ended) {
        return FSLoadStatePlayable | FSLoadStatePlaythroughOK;
    }
    if (stage != Stage::Started) {
        return 0;
    }
    constexpr double nothingCached = 0.05;
    const bool seekingWithoutData = state.seeking && !state.cacheFull && state.cachedSeconds < nothingCached;
    if (state.pausedForCache || seekingWithoutData) {
        return FSLoadStateStalled;
    }
    constexpr double plenty = 10;
    const bool enough = state.cacheFull || state.cachedSeconds >= plenty;
    return FSLoadStatePlayable | (enough ? FSLoadStatePlaythroughOK : 0);
}

std::vector<const char*> stateNotifications(bool playbackChanged, FSPlaybackState playback, bool loadChanged,
                                            unsigned load) {
    std::vector<const char*> names;
    if (playbackChanged) {
        names.push_back(FSPlayerPlaybackStateDidChangeNotification);
    }
    const bool playsStalled =
        playbackChanged && playback == FSPlaybackState::Playing && (load & FSLoadStateStalled) != 0;
    if (loadChanged || playsStalled) {
        names.push_back(FSPlayerLoadStateDidChangeNotification);
    }
    return names;
}

double durationOf(const MpvState& state) {
    const bool canBeSoughtThrough = state.seekable && !state.seekableInCache;
    // The size of a playlist says nothing of what it lists.
    const bool isFile = state.fileSize > 0 && state.fileFormat != "hls" && state.fileFormat != "dash";
    return canBeSoughtThrough || isFile || saysItsLength(state) ? state.reportedDuration : 0;
}

FSFinishReason reasonOfEnd(DataEnd end, bool isLive, double position, double duration) {
    if (end == DataEnd::BrokenOff || (isLive && !(duration > 0))) {
        return FSFinishReason::PlaybackError;
    }
    if (end == DataEnd::Whole) {
        return FSFinishReason::PlaybackEnded;
    }
    constexpr double slackSeconds = 3;
    constexpr double slackShare = 0.02;
    const double slack = std::max(slackSeconds, duration * slackShare);
    const bool atKnownEnd = duration > 0 && position >= duration - slack;
    return atKnownEnd ? FSFinishReason::PlaybackEnded : FSFinishReason::PlaybackError;
}

double mpvVolume(float gain) {
    constexpr double full = 100;
    return full * std::cbrt(std::clamp(static_cast<double>(gain), 0.0, 1.0));
}

} // namespace ondavia::engine
