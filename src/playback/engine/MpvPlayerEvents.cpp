#include "base/AppLogger.h"
#include "base/Redaction.h"
#include "platform/NotificationCenter.h"
#include "playback/engine/MpvHandle.h"
#include "playback/engine/MpvPlayer.h"
#include "playback/engine/MpvVideoItem.h"
#include "playback/engine/PublishedStream.h"

#include <string_view>

namespace ondavia::engine {
namespace {

/// `text` without `address` and its path, in whatever way mpv and FFmpeg quote them.
std::string withoutAddress(std::string text, std::string_view address) {
    const auto authority = address.find("://");
    const auto path = authority == std::string_view::npos ? authority : address.find('/', authority + 3);
    constexpr std::size_t tellingLength = 4;
    if (path == std::string_view::npos || address.size() - path < tellingLength) {
        return text;
    }
    const std::string_view secret = address.substr(path);
    for (auto at = text.find(secret); at != std::string::npos; at = text.find(secret, at)) {
        text.replace(at, secret.size(), maskedText);
    }
    return text;
}

} // namespace

void MpvPlayer::takeEvents() {
    m_eventsAnnounced = false;
    // A handler of a notification may shut the engine down and release it.
    const auto self = shared_from_this();
    const auto handle = m_handle;
    if (handle == nullptr) {
        return;
    }
    for (mpv_event event = handle->nextEvent(); event.event_id != MPV_EVENT_NONE;
         event = handle->nextEvent()) {
        this->handle(event);
        if (m_handle == nullptr) {
            return;
        }
    }
    settle();
}

void MpvPlayer::handle(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_PROPERTY_CHANGE:
        applyProperty(m_state, event.reply_userdata, *static_cast<const mpv_event_property*>(event.data));
        break;
    case MPV_EVENT_START_FILE:
        handleStart();
        break;
    case MPV_EVENT_SEEK:
        m_clock.expectJump();
        break;
    case MPV_EVENT_HOOK:
        m_awaitsOutput = true;
        // Before anything is read, which mpv would count as well.
        ask(Answer::DurationAtOpening);
        break;
    case MPV_EVENT_FILE_LOADED:
        handleLoaded();
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        m_clock.expectJump();
        if (!m_playbackBegan) {
            // What was reported of the tracks may be older than their selection.
            ask(Answer::TracksAtBeginning);
        }
        break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
        if (!m_statistics.take(event)) {
            handleReply(static_cast<Answer>(event.reply_userdata), event);
        }
        break;
    case MPV_EVENT_END_FILE:
        handleEndOfFile(event);
        break;
    case MPV_EVENT_LOG_MESSAGE:
        handleLogMessage(event);
        break;
    default:
        break;
    }
}

bool MpvPlayer::ask(Answer answer) const {
    const auto request = [this, answer](const char* name, mpv_format format) {
        return m_handle->requestProperty(static_cast<std::uint64_t>(answer), name, format);
    };
    switch (answer) {
    case Answer::TracksAtBeginning:
        return request("track-list", MPV_FORMAT_NODE);
    case Answer::PositionNow:
        return request("time-pos", MPV_FORMAT_DOUBLE);
    case Answer::DurationAtOpening:
    case Answer::DurationNow:
        return request("duration", MPV_FORMAT_DOUBLE);
    case Answer::SeekableAtSeek:
        return request("seekable", MPV_FORMAT_FLAG);
    case Answer::SeekableInCacheAtSeek:
        return request("partially-seekable", MPV_FORMAT_FLAG);
    }
    return false;
}

