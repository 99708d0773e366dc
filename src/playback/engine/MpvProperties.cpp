#include "playback/engine/MpvProperties.h"

#include "playback/engine/MpvHandle.h"

#include <array>
#include <variant>

namespace ondavia::engine {
namespace {

struct ObservedProperty final {
    const char* name;
    std::variant<bool MpvState::*, double MpvState::*, std::string MpvState::*, TrackList MpvState::*> member;
};

const std::array<ObservedProperty, 11> observed = {{
    {"pause", &MpvState::paused},
    {"seeking", &MpvState::seeking},
    {"paused-for-cache", &MpvState::pausedForCache},
    {"eof-reached", &MpvState::endReached},
    {"demuxer-cache-idle", &MpvState::cacheFull},
    {"demuxer-cache-duration", &MpvState::cachedSeconds},
    {"seekable", &MpvState::seekable},
    {"partially-seekable", &MpvState::seekableInCache},
    {"file-size", &MpvState::fileSize},
    {"file-format", &MpvState::fileFormat},
    {"track-list", &MpvState::tracks},
}};

/// 0 is the id of everything that nobody asked an answer for.
constexpr std::uint64_t firstId = 1;

mpv_format formatOf(bool MpvState::* /*member*/) {
    return MPV_FORMAT_FLAG;
}
mpv_format formatOf(double MpvState::* /*member*/) {
    return MPV_FORMAT_DOUBLE;
}
mpv_format formatOf(std::string MpvState::* /*member*/) {
    return MPV_FORMAT_STRING;
}
mpv_format formatOf(TrackList MpvState::* /*member*/) {
    return MPV_FORMAT_NODE;
}

void assign(bool& value, const void* data) {
    value = *static_cast<const int*>(data) != 0;
}
void assign(double& value, const void* data) {
    value = *static_cast<const double*>(data);
}
void assign(std::string& value, const void* data) {
    value = *static_cast<const char* const*>(data);
}
void assign(TrackList& value, const void* data) {
    value = parseTrackList(*static_cast<const mpv_node*>(data));
}

template<class Value>
void apply(MpvState& state, Value MpvState::*member, const mpv_event_property& property) {
    if (property.format == formatOf(member)) {
        assign(state.*member, property.data);
    } else {
        state.*member = Value();
    }
}

} // namespace

void observeProperties(MpvHandle& handle) {
    std::uint64_t id = firstId;
    for (const auto& entry : observed) {
        const auto format = std::visit([](auto member) { return formatOf(member); }, entry.member);
        handle.observe(id++, entry.name, format);
    }
}

void applyProperty(MpvState& state, std::uint64_t id, const mpv_event_property& property) {
    if (id < firstId || id - firstId >= observed.size()) {
        return;
    }
    std::visit([&](auto member) { apply(state, member, property); }, observed[id - firstId].member);
}

} // namespace ondavia::engine
