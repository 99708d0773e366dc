#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ondavia::demo {

enum class JsonText {
    /// Text beyond ASCII stays UTF-8.
    utf8,
    /// Text beyond ASCII becomes \u escapes, as many servers write it.
    escaped
};

/// Appends one JSON document to a text, commas included. The order of calls is the caller's to keep.
class JsonWriter final {
public:
    explicit JsonWriter(std::string& out, JsonText text = JsonText::utf8)
        : m_out(out)
        , m_text(text) {}

    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();
    JsonWriter& key(std::string_view name);
    JsonWriter& string(std::string_view value);
    JsonWriter& number(std::int64_t value);
    JsonWriter& null();
    /// A number with one decimal, such as 7.5 for 75.
    JsonWriter& tenths(int value);

    JsonWriter& member(std::string_view name, std::string_view value) { return key(name).string(value); }
    JsonWriter& member(std::string_view name, std::int64_t value) { return key(name).number(value); }

private:
    void separate();
    void appendEscaped(std::string_view value);

    std::string& m_out;
    JsonText m_text;
    bool m_needsComma = false;
};

} // namespace ondavia::demo
