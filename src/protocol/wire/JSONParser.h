#pragma once

#include <cstddef>
#include <simdjson.h>
#include <string>
#include <string_view>

namespace ondavia::wire {

/// What some servers write in front of a document.
inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// JSON's whole grammar over the parser library, which takes a number beyond 64 bits for an error, and of a
/// number with a point or an exponent keeps the nearest float alone: where one of these matters, the text is
/// parsed a second time with its numbers in a form the library keeps whole.
///
/// Reusable, so that a list of many batches allocates once. One thread at a time.
class JSONParser final {
public:
    /// Bytes that must be readable, whatever they hold, behind a text given to `parsePadded`.
    static constexpr std::size_t padding = simdjson::SIMDJSON_PADDING;

    /// Parses `text`; the element and its texts live until the next call, and so must `text`.
    [[nodiscard]] simdjson::simdjson_result<simdjson::dom::element> parsePadded(std::string_view text);
    /// The same for a text with nothing behind it, which is copied.
    [[nodiscard]] simdjson::simdjson_result<simdjson::dom::element> parse(std::string_view text);
    /// The same, with every number that is exactly a signed 64-bit integer as such an integer, and no other.
    [[nodiscard]] simdjson::simdjson_result<simdjson::dom::element> parseExactly(std::string_view text);

    /// Whether integers of the last text are told by their text.
    [[nodiscard]] bool isExact() const { return m_isExact; }
    /// Whether in the last text a number that no 64-bit float can hold stands as `true`, which no field
    /// of a wire record accepts.
    [[nodiscard]] bool replacedNumbers() const { return m_replacedNumbers; }

private:
    [[nodiscard]] std::string withExactNumbers(std::string_view text);
    void appendNumber(std::string& output, std::string_view token);
    [[nodiscard]] bool isWithinFloat(std::string_view token);

    simdjson::dom::parser m_parser;
    simdjson::dom::parser m_numberParser;
    std::string m_copy;
    bool m_isExact = false;
    bool m_replacedNumbers = false;
};

} // namespace ondavia::wire