void MpvPlayer::handleReply(Answer answer, const mpv_event& event) {
    // Null when mpv has no such value now.
    const void* value = event.error < 0 ? nullptr : static_cast<const mpv_event_property*>(event.data)->data;
    const auto isSet = [value] { return value != nullptr && *static_cast<const int*>(value) != 0; };
    switch (answer) {
    case Answer::TracksAtBeginning:
        if (value != nullptr) {
            handleBeginning(parseTrackList(*static_cast<const mpv_node*>(value)));
        }
        break;
    case Answer::DurationAtOpening:
        m_state.statedDuration = value != nullptr ? *static_cast<const double*>(value) : 0;
        m_state.reportedDuration = *m_state.statedDuration;
        awaitOutput();
        break;
    case Answer::PositionNow:
    case Answer::DurationNow:
        takeTimes(answer, static_cast<const double*>(value));
        break;
    case Answer::SeekableAtSeek:
        m_state.seekable = isSet();
        break;
    case Answer::SeekableInCacheAtSeek:
        m_state.seekableInCache = isSet();
        seek();
        break;
    }
}

// The position stays at its last value when mpv has none.
void MpvPlayer::takeTimes(Answer answer, const double* seconds) {
    if (answer == Answer::DurationNow) {
        m_state.reportedDuration = seconds != nullptr ? *seconds : 0;
        --m_timesAsked;
    } else if (seconds != nullptr) {
        takePosition(*seconds);
    }
}

void MpvPlayer::takePosition(double seconds) {
    // mpv goes to the end of a film whose data broke off, though it shows nothing of it.
    constexpr double leap = 2;
    const auto now = PlaybackClock::Time::clock::now();
    if (isUnderWay(seconds, now)) {
        return;
    }
    m_soughtPosition.reset();
    const bool isBroken = m_stream != nullptr && m_stream->end() == MediaStreamEnd::BrokenOff;
    if (!isBroken || seconds <= m_clock.position(now) + leap) {
        m_clock.report(seconds, now);
    }
}

bool MpvPlayer::isUnderWay(double seconds, PlaybackClock::Time now) const {
    constexpr double nearEnough = 1.5;
    // One that leads nowhere near, as beyond the end.
    constexpr std::chrono::seconds longestWay{2};
    return m_soughtPosition && std::abs(seconds - *m_soughtPosition) > nearEnough &&
           (m_state.seeking || now - m_soughtAt < longestWay);
}

void MpvPlayer::handleStart() {
    m_closingTimeout.stop();
    if (m_item != nullptr) {
        m_item->awaitPicture();
    }
    if (!std::exchange(m_hasBegun, true)) {
        setPaused(m_paused);
        observeProperties(*m_handle);
    }
}

void MpvPlayer::handleLoaded() {
    if (m_stage != Stage::Opening) {
        return;
    }
    m_stage = Stage::Prepared;
    m_subtitles.begin(m_handle);
    if (m_seekTarget) {
        considerSeek();
    }
    post(FSPlayerIsPreparedToPlayNotification);
}

void MpvPlayer::handleBeginning(TrackList tracks) {
    m_state.tracks = std::move(tracks);
    m_playbackBegan = true;
}

void MpvPlayer::handleEndOfFile(const mpv_event& event) {
    const auto& end = *static_cast<const mpv_event_end_file*>(event.data);
    if (m_stage == Stage::Opening && m_stream != nullptr && m_stream->isPlaylist()) {
        m_playlistAnswer = m_stream->answer();
        m_stream.reset();
        loadFile(m_content);
    } else if (end.reason == MPV_END_FILE_REASON_ERROR) {
        AppLogger::player.error("Playback failed: %{public}s", {mpv_error_string(end.error)});
        finish(FSFinishReason::PlaybackError);
    } else if (end.reason == MPV_END_FILE_REASON_EOF) {
        finish(judgeEnd());
    }
}

