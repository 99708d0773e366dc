#include "demo/BodyFaults.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>

namespace ondavia::demo {
namespace {

constexpr std::size_t nestingDepth = 100000;

struct StrictField final {
    std::string_view action;
    std::string_view key;
    std::string_view wrong;
};

/// A field of each reply that has exactly one allowed JSON type, and a value of another one.
constexpr auto strictFields = std::to_array<StrictField>({
    {"login", "auth", "\"1\""},
    {"get_live_categories", "category_name", "7"},
    {"get_vod_categories", "category_name", "7"},
    {"get_series_categories", "category_name", "7"},
    {"get_live_streams", "stream_id", "\"17\""},
    {"get_vod_streams", "container_extension", "4"},
    {"get_series", "series_id", "\"17\""},
    {"get_series_info", "rating", "7.5"},
    {"get_simple_data_table", "start", "20260301"},
    {"get_short_epg", "start", "20260301"},
});

/// The end of the JSON value that starts at `start`: a text, a number or a literal.
std::size_t valueEnd(const std::string& json, std::size_t start) {
    if (json[start] != '"') {
        return std::min(json.find_first_of(",]}", start), json.size());
    }
    std::size_t end = start + 1;
    while (end < json.size() && json[end] != '"') {
        end += json[end] == '\\' ? 2 : 1;
    }
    return std::min(end + 1, json.size());
}

void breakType(std::string& json, std::string_view action) {
    const auto field = std::ranges::find(strictFields, action, &StrictField::action);
    if (field == strictFields.end()) {
        return;
    }
    const std::string key = '"' + std::string(field->key) + "\":";
    // One object has no middle row; its first field of that name is the one.
    std::size_t found = json.front() == '[' ? json.find(key, json.size() / 2) : json.find(key);
    if (found == std::string::npos) {
        found = json.find(key);
    }
    if (found != std::string::npos) {
        const std::size_t start = found + key.size();
        json.replace(start, valueEnd(json, start) - start, field->wrong);
    }
}

void insertIntoFirstText(std::string& json, std::string_view bytes) {
    const std::size_t value = json.find(":\"");
    if (value != std::string::npos) {
        json.insert(value + 2, bytes);
    }
}

void repeatFirstCategory(std::string& json) {
    const std::size_t end = json.find('}');
    if (json.starts_with("[{\"category_id\"") && end != std::string::npos) {
        std::string copy = json.substr(1, end);
        copy.insert(copy.find("category_name") + 16, "Repetida ");
        json.insert(end + 1, ',' + copy);
    }
}

/// A deflate stream that goes on from where it is: a full flush makes each part stand alone.
class Deflater final {
public:
    Deflater() {
        if (deflateInit2(&m_stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY) != Z_OK) {
            throw std::runtime_error("zlib cannot start");
        }
    }
    ~Deflater() { deflateEnd(&m_stream); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    std::string add(std::string_view text, int flush) {
        std::string out;
        std::array<char, 65536> block{};
        m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
        m_stream.avail_in = static_cast<uInt>(text.size());
        do {
            m_stream.next_out = reinterpret_cast<Bytef*>(block.data());
            m_stream.avail_out = static_cast<uInt>(block.size());
            deflate(&m_stream, flush);
            out.append(block.data(), block.size() - m_stream.avail_out);
        } while (m_stream.avail_out == 0);
        return out;
    }

private:
    z_stream m_stream{};
};

uLong checksum(std::string_view text) {
    return crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size()));
}

void appendLittleEndian(std::string& out, std::uint64_t value) {
    for (int byte = 0; byte < 4; ++byte) {
        out += static_cast<char>(value >> (8 * byte));
    }
}

} // namespace

std::string gzip(std::string_view text) {
    return Deflater().add(text, Z_FINISH);
}

std::string gzipBomb(std::size_t megabytes) {
    Deflater deflater;
    const std::string blanks(1U << 20U, ' ');
    std::string bomb = deflater.add("[", Z_FULL_FLUSH);
    const std::string block = deflater.add(blanks, Z_FULL_FLUSH);
    uLong sum = checksum("[");
    const uLong blankSum = checksum(blanks);
    for (std::size_t i = 0; i < megabytes; ++i) {
        bomb += block;
        sum = crc32_combine(sum, blankSum, static_cast<z_off_t>(blanks.size()));
    }
    sum = crc32_combine(sum, checksum("]"), 1);
    bomb += deflater.add("]", Z_FINISH);
    // zlib saw one block only; the trailer is to tell of all of them.
    bomb.resize(bomb.size() - 8);
    appendLittleEndian(bomb, sum);
    appendLittleEndian(bomb, megabytes * blanks.size() + 2);
    return bomb;
}

Body spoil(const Body& body, std::string_view action, const ActiveFaults& faults) {
    static constexpr auto fixed = std::to_array<std::pair<std::string_view, std::string_view>>({
        {"html-200", "<html><head><title>Erro</title></head><body><h1>Servi\xC3\xA7o "
                     "indispon\xC3\xADvel</h1></body></html>"},
        {"empty-list", "[]"},
        {"empty-body", ""},
        {"null-body", "null"},
    });
    for (const auto& [name, text] : fixed) {
        if (faults.has(name)) {
            return std::make_shared<const std::string>(text);
        }
    }
    if (faults.has("deep-nesting")) {
        return std::make_shared<const std::string>(std::string(nestingDepth, '[') +
                                                   std::string(nestingDepth, ']'));
    }
    static constexpr auto altering =
        std::to_array<std::string_view>({"wrong-type-row", "duplicate-category-id", "invalid-utf8",
                                         "nul-bytes", "big-number", "truncated-body", "compressed"});
    if (std::ranges::none_of(altering, [&](std::string_view name) { return faults.has(name); }) ||
        body->empty()) {
        return body;
    }
    std::string text = *body;
    if (faults.has("wrong-type-row")) {
        breakType(text, action);
    }
    if (faults.has("duplicate-category-id")) {
        repeatFirstCategory(text);
    }
    if (faults.has("invalid-utf8")) {
        insertIntoFirstText(text, "\xFF\xFE");
    }
    if (faults.has("nul-bytes")) {
        insertIntoFirstText(text, std::string_view("\0\0", 2));
    }
    if (const std::size_t brace = text.find('{'); faults.has("big-number") && brace != std::string::npos) {
        text.insert(brace + 1, "\"unknown_counter\":123456789012345678901234567890,");
    }
    if (faults.has("truncated-body")) {
        text.resize(text.size() / 2);
    }
    return std::make_shared<const std::string>(faults.has("compressed") ? gzip(text) : std::move(text));
}

} // namespace ondavia::demo
