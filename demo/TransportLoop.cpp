#include "demo/TransportLoop.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <optional>
#include <span>
#include <stdexcept>

namespace ondavia::demo {
namespace {

constexpr std::uint64_t clockMask = (1ULL << 33U) - 1;
constexpr std::size_t streamIds = 8192;
constexpr std::uint64_t frameTicks = 3600;

unsigned streamIdOf(const unsigned char* packet) {
    return ((packet[1] & 0x1FU) << 8U) | packet[2];
}
bool startsUnit(const unsigned char* packet) {
    return (packet[1] & 0x40U) != 0;
}
bool hasAdaptation(const unsigned char* packet) {
    return (packet[3] & 0x20U) != 0;
}
bool hasPayload(const unsigned char* packet) {
    return (packet[3] & 0x10U) != 0;
}
bool hasClock(const unsigned char* packet) {
    return hasAdaptation(packet) && packet[4] >= 7 && (packet[5] & 0x10U) != 0;
}
bool isRandomAccess(const unsigned char* packet) {
    return hasAdaptation(packet) && packet[4] >= 1 && (packet[5] & 0x40U) != 0;
}

std::uint64_t readClock(const unsigned char* p) {
    return (std::uint64_t{p[0]} << 25U) | (std::uint64_t{p[1]} << 17U) | (std::uint64_t{p[2]} << 9U) |
           (std::uint64_t{p[3]} << 1U) | (p[4] >> 7U);
}

void writeClock(unsigned char* p, std::uint64_t base) {
    p[0] = static_cast<unsigned char>(base >> 25U);
    p[1] = static_cast<unsigned char>(base >> 17U);
    p[2] = static_cast<unsigned char>(base >> 9U);
    p[3] = static_cast<unsigned char>(base >> 1U);
    p[4] = static_cast<unsigned char>((p[4] & 0x7FU) | ((base & 1U) << 7U));
}

std::uint64_t readStamp(const unsigned char* p) {
    return (std::uint64_t{p[0] & 0x0EU} << 29U) | (std::uint64_t{p[1]} << 22U) |
           (std::uint64_t{p[2] & 0xFEU} << 14U) | (std::uint64_t{p[3]} << 7U) | (p[4] >> 1U);
}

void shiftStamp(unsigned char* p, std::uint64_t ticks) {
    const std::uint64_t stamp = (readStamp(p) + ticks) & clockMask;
    p[0] = static_cast<unsigned char>((p[0] & 0xF1U) | ((stamp >> 29U) & 0x0EU));
    p[1] = static_cast<unsigned char>(stamp >> 22U);
    p[2] = static_cast<unsigned char>(((stamp >> 14U) & 0xFEU) | 1U);
    p[3] = static_cast<unsigned char>(stamp >> 7U);
    p[4] = static_cast<unsigned char>(((stamp << 1U) & 0xFEU) | 1U);
}

/// The packet's elementary-stream header, if one starts in it: start code, flags at 7, stamps from 9.
std::span<unsigned char> unitHeader(unsigned char* packet) {
    if (!startsUnit(packet) || !hasPayload(packet)) {
        return {};
    }
    const std::size_t offset = hasAdaptation(packet) ? 5U + packet[4] : 4U;
    if (offset + 19 > TransportLoop::packetSize) {
        return {};
    }
    unsigned char* unit = packet + offset;
    if (unit[0] != 0 || unit[1] != 0 || unit[2] != 1 || unit[3] < 0xBD) {
        return {};
    }
    return {unit, TransportLoop::packetSize - offset};
}

bool isVideo(std::span<const unsigned char> unit) {
    return !unit.empty() && (unit[3] & 0xF0U) == 0xE0;
}

std::string readAll(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace

TransportLoop::TransportLoop(const std::filesystem::path& file)
    : m_bytes(readAll(file))
    , m_payloads(streamIds, 0) {
    m_bytes.resize(m_bytes.size() / packetSize * packetSize);
    index();
    if (m_keyPackets.empty() || m_clock.empty()) {
        throw std::runtime_error("no transport stream with video: " + file.filename().string());
    }
}

void TransportLoop::noteClock(std::size_t packet, std::uint64_t base) {
    if (m_clock.empty()) {
        m_firstClock = base;
    }
    m_clock.push_back({packet, static_cast<double>((base - m_firstClock) & clockMask) / 90000.0});
}

void TransportLoop::index() {
    auto* bytes = reinterpret_cast<unsigned char*>(m_bytes.data());
    std::uint64_t frames = 0;
    for (std::size_t i = 0; i < packets(); ++i) {
        unsigned char* packet = bytes + i * packetSize;
        const unsigned streamId = streamIdOf(packet);
        m_payloads[streamId] += hasPayload(packet) ? 1 : 0;
        if (hasClock(packet)) {
            noteClock(i, readClock(packet + 6));
        }
        if (isVideo(unitHeader(packet))) {
            ++frames;
            if (isRandomAccess(packet)) {
                m_keyPackets.push_back(i);
            }
        } else if (m_keyPackets.empty() && startsUnit(packet) && hasPayload(packet) &&
                   unitHeader(packet).empty() && m_tables.size() < 3) {
            m_tables.push_back(i);
        }
    }
    m_loopTicks = frames * frameTicks;
}

void TransportLoop::rewrite(unsigned char* packet, std::uint64_t loop) const {
    const std::uint64_t ticks = (loop * m_loopTicks) & clockMask;
    const std::uint64_t gained = loop * m_payloads[streamIdOf(packet)];
    packet[3] = static_cast<unsigned char>((packet[3] & 0xF0U) | ((packet[3] + gained) & 0x0FU));
    if (hasClock(packet)) {
        writeClock(packet + 6, (readClock(packet + 6) + ticks) & clockMask);
    }
    const auto unit = unitHeader(packet);
    if (!unit.empty() && (unit[7] & 0x80U) != 0) {
        shiftStamp(unit.data() + 9, ticks);
        if ((unit[7] & 0x40U) != 0) {
            shiftStamp(unit.data() + 14, ticks);
        }
    }
}

void TransportLoop::append(std::string& out, std::uint64_t first, std::size_t count) const {
    for (std::uint64_t number = first; number < first + count; ++number) {
        const std::size_t start = out.size();
        out.append(m_bytes, (number % packets()) * packetSize, packetSize);
        rewrite(reinterpret_cast<unsigned char*>(out.data() + start), number / packets());
    }
}

void TransportLoop::appendTables(std::string& out) const {
    for (const std::size_t packet : m_tables) {
        out.append(m_bytes, packet * packetSize, packetSize);
    }
}

std::size_t TransportLoop::keyPacket(double seconds) const {
    const double wanted = std::fmod(seconds, this->seconds());
    std::size_t best = m_keyPackets.front();
    for (const std::size_t packet : m_keyPackets) {
        if (dueTime(packet) <= wanted) {
            best = packet;
        }
    }
    return best;
}

double TransportLoop::dueTime(std::uint64_t number) const {
    const std::size_t packet = number % packets();
    const auto after = std::ranges::upper_bound(m_clock, packet, {}, &Mark::packet);
    const double within = after == m_clock.begin() ? 0.0 : std::prev(after)->time;
    return static_cast<double>(number / packets()) * seconds() + within;
}

} // namespace ondavia::demo
