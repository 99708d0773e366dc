#include "demo/Guide.h"

#include "demo/Mix.h"

#include <array>
#include <fstream>
#include <set>
#include <stdexcept>

namespace ondavia::demo {
namespace {

constexpr std::size_t generatedPerChannel = 50;
constexpr std::size_t writeBlock = 4U << 20U;
constexpr std::string_view head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE tv SYSTEM \"xmltv.dtd\">\n"
    "<tv generator-info-name=\"ondavia-demo-provider\">\n";

void appendChannel(std::string& out, std::string_view id, std::string_view name) {
    out += "  <channel id=\"";
    out += escapeXml(id);
    out += "\">\n    <display-name lang=\"pt\">";
    out += escapeXml(name);
    out += "</display-name>\n  </channel>\n";
}

/// Guides mix offsets: every second channel writes Central European time, the instants stay the same.
int offsetOf(std::size_t channelIndex) {
    return channelIndex % 2 == 0 ? 0 : 60;
}

void appendProgramme(std::string& out, const Programme& programme, std::string_view channelId, int offset,
                     std::string_view extra) {
    out += "  <programme start=\"";
    out += guideTime(programme.start, offset);
    out += "\" stop=\"";
    out += guideTime(programme.stop, offset);
    out += "\" channel=\"";
    out += escapeXml(channelId);
    out += "\">\n    <title lang=\"pt\">";
    out += escapeXml(programme.row->title);
    out += "</title>\n";
    if (!programme.row->description.empty() || !extra.empty()) {
        out += "    <desc lang=\"pt\">";
        out += escapeXml(programme.row->description);
        out += extra;
        out += "</desc>\n";
    }
    out += "    <category lang=\"pt\">";
    out += escapeXml(programme.row->category);
    out += "</category>\n    <date>";
    out += guideTime(programme.start, offset).substr(0, 8);
    out += "</date>\n  </programme>\n";
}

std::string generatedId(const Catalogue& catalogue, std::size_t index) {
    if (index < catalogue.channelCount()) {
        const std::string id = catalogue.channel(index).guideId;
        if (!id.empty()) {
            return id;
        }
    }
    return "canal." + std::to_string(index + 1) + ".demo";
}

/// A file that is written in big blocks and complains when it cannot be.
class BlockWriter final {
public:
    explicit BlockWriter(const std::filesystem::path& file)
        : m_file(file, std::ios::binary) {}

    [[nodiscard]] std::string& buffer() { return m_buffer; }
    void writeWhenFull() {
        if (m_buffer.size() >= writeBlock) {
            write();
        }
    }
    void finish() {
        write();
        m_file.close();
        if (!m_file) {
            throw std::runtime_error("the generated guide could not be written");
        }
    }

private:
    void write() {
        m_file.write(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
        m_buffer.clear();
    }

    std::ofstream m_file;
    std::string m_buffer;
};

} // namespace

std::string Guide::document(UnixTime now) const {
    std::string out(head);
    std::string body;
    std::set<std::string> seen;
    for (std::size_t index = 0; index < m_catalogue.channelCount(); ++index) {
        const ChannelRecord channel = m_catalogue.channel(index);
        if (channel.guideId.empty() || !seen.insert(channel.guideId).second) {
            continue;
        }
        appendChannel(out, channel.guideId, channel.name);
        for (const Programme& programme : programmes(channel, now - 2 * daySeconds, now + 2 * daySeconds)) {
            appendProgramme(body, programme, channel.guideId, offsetOf(index), {});
        }
    }
    return out + body + "</tv>\n";
}

void Guide::writeGenerated(const std::filesystem::path& file, std::size_t count, UnixTime now) const {
    BlockWriter writer(file);
    writer.buffer() += head;
    const std::size_t channels = (count + generatedPerChannel - 1) / generatedPerChannel;
    for (std::size_t index = 0; index < channels; ++index) {
        appendChannel(writer.buffer(), generatedId(m_catalogue, index), "Canal " + std::to_string(index + 1));
        writer.writeWhenFull();
    }
    const UnixTime first = (now / daySeconds - 2) * daySeconds;
    const UnixTime length = 4 * daySeconds / static_cast<UnixTime>(generatedPerChannel);
    std::size_t left = count;
    for (std::size_t index = 0; index < channels; ++index) {
        const std::string id = generatedId(m_catalogue, index);
        for (std::size_t slot = 0; slot < generatedPerChannel && left > 0; ++slot, --left) {
            const std::uint64_t value = mix(m_seed ^ index, slot);
            const UnixTime start = first + static_cast<UnixTime>(slot) * length;
            appendProgramme(writer.buffer(), {start, start + length, &pick(programmeRows(), value)}, id,
                            offsetOf(index), pick(plotEndings(), value >> 20));
        }
        writer.writeWhenFull();
    }
    writer.buffer() += "</tv>\n";
    writer.finish();
}

} // namespace ondavia::demo
