#pragma once

#include <cstddef>
#include <simdjson.h>
#include <string>
#include <string_view>

namespace ondavia::wire {

/// JSON's whole grammar over the parser library, which takes a number beyond 64 bits for an error: such
/// a text is parsed a second time with its large numbers in a form the library knows.
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

    /// Whether in the last text a number that no 64-bit float can hold stands as `true`, which no field
    /// of a wire record accepts.
    [[nodiscard]] bool replacedNumbers() const { return m_replacedNumbers; }

private:
    [[nodiscard]] std::string withRepresentableNumbers(std::string_view text);
    void appendNumber(std::string& output, std::string_view token);

    simdjson::dom::parser m_parser;
    simdjson::dom::parser m_numberParser;
    std::string m_copy;
    bool m_replacedNumbers = false;
};

} // namespace ondavia::wire
