#include "protocol/wire/Decoding.h"
#include "protocol/wire/WireFields.h"

#include <array>

namespace ondavia {
namespace wire {
namespace {

/// Writes JSON text by the field tables.
class WireEncoder final {
public:
    template<WireRecord Record> void encode(const Record& record) {
        m_json += '{';
        std::apply([&](const auto&... field) { (encodeField(field.key, record.*field.member), ...); },
                   Wire<Record>::fields);
        closeWith('}');
    }

    template<class T> void encode(const std::vector<T>& list) {
        m_json += '[';
        for (const T& value : list) {
            encode(value);
            m_json += ',';
        }
        closeWith(']');
    }

    [[nodiscard]] std::string take() { return std::move(m_json); }

private:
    template<class T> void encodeField(std::string_view key, const T& value) {
        encode(std::string(key));
        m_json += ':';
        encode(value);
        m_json += ',';
    }

    template<class T> void encodeField(std::string_view key, const std::optional<T>& value) {
        if (value) {
            encodeField(key, *value);
        }
    }

    void encode(const FlexibleString& flexible) { encodeOrNull(flexible.value); }
    void encode(const FlexibleInt& flexible) { encodeOrNull(flexible.value); }
    void encode(std::int64_t number) { m_json += std::to_string(number); }

    template<class T> void encodeOrNull(const std::optional<T>& value) {
        if (value) {
            encode(*value);
        } else {
            m_json += "null";
        }
    }

    void encode(const XtreamEpisodeMap& seasons) {
        m_json += '{';
        for (const auto& [season, episodes] : seasons) {
            encodeField(season, episodes);
        }
        closeWith('}');
    }

    void encode(const std::string& text) {
        constexpr std::string_view hexadecimal = "0123456789abcdef";
        m_json += '"';
        for (const char character : text) {
            const auto byte = static_cast<unsigned char>(character);
            if (byte < 0x20) {
                m_json += "\\u00";
                m_json += hexadecimal[byte >> 4U];
                m_json += hexadecimal[byte & 0x0FU];
                continue;
            }
            if (character == '"' || character == '\\') {
                m_json += '\\';
            }
            m_json += character;
        }
        m_json += '"';
    }

    /// Closes an object or list in place of the comma behind its last member.
    void closeWith(char bracket) {
        if (m_json.back() == ',') {
            m_json.back() = bracket;
        } else {
            m_json += bracket;
        }
    }

    std::string m_json;
};

} // namespace
} // namespace wire

template<class Reply> std::string encodeReply(const Reply& reply) {
    wire::WireEncoder encoder;
    encoder.encode(reply);
    return encoder.take();
}

#define ONDAVIA_INSTANTIATE(...) template std::string encodeReply<__VA_ARGS__>(const __VA_ARGS__&);
ONDAVIA_FOR_EACH_REPLY(ONDAVIA_INSTANTIATE)
#undef ONDAVIA_INSTANTIATE

} // namespace ondavia
