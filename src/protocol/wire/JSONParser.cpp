#include "protocol/wire/JSONParser.h"

#include "protocol/wire/Numbers.h"

namespace ondavia::wire {
namespace {

/// More digits than this may be beyond 64 bits.
constexpr std::size_t safeDigits = 18;

/// The end of the string that opens at `from`, behind its closing quotation mark.
std::size_t endOfString(std::string_view text, std::size_t from) {
    for (auto at = text.find_first_of("\"\\", from + 1); at != std::string_view::npos;
         at = text.find_first_of("\"\\", at)) {
        if (text[at] == '"') {
            return at + 1;
        }
        at += 2;
    }
    return text.size();
}

bool startsNumber(char character) {
    return character == '-' || (character >= '0' && character <= '9');
}

} // namespace

simdjson::simdjson_result<simdjson::dom::element> JSONParser::parsePadded(std::string_view text) {
    m_replacedNumbers = false;
    auto parsed = m_parser.parse(text.data(), text.size(), false);
    if (parsed.error() != simdjson::NUMBER_ERROR) {
        return parsed;
    }
    m_copy = withRepresentableNumbers(text);
    m_copy.append(padding, ' ');
    return m_parser.parse(m_copy.data(), m_copy.size() - padding, false);
}

simdjson::simdjson_result<simdjson::dom::element> JSONParser::parse(std::string_view text) {
    std::string padded;
    padded.reserve(text.size() + padding);
    padded.append(text).append(padding, ' ');
    // The parsed elements keep nothing of the text itself.
    return parsePadded(std::string_view(padded).substr(0, text.size()));
}

std::string JSONParser::withRepresentableNumbers(std::string_view text) {
    std::string output;
    output.reserve(text.size() + text.size() / 8);
    std::size_t at = 0;
    while (at < text.size()) {
        if (text[at] == '"') {
            const auto end = endOfString(text, at);
            output.append(text.substr(at, end - at));
            at = end;
        } else if (startsNumber(text[at])) {
            const auto end = std::min(text.find_first_of(" \t\r\n,:[]{}\"", at), text.size());
            appendNumber(output, text.substr(at, end - at));
            at = end;
        } else {
            output.push_back(text[at]);
            ++at;
        }
    }
    return output;
}

/// A long integer gets an exponent, which makes it a float; a number that no float can hold becomes
/// `true`; what is no number at all stays, to be refused.
void JSONParser::appendNumber(std::string& output, std::string_view token) {
    const bool isFloat = token.find_first_of(".eE") != std::string_view::npos;
    if ((!isFloat && token.size() <= safeDigits) || !isJSONNumber(token)) {
        output.append(token);
        return;
    }
    std::string asFloat = '[' + std::string(token) + (isFloat ? "]" : "e0]");
    const auto length = asFloat.size();
    asFloat.append(padding, ' ');
    const bool isInteger64 =
        !isFloat && m_numberParser.parse(token.data(), token.size()).error() == simdjson::SUCCESS;
    if (isInteger64) {
        output.append(token);
    } else if (m_numberParser.parse(asFloat.data(), length, false).error() == simdjson::SUCCESS) {
        output.append(asFloat, 1, length - 2);
    } else {
        output.append("true");
        m_replacedNumbers = true;
    }
}

} // namespace ondavia::wire
