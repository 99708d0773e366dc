#include "demo/JsonWriter.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace ondavia::demo {
namespace {

void appendUnit(std::string& out, unsigned unit) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "\\u%04x", unit);
    out.append(text.data(), 6);
}

/// The code point that starts at `position`, which is moved behind it. The tables are valid UTF-8.
char32_t nextCodePoint(std::string_view text, std::size_t& position) {
    const auto lead = static_cast<unsigned char>(text[position++]);
    const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    char32_t point = lead & (0x3FU >> following);
    for (int i = 0; i < following && position < text.size(); ++i) {
        point = (point << 6) | (static_cast<unsigned char>(text[position++]) & 0x3FU);
    }
    return point;
}

} // namespace

JsonWriter& JsonWriter::beginObject() {
    separate();
    m_out += '{';
    m_needsComma = false;
    return *this;
}

JsonWriter& JsonWriter::endObject() {
    m_out += '}';
    m_needsComma = true;
    return *this;
}

JsonWriter& JsonWriter::beginArray() {
    separate();
    m_out += '[';
    m_needsComma = false;
    return *this;
}

JsonWriter& JsonWriter::endArray() {
    m_out += ']';
    m_needsComma = true;
    return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
    separate();
    m_out += '"';
    m_out += name;
    m_out += "\":";
    m_needsComma = false;
    return *this;
}

JsonWriter& JsonWriter::string(std::string_view value) {
    separate();
    m_out += '"';
    appendEscaped(value);
    m_out += '"';
    return *this;
}

JsonWriter& JsonWriter::number(std::int64_t value) {
    separate();
    std::array<char, 24> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    m_out.append(text.data(), result.ptr);
    return *this;
}

JsonWriter& JsonWriter::null() {
    separate();
    m_out += "null";
    return *this;
}

JsonWriter& JsonWriter::tenths(int value) {
    number(value / 10);
    if (value % 10 != 0) {
        m_out += '.';
        m_out += static_cast<char>('0' + value % 10);
    }
    return *this;
}

void JsonWriter::separate() {
    if (m_needsComma) {
        m_out += ',';
    }
    m_needsComma = true;
}

void JsonWriter::appendEscaped(std::string_view value) {
    for (std::size_t i = 0; i < value.size();) {
        const auto byte = static_cast<unsigned char>(value[i]);
        if (byte >= 0x80 && m_text == JsonText::escaped) {
            const char32_t point = nextCodePoint(value, i);
            if (point >= 0x10000) {
                appendUnit(m_out, 0xD800 + ((point - 0x10000) >> 10));
                appendUnit(m_out, 0xDC00 + ((point - 0x10000) & 0x3FF));
            } else {
                appendUnit(m_out, point);
            }
            continue;
        }
        if (byte == '"' || byte == '\\' || byte == '/') {
            m_out += '\\';
            m_out += static_cast<char>(byte);
        } else if (byte < 0x20) {
            appendUnit(m_out, byte);
        } else {
            m_out += static_cast<char>(byte);
        }
        ++i;
    }
}

} // namespace ondavia::demo