void MpvPlayer::handleLogMessage(const mpv_event& event) const {
    const auto& message = *static_cast<const mpv_event_log_message*>(event.data);
    std::string_view line(message.text);
    while (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    const std::string text = withoutAddress(std::string(line), m_content);
    // mpv complains of playlists that it leaves to FFmpeg.
    const bool isExpected = m_stage == Stage::Opening && m_stream != nullptr && m_stream->isPlaylist();
    if (message.log_level <= MPV_LOG_LEVEL_ERROR && !isExpected) {
        AppLogger::player.error("[%{public}s] %s", {message.prefix, text});
    } else {
        AppLogger::player.debug("[%{public}s] %s", {message.prefix, text});
    }
}

void MpvPlayer::settle() {
    const auto self = shared_from_this();
    settleBeginning();
    settleEnd();
    publishStates();
    runClock();
}

void MpvPlayer::settleBeginning() {
    if (m_stage != Stage::Prepared) {
        return;
    }
    const bool picture = !m_drawsNothing && selectedTrack(m_state.tracks, "video").has_value();
    if (!m_toldFirstFrame && (m_drewFrame || (m_playbackBegan && !picture))) {
        m_toldFirstFrame = true;
        post(FSPlayerFirstVideoFrameRenderedNotification);
    }
    if (m_stage == Stage::Prepared && m_playbackBegan && m_toldFirstFrame) {
        m_stage = Stage::Started;
    }
}

void MpvPlayer::settleEnd() {
    const bool isRunning = m_stage == Stage::Prepared || m_stage == Stage::Started;
    if (!m_state.endReached) {
        m_judgesEnd = false;
        m_stage = m_stage == Stage::Ended ? Stage::Started : m_stage;
        return;
    }
    if (isRunning && !std::exchange(m_judgesEnd, true)) {
        // What was asked for before may be answered with the times of before.
        askTimesAnew();
    }
    if (isRunning && m_timesAsked == 0) {
        finish(judgeEnd());
    }
}

FSFinishReason MpvPlayer::judgeEnd() const {
    const auto connection = m_stream != nullptr ? m_stream->end() : MediaStreamEnd::Open;
    auto end = DataEnd::Unknown;
    if (connection == MediaStreamEnd::Whole || isFileAddress(m_content)) {
        end = DataEnd::Whole;
    } else if (connection == MediaStreamEnd::BrokenOff) {
        end = DataEnd::BrokenOff;
    }
    return reasonOfEnd(end, m_isLive, m_clock.position(PlaybackClock::Time::clock::now()),
                       durationOf(m_state));
}

void MpvPlayer::runClock() {
    const bool stalled = m_state.endReached || (m_loadState & FSLoadStateStalled) != 0;
    const double rate = isPlaying() && !stalled ? static_cast<double>(m_rate) : 0;
    if (rate != m_clock.rate()) {
        m_clock.run(rate, PlaybackClock::Time::clock::now());
        askTimesAnew();
    }
}

void MpvPlayer::finish(FSFinishReason reason) {
    if (m_stage == Stage::Failed || m_stage == Stage::Ended) {
        return;
    }
    m_stage = reason == FSFinishReason::PlaybackEnded ? Stage::Ended : Stage::Failed;
    publishStates();
    post(FSPlayerDidFinishNotification,
         {{QString::fromLatin1(FSPlayerDidFinishReasonUserInfoKey), static_cast<int>(reason)}});
}

void MpvPlayer::publishStates() {
    if (m_stage != Stage::Opening && m_publishedTracks != m_state.tracks) {
        m_publishedTracks = m_state.tracks;
        m_subtitles.follow(m_state.tracks);
        post(FSPlayerSelectedStreamDidChangeNotification);
    }
    const unsigned formerLoad = std::exchange(m_loadState, loadStateOf(m_stage, m_state));
    const auto formerPlayback = std::exchange(m_playbackState, playbackStateOf(m_stage, m_state, m_lastSeek));
    for (const char* name : stateNotifications(m_playbackState != formerPlayback, m_playbackState,
                                               m_loadState != formerLoad, m_loadState)) {
        post(name);
    }
}

void MpvPlayer::post(const char* name, QVariantMap userInfo) {
    if (!m_wasShutDown) {
        m_center.post({name, static_cast<const FSPlayer*>(this), std::move(userInfo)});
    }
}

} // namespace ondavia::engine
