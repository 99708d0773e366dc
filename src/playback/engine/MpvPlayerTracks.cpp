// The streams of what plays, and subtitles from elsewhere.
#include "base/AppLogger.h"
#include "playback/engine/MpvPlayer.h"

#include <algorithm>

namespace ondavia::engine {

void MpvPlayer::exchangeSelectedStream(std::int32_t index) {
    const auto track = std::ranges::find(m_state.tracks, index, &streamIndex);
    if (m_handle == nullptr || track == m_state.tracks.end()) {
        AppLogger::player.debug("No stream with index %ld", {index});
        return;
    }
    setTrack(track->type, track->id);
}

void MpvPlayer::closeCurrentStream(const std::string& streamType) {
    const auto type = trackTypeOf(streamType);
    if (m_handle != nullptr && type.has_value()) {
        setTrack(*type, std::string("no"));
    }
}

void MpvPlayer::setTrack(const std::string& type, const MpvValue& value) {
    if (type == "sub") {
        m_subtitles.forgetPick();
    }
    m_handle->setProperty(selectorOf(type), value);
}

bool MpvPlayer::takesSubtitles() const {
    return m_handle != nullptr && m_stage != Stage::Failed;
}

void MpvPlayer::loadSubtitlesOnly(const std::vector<std::string>& urls) {
    if (takesSubtitles()) {
        m_subtitles.add(urls);
    }
}

void MpvPlayer::loadThenActiveSubtitle(const std::string& url) {
    if (takesSubtitles()) {
        m_subtitles.pick(url, m_state.tracks);
    }
}

} // namespace ondavia::engine
