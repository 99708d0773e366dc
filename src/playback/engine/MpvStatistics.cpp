#include "playback/engine/MpvStatistics.h"

#include "playback/engine/MpvHandle.h"

#include <array>
#include <variant>

namespace ondavia::engine {
namespace {

using Values = MpvStatistics::Values;

struct AskedProperty final {
    const char* name;
    std::variant<std::int64_t Values::*, double Values::*, std::string Values::*> member;
};

const std::array<AskedProperty, 8> asked = {{
    {"width", &Values::width},
    {"height", &Values::height},
    {"estimated-vf-fps", &Values::frameRate},
    {"video-bitrate", &Values::videoBitrate},
    {"audio-bitrate", &Values::audioBitrate},
    {"hwdec-current", &Values::hardwareDecoder},
    {"frame-drop-count", &Values::shownTooLate},
    {"decoder-frame-drop-count", &Values::decodedTooLate},
}};

/// Apart from the ids of everything else that mpv is asked.
constexpr std::uint64_t firstAnswer = 2000;

mpv_format formatFor(std::int64_t Values::* /*member*/) {
    return MPV_FORMAT_INT64;
}
mpv_format formatFor(double Values::* /*member*/) {
    return MPV_FORMAT_DOUBLE;
}
mpv_format formatFor(std::string Values::* /*member*/) {
    return MPV_FORMAT_STRING;
}

/// Null where mpv has no such value now.
template<class Number> void put(Number& value, const void* data) {
    value = data != nullptr ? *static_cast<const Number*>(data) : Number();
}
void put(std::string& value, const void* data) {
    value = data != nullptr ? *static_cast<const char* const*>(data) : "";
}

} // namespace

void MpvStatistics::ask(MpvHandle& handle) {
    if (m_asked > 0) {
        return;
    }
    std::uint64_t id = firstAnswer;
    for (const auto& property : asked) {
        const auto format = std::visit([](auto member) { return formatFor(member); }, property.member);
        m_asked += handle.requestProperty(id++, property.name, format) ? 1 : 0;
    }
}

bool MpvStatistics::take(const mpv_event& event) {
    if (event.reply_userdata < firstAnswer || event.reply_userdata - firstAnswer >= asked.size()) {
        return false;
    }
    const void* data = event.error < 0 ? nullptr : static_cast<const mpv_event_property*>(event.data)->data;
    std::visit([&](auto member) { put(m_values.*member, data); },
               asked[event.reply_userdata - firstAnswer].member);
    --m_asked;
    return true;
}

void MpvStatistics::fill(FSStatistics& statistics) const {
    statistics.width = m_values.width;
    statistics.height = m_values.height;
    statistics.frameRate = m_values.frameRate;
    statistics.bitrate = m_values.videoBitrate + m_values.audioBitrate;
    statistics.droppedFrames = m_values.shownTooLate + m_values.decodedTooLate;
    // mpv says "no" once it decodes without any, and nothing before.
    statistics.decoder = m_values.hardwareDecoder == "no" ? "software" : m_values.hardwareDecoder;
}

} // namespace ondavia::engine
