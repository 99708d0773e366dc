#include "playback/engine/ExternalSubtitles.h"

#include "base/AppLogger.h"
#include "playback/engine/MpvHandle.h"
#include "playback/engine/MpvOptions.h"

#include <algorithm>
#include <utility>

namespace ondavia::engine {
namespace {

// Never selected by mpv itself: it would do that when the file has come, whatever was chosen meanwhile.
void addTo(MpvHandle& handle, const PublishedSource& file) {
    handle.command({"sub-add", file.address(), "auto"});
}

} // namespace

void ExternalSubtitles::begin(std::shared_ptr<MpvHandle> handle) {
    m_handle = std::move(handle);
    for (const auto& [url, file] : m_files) {
        addTo(*m_handle, *file);
    }
}

void ExternalSubtitles::end() {
    m_files.clear();
    m_handle.reset();
}

void ExternalSubtitles::add(const std::vector<std::string>& urls) {
    for (const auto& url : urls) {
        if (!m_files.contains(url) && m_files.size() < maximumAhead) {
            fetch(url, m_allowance);
        }
    }
}

void ExternalSubtitles::pick(const std::string& url, const TrackList& tracks) {
    if (trackOf(url, tracks) == nullptr) {
        fetch(url, std::make_shared<std::atomic<std::int64_t>>(maximumBytes));
    }
    m_picked = url;
    follow(tracks);
}

void ExternalSubtitles::follow(const TrackList& tracks) {
    const Track* track = m_picked ? trackOf(*m_picked, tracks) : nullptr;
    if (track != nullptr) {
        m_handle->setProperty(selectorOf(track->type), track->id);
        m_picked.reset();
    }
}

void ExternalSubtitles::fetch(const std::string& url, const ByteAllowance& allowance) {
    if (!isHttpAddress(url)) {
        AppLogger::player.error("Not a subtitle address: %s", {url});
        return;
    }
    // One of before, for the same file, ends here.
    auto& file = m_files[url];
    file = std::make_unique<PublishedSource>(std::make_shared<SubtitleFile>(url, allowance));
    if (m_handle != nullptr) {
        addTo(*m_handle, *file);
    }
}

const Track* ExternalSubtitles::trackOf(const std::string& url, const TrackList& tracks) const {
    const auto file = m_files.find(url);
    if (file == m_files.end()) {
        return nullptr;
    }
    const auto track = std::ranges::find(tracks, file->second->address(), &Track::externalAddress);
    return track == tracks.end() ? nullptr : &*track;
}

} // namespace ondavia::engine
