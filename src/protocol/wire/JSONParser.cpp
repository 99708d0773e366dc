#include "protocol/wire/JSONParser.h"

#include "protocol/wire/Numbers.h"

namespace ondavia::wire {
namespace {

/// An integer of no more bytes is within 64 bits, and a number without an exponent within a float.
constexpr std::size_t safeIntegerBytes = 18;
constexpr std::size_t safeFloatBytes = 300;

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
    m_isExact = false;
    auto parsed = m_parser.parse(text.data(), text.size(), false);
    return parsed.error() == simdjson::NUMBER_ERROR ? parseExactly(text) : parsed;
}

simdjson::simdjson_result<simdjson::dom::element> JSONParser::parse(std::string_view text) {
    std::string padded;
    padded.reserve(text.size() + padding);
    padded.append(text).append(padding, ' ');
    // The parsed elements keep nothing of the text itself.
    return parsePadded(std::string_view(padded).substr(0, text.size()));
}

simdjson::simdjson_result<simdjson::dom::element> JSONParser::parseExactly(std::string_view text) {
    m_replacedNumbers = false;
    m_isExact = true;
    m_copy = withExactNumbers(text);
    m_copy.append(padding, ' ');
    return m_parser.parse(m_copy.data(), m_copy.size() - padding, false);
}

std::string JSONParser::withExactNumbers(std::string_view text) {
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

/// An integer is written as one, and of any other number nothing that looks like one: a long integer gets an
/// exponent, which makes it a float. A number that no float can hold becomes `true`; what is no number at all
/// stays, to be refused.
void JSONParser::appendNumber(std::string& output, std::string_view token) {
    const bool isFloat = token.find_first_of(".eE") != std::string_view::npos;
    if ((!isFloat && token.size() <= safeIntegerBytes) || !isJSONNumber(token)) {
        output.append(token);
    } else if (const auto integer = exactInteger(token)) {
        output.append(std::to_string(*integer));
    } else if (isWithinFloat(token)) {
        output.append(token).append(isFloat ? "" : "e0");
    } else {
        output.append("true");
        m_replacedNumbers = true;
    }
}

bool JSONParser::isWithinFloat(std::string_view token) {
    const bool hasExponent = token.find_first_of("eE") != std::string_view::npos;
    if (!hasExponent && token.size() <= safeFloatBytes) {
        return true;
    }
    const std::string asFloat = '[' + std::string(token) + (hasExponent ? "]" : "e0]");
    return m_numberParser.parse(asFloat).error() == simdjson::SUCCESS;
}

} // namespace ondavia::wire
