// What is inside a stream, which of it plays, and how the picture fills its view.
#include "playback/PlayerTracks.h"

#include "base/Text.h"
#include "playback/PlayerManager.h"
#include "playback/StreamMeta.h"
#include "subtitles/SubtitleLoader.h"

#include <QPointer>

#include <algorithm>
#include <charconv>

namespace ondavia {
namespace {

constexpr std::string_view originalLabel = "Original";
constexpr std::string_view fillLabel = "Preencher";

std::string inCapitals(const std::string& text) {
    return QString::fromStdString(text).toUpper().toStdString();
}

/// `position` counts the tracks before this one.
OndaviaMediaTrack audioTrack(const QVariantMap& stream, std::optional<std::int64_t> active,
                             std::size_t position) {
    const std::int64_t index = metaInt(stream, "stream_idx").value_or(-1);
    const auto codec = metaText(stream, "codec_name");
    const std::string profile = metaText(stream, "codec_profile").value_or("");
    OndaviaMediaTrack track{.id = "audio-" + std::to_string(index),
                            .kind = OndaviaMediaTrack::Kind::audio,
                            .name = {},
                            .isEnabled = index >= 0 && index == active,
                            .audioStreamIndex = index,
                            .subtitleURL = {},
                            .subtitleStreamIndex = {}};
    if (codec) {
        track.name = inCapitals(*codec) + (profile.empty() ? "" : " " + profile);
    } else {
        const auto before = index >= 0 ? static_cast<std::uint64_t>(index) : position;
        track.name = "Track " + std::to_string(before + 1);
    }
    return track;
}

std::string embeddedSubtitleName(const QVariantMap& stream, std::int64_t index) {
    const std::string language = inCapitals(metaText(stream, "language").value_or(""));
    const std::string title = metaText(stream, "title").value_or("");
    const std::string codec = inCapitals(metaText(stream, "codec_name").value_or(""));
    if (!language.empty() && !title.empty()) {
        return language + " — " + title;
    }
    if (!language.empty() || !title.empty()) {
        return language.empty() ? title : language;
    }
    return codec.empty() ? "Track " + std::to_string(index) : codec + " #" + std::to_string(index);
}

OndaviaMediaTrack embeddedSubtitle(const QVariantMap& stream, std::int64_t index, bool isActive) {
    return {.id = "embsub-" + std::to_string(index),
            .kind = OndaviaMediaTrack::Kind::subtitle,
            .name = embeddedSubtitleName(stream, index),
            .isEnabled = isActive,
            .audioStreamIndex = {},
            .subtitleURL = {},
            .subtitleStreamIndex = index};
}

OndaviaMediaTrack externalSubtitle(const SubtitleTrack& track, bool isActive) {
    return {.id = track.id,
            .kind = OndaviaMediaTrack::Kind::subtitle,
            .name = track.displayName,
            .isEnabled = isActive,
            .audioStreamIndex = {},
            .subtitleURL = track.url,
            .subtitleStreamIndex = {}};
}

/// All of `text`; absent for a number that is not above zero, too.
std::optional<float> positiveNumber(std::string_view text) {
    float number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    return read.ec == std::errc() && read.ptr == end && number > 0 ? std::optional(number) : std::nullopt;
}

/// Fills the manager's list in, unless the load was cancelled or the manager is gone by then.
QCoro::Task<> loadSubtitles(QPointer<PlayerManager> manager, URLSessionFactory makeSession,
                            std::vector<std::string> urls, std::stop_token stop) {
    auto loading = SubtitleLoader::loadAll(makeSession, urls, stop);
    auto tracks = co_await loading;
    if (!stop.stop_requested() && manager) {
        manager->setLoadedSubtitles(std::move(tracks));
    }
}

} // namespace

std::optional<float> parseDisplayAspectRatio(std::string_view text) {
    text = trimmedWhitespaceAndNewlines(text);
    for (const char separator : {':', '/'}) {
        const auto at = text.find(separator);
        if (at == std::string_view::npos) {
            continue;
        }
        const auto width = positiveNumber(text.substr(0, at));
        const auto height = positiveNumber(text.substr(at + 1));
        if (width && height) {
            return *width / *height;
        }
    }
    return std::nullopt;
}

std::vector<OndaviaMediaTrack> PlayerManager::availableAudioTracks() const {
    const FSMonitor monitor = player() ? player()->monitor() : FSMonitor();
    const auto active = metaInt(monitor.audioMeta, "stream_idx");
    std::vector<OndaviaMediaTrack> tracks;
    for (const auto& stream : streamsOf(monitor.mediaMeta)) {
        if (metaText(stream, "type") == "audio") {
            tracks.push_back(audioTrack(stream, active, tracks.size()));
        }
    }
    return tracks;
}

std::vector<OndaviaMediaTrack> PlayerManager::availableSubtitleTracks() const {
    std::vector<OndaviaMediaTrack> tracks;
    for (const auto& track : loadedSubtitles()) {
        const bool isActive = currentSubtitleTrack() && currentSubtitleTrack()->id == track.id;
        tracks.push_back(externalSubtitle(track, isActive));
    }
    const FSMonitor monitor = player() ? player()->monitor() : FSMonitor();
    const auto active = metaInt(monitor.subtitleMeta, "stream_idx");
    for (const auto& stream : streamsOf(monitor.mediaMeta)) {
        const auto index = metaInt(stream, "stream_idx");
        if (metaText(stream, "type") == "timedtext" && index && *index >= 0) {
            tracks.push_back(embeddedSubtitle(stream, *index, index == active));
        }
    }
    return tracks;
}

void PlayerManager::selectSubtitleTrack(const std::optional<OndaviaMediaTrack>& track) {
    const auto engine = player();
    if (!track) {
        setCurrentSubtitleTrack(std::nullopt);
        if (engine) {
            engine->closeCurrentStream("timedtext");
        }
    } else if (track->kind == OndaviaMediaTrack::Kind::subtitle && track->subtitleURL) {
        selectExternalSubtitle(*track->subtitleURL);
    } else if (track->kind == OndaviaMediaTrack::Kind::subtitle && track->subtitleStreamIndex) {
        setCurrentSubtitleTrack(std::nullopt);
        if (engine) {
            engine->exchangeSelectedStream(static_cast<std::int32_t>(*track->subtitleStreamIndex));
        }
    }
}

void PlayerManager::selectExternalSubtitle(const std::string& url) {
    const auto engine = player();
    const auto loaded = std::ranges::find(loadedSubtitles(), url, &SubtitleTrack::url);
    setCurrentSubtitleTrack(loaded == loadedSubtitles().end() ? std::nullopt : std::optional(*loaded));
    if (engine && !useCustomSubtitleOverlay()) {
        engine->loadThenActiveSubtitle(url);
    }
}

void PlayerManager::setSubtitleURLs(std::vector<std::string> urls) {
    cancelSubtitleLoad();
    setLoadedSubtitles({});
    setCurrentSubtitleTrack(std::nullopt);
    if (urls.empty()) {
        return;
    }
    if (player()) {
        player()->loadSubtitlesOnly(urls);
    }
    m_subtitleLoadTask.emplace();
    // Nobody waits for it; it holds the manager weakly and ends by itself.
    (void)loadSubtitles(QPointer(this), m_environment.makeSession, std::move(urls),
                        m_subtitleLoadTask->get_token());
}

void PlayerManager::cancelSubtitleLoad() {
    if (m_subtitleLoadTask) {
        m_subtitleLoadTask->request_stop();
        m_subtitleLoadTask.reset();
    }
}

void PlayerManager::setAspectRatio(const std::optional<std::string>& label) {
    const auto engine = player();
    setSelectedAspectRatio(label.value_or(std::string(originalLabel)));
    setAspectFill(label == fillLabel);
    FSPlayerView* view = engine ? engine->view() : nullptr;
    if (view == nullptr) {
        return;
    }
    engine->setScalingMode(aspectFill() ? FSScalingMode::Fill : FSScalingMode::Fit);
    view->setDarPreference(label ? parseDisplayAspectRatio(*label).value_or(0.0F) : 0.0F);
    if (!engine->isPlaying()) {
        view->setNeedsRefreshCurrentPic();
    }
}

} // namespace ondavia
