#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace ondavia::demo {

/// A short MPEG transport stream that is played over and over as one endless stream: clock references, time
/// stamps and continuity counters go on counting from loop to loop. Every packet is a pure function of its
/// position, so that an endless stream needs no state and a recording of any length can be read anywhere.
/// Immutable once made; may be used from any thread.
class TransportLoop final {
public:
    static constexpr std::size_t packetSize = 188;

    /// Reads the whole file. Throws std::runtime_error when it is no transport stream with video.
    explicit TransportLoop(const std::filesystem::path& file);

    [[nodiscard]] std::size_t packets() const { return m_bytes.size() / packetSize; }
    [[nodiscard]] double seconds() const { return static_cast<double>(m_loopTicks) / 90000.0; }

    /// Appends `count` packets of the endless stream from packet number `first` on.
    void append(std::string& out, std::uint64_t first, std::size_t count) const;
    /// The tables that a decoder needs before anything else; for a stream that starts in the middle.
    void appendTables(std::string& out) const;

    /// The first packet of the picture that can be decoded alone at or before `seconds` of the loop.
    [[nodiscard]] std::size_t keyPacket(double seconds) const;
    /// When, in seconds of the endless stream, packet `number` is due.
    [[nodiscard]] double dueTime(std::uint64_t number) const;

private:
    struct Mark final {
        std::size_t packet;
        double time;
    };
    void index();
    void noteClock(std::size_t packet, std::uint64_t base);
    void rewrite(unsigned char* packet, std::uint64_t loop) const;

    std::string m_bytes;
    std::vector<Mark> m_clock;
    std::vector<std::size_t> m_keyPackets;
    std::vector<std::size_t> m_tables;
    /// Packets with a payload, a stream id: what its counter gains in one loop.
    std::vector<std::uint32_t> m_payloads;
    std::uint64_t m_firstClock = 0;
    std::uint64_t m_loopTicks = 0;
};

} // namespace ondavia::demo
