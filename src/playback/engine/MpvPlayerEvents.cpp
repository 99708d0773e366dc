#include "base/AppLogger.h"
#include "base/Redaction.h"
#include "platform/NotificationCenter.h"
#include "playback/engine/MpvHandle.h"
#include "playback/engine/MpvPlayer.h"
#include "playback/engine/MpvVideoItem.h"

#include <string_view>

namespace ondavia::engine {
namespace {

// Of the answers that are asked for outside the table of properties, whose ids are small.
constexpr std::uint64_t tracksAtBeginning = 1000;
constexpr std::uint64_t durationAtOpening = 1001;

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
    for (const mpv_event* event = &handle->nextEvent(); event->event_id != MPV_EVENT_NONE;
         event = &handle->nextEvent()) {
        this->handle(*event);
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
    case MPV_EVENT_HOOK:
        m_hook = static_cast<const mpv_event_hook*>(event.data)->id;
        // Before anything is read, which mpv would count as well.
        m_handle->requestProperty(durationAtOpening, "duration", MPV_FORMAT_DOUBLE);
        break;
    case MPV_EVENT_FILE_LOADED:
        handleLoaded();
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        if (!m_playbackBegan) {
            // What was reported of the tracks may be older than their selection.
            m_handle->requestProperty(tracksAtBeginning, "track-list", MPV_FORMAT_NODE);
        }
        break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
        handleReply(event);
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

void MpvPlayer::handleReply(const mpv_event& event) {
    const auto* property = static_cast<const mpv_event_property*>(event.data);
    if (event.reply_userdata == durationAtOpening) {
        m_state.statedDuration = event.error >= 0 ? *static_cast<const double*>(property->data) : 0;
        awaitOutput();
    } else if (event.reply_userdata == tracksAtBeginning && event.error >= 0) {
        handleBeginning(parseTrackList(*static_cast<const mpv_node*>(property->data)));
    }
}

void MpvPlayer::handleLoaded() {
    if (m_stage != Stage::Opening) {
        return;
    }
    m_stage = Stage::Prepared;
    for (const auto& command : std::exchange(m_commandsWhenLoaded, {})) {
        m_handle->command(command);
    }
    post(FSPlayerIsPreparedToPlayNotification);
}

void MpvPlayer::handleBeginning(TrackList tracks) {
    m_state.tracks = std::move(tracks);
    m_playbackBegan = true;
}

void MpvPlayer::handleEndOfFile(const mpv_event& event) {
    const auto& end = *static_cast<const mpv_event_end_file*>(event.data);
    if (end.reason == MPV_END_FILE_REASON_ERROR) {
        AppLogger::player.error("Playback failed: %{public}s", {mpv_error_string(end.error)});
        finish(FSFinishReason::PlaybackError);
    } else if (end.reason == MPV_END_FILE_REASON_EOF) {
        finish(reasonOfEnd(m_state.position, durationOf(m_state)));
    }
}

void MpvPlayer::handleLogMessage(const mpv_event& event) const {
    const auto& message = *static_cast<const mpv_event_log_message*>(event.data);
    std::string_view line(message.text);
    while (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    const std::string text = withoutAddress(std::string(line), m_content);
    if (message.log_level <= MPV_LOG_LEVEL_ERROR) {
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
    if (m_state.endReached && isRunning) {
        finish(reasonOfEnd(m_state.position, durationOf(m_state)));
    } else if (!m_state.endReached && m_stage == Stage::Ended) {
        m_stage = Stage::Started;
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
