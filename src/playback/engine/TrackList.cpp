#include "playback/engine/TrackList.h"

#include <QVariantList>

#include <mpv/client.h>

#include <algorithm>
#include <array>
#include <utility>
#include <variant>

namespace ondavia::engine {
namespace {

using Field = std::variant<std::string Track::*, std::int64_t Track::*, bool Track::*>;

const std::array<std::pair<std::string_view, Field>, 14> fields = {{
    {"id", &Track::id},
    {"type", &Track::type},
    {"ff-index", &Track::fileIndex},
    {"external", &Track::external},
    {"external-filename", &Track::externalAddress},
    {"selected", &Track::selected},
    {"codec", &Track::codec},
    {"codec-profile", &Track::codecProfile},
    {"lang", &Track::language},
    {"title", &Track::title},
    {"demux-w", &Track::width},
    {"demux-h", &Track::height},
    {"demux-samplerate", &Track::sampleRate},
    {"demux-bitrate", &Track::bitrate},
}};

constexpr std::array<std::pair<std::string_view, std::string_view>, 3> streamTypes = {{
    {"video", "video"},
    {"audio", "audio"},
    {"timedtext", "sub"},
}};

void assign(Track& track, std::string Track::*field, const mpv_node& node) {
    if (node.format == MPV_FORMAT_STRING) {
        track.*field = node.u.string;
    }
}

void assign(Track& track, std::int64_t Track::*field, const mpv_node& node) {
    if (node.format == MPV_FORMAT_INT64) {
        track.*field = node.u.int64;
    }
}

void assign(Track& track, bool Track::*field, const mpv_node& node) {
    if (node.format == MPV_FORMAT_FLAG) {
        track.*field = node.u.flag != 0;
    }
}

Track parseTrack(const mpv_node_list& map) {
    Track track;
    for (int entry = 0; entry < map.num; ++entry) {
        const std::string_view key = map.keys[entry];
        const auto field = std::ranges::find(fields, key, &std::pair<std::string_view, Field>::first);
        if (field != fields.end()) {
            std::visit([&](auto member) { assign(track, member, map.values[entry]); }, field->second);
        }
    }
    return track;
}

std::string_view streamTypeOf(const Track& track) {
    const auto found = std::ranges::find(streamTypes, std::string_view(track.type),
                                         &std::pair<std::string_view, std::string_view>::second);
    return found == streamTypes.end() ? std::string_view(track.type) : found->first;
}

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

void put(QVariantMap& map, const char* key, const std::string& value) {
    if (!value.empty()) {
        map.insert(QString::fromLatin1(key), text(value));
    }
}

void put(QVariantMap& map, const char* key, std::int64_t value) {
    if (value > 0) {
        map.insert(QString::fromLatin1(key), QVariant::fromValue<qlonglong>(value));
    }
}

QVariantMap describe(const Track& track) {
    QVariantMap map;
    map.insert(QStringLiteral("stream_idx"), QVariant::fromValue<qlonglong>(streamIndex(track)));
    map.insert(QStringLiteral("type"), text(streamTypeOf(track)));
    put(map, "codec_name", track.codec);
    put(map, "codec_profile", track.codecProfile);
    put(map, "language", track.language);
    put(map, "title", track.title);
    put(map, "width", track.width);
    put(map, "height", track.height);
    put(map, "sample_rate", track.sampleRate);
    put(map, "bitrate", track.bitrate);
    return map;
}

QVariantMap describeSelected(const TrackList& tracks, std::string_view type) {
    const auto track = selectedTrack(tracks, type);
    return track.has_value() ? describe(*track) : QVariantMap();
}

} // namespace

TrackList parseTrackList(const mpv_node& node) {
    TrackList tracks;
    if (node.format != MPV_FORMAT_NODE_ARRAY) {
        return tracks;
    }
    for (int entry = 0; entry < node.u.list->num; ++entry) {
        const mpv_node& value = node.u.list->values[entry];
        if (value.format == MPV_FORMAT_NODE_MAP) {
            tracks.push_back(parseTrack(*value.u.list));
        }
    }
    return tracks;
}

std::int32_t streamIndex(const Track& track) {
    constexpr std::int64_t beforeExternal = -1;
    return static_cast<std::int32_t>(track.external ? beforeExternal - track.id : track.fileIndex);
}

std::string selectorOf(std::string_view type) {
    return std::string(type.substr(0, 1)) + "id";
}

std::optional<std::string> trackTypeOf(std::string_view streamType) {
    const auto found =
        std::ranges::find(streamTypes, streamType, &std::pair<std::string_view, std::string_view>::first);
    return found == streamTypes.end() ? std::nullopt : std::optional(std::string(found->second));
}

std::optional<Track> selectedTrack(const TrackList& tracks, std::string_view type) {
    const auto found = std::ranges::find_if(
        tracks, [type](const Track& track) { return track.selected && track.type == type; });
    return found == tracks.end() ? std::nullopt : std::optional(*found);
}

FSMonitor monitorOf(const TrackList& tracks) {
    FSMonitor monitor{describeSelected(tracks, "video"),
                      describeSelected(tracks, "audio"),
                      describeSelected(tracks, "sub"),
                      {}};
    if (!tracks.empty()) {
        QVariantList streams;
        for (const auto& track : tracks) {
            streams.append(describe(track));
        }
        monitor.mediaMeta.insert(QStringLiteral("streams"), streams);
    }
    return monitor;
}

} // namespace ondavia::engine
