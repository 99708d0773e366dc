#include "protocol/wire/Decoding.h"

#include "protocol/wire/WireDecoder.h"

#include <charconv>

namespace ondavia {
namespace wire {
namespace {

bool isSecret(const PathStep* path) {
    for (; path != nullptr; path = path->parent) {
        if (path->key == "password" || path->key == "username") {
            return true;
        }
    }
    return false;
}

std::string pathText(const PathStep* path) {
    std::string text;
    for (; path != nullptr; path = path->parent) {
        const bool needsDot = !text.empty() && text.front() != '[';
        const std::string step =
            path->position >= 0 ? "[" + std::to_string(path->position) + "]" : std::string(path->key);
        text.insert(0, step + (needsDot ? "." : ""));
    }
    return text;
}

} // namespace

void WireDecoder::decode(Element value, std::int64_t& target, const PathStep& path) {
    if (value.get(target) == simdjson::SUCCESS) {
        return;
    }
    double number = 0;
    const auto whole =
        value.is_double() && value.get(number) == simdjson::SUCCESS ? exactInteger(number) : std::nullopt;
    if (!whole) {
        fail(&path, "integer", value);
    }
    target = *whole;
}

void WireDecoder::decode(Element value, FlexibleString& target, const PathStep& /*path*/) {
    std::string_view text;
    double number = 0;
    if (value.get(text) == simdjson::SUCCESS) {
        target.value.emplace(text);
    } else if (value.get(number) == simdjson::SUCCESS) {
        target.value = flexibleText(number);
    } else {
        target.value.reset();
    }
}

void WireDecoder::decode(Element value, FlexibleInt& target, const PathStep& /*path*/) {
    std::string_view text;
    double number = 0;
    std::int64_t integer = 0;
    if (value.get(integer) == simdjson::SUCCESS) {
        target.value = integer;
    } else if (value.get(text) == simdjson::SUCCESS) {
        target.value = parseDecimalInteger(text);
    } else if (value.is_double() && value.get(number) == simdjson::SUCCESS) {
        target.value = exactInteger(number);
    } else {
        target.value.reset();
    }
}

/// In the order of the table, wherever the keys stand: a malformed season or detail fails the reply before
/// anything in the episodes counts.
void WireDecoder::record(Element value, XtreamSeriesInfo& record, const PathStep* path) {
    simdjson::dom::object object;
    if (value.get(object) != simdjson::SUCCESS) {
        fail(path, "object", value);
    }
    for (const auto& entry : makeEntries<XtreamSeriesInfo>()) {
        for (const auto [key, element] : object) {
            if (key == entry.key) {
                entry.decode(*this, element, record, PathStep{path, entry.key, -1});
            }
        }
    }
}

/// Servers send an object keyed by season number, or a list with one entry a season. What is neither
/// costs the episodes and not the series.
void WireDecoder::decode(Element value, std::optional<XtreamEpisodeMap>& target, const PathStep& path) {
    target.reset();
    try {
        if (value.is_object()) {
            decodeSeasonsByKey(value, target.emplace(), path);
        } else if (value.is_array()) {
            decodeSeasonsByPosition(value, target.emplace(), path);
        }
    } catch (const DecodingError&) {
        // By design without a trace: the series stays usable with its seasons and detail.
        target.reset();
    }
}

void WireDecoder::decodeSeasonsByKey(Element value, XtreamEpisodeMap& target, const PathStep& path) {
    for (const auto [key, episodes] : simdjson::dom::object(value)) {
        auto& season = target[std::string(key)];
        season.clear();
        decode(episodes, season, PathStep{&path, key, -1});
    }
}

void WireDecoder::decodeSeasonsByPosition(Element value, XtreamEpisodeMap& target, const PathStep& path) {
    PathStep step{&path, {}, 0};
    for (const Element episodes : simdjson::dom::array(value)) {
        if (!episodes.is_null()) {
            decode(episodes, target[std::to_string(step.position)], step);
        }
        ++step.position;
    }
}

/// How many elements `array` has, for room to be made in one go. A few bytes of JSON can make hundreds
/// of bytes of records, so their sum is bounded.
std::size_t WireDecoder::countedSize(simdjson::dom::array array, const PathStep* path) {
    m_elements += array.size();
    if (m_elements > maximumReplyElements) {
        raise(path, "reply of at most " + std::to_string(maximumReplyElements) + " list elements", "more");
    }
    return array.size();
}

void WireDecoder::fail(const PathStep* path, std::string_view expected, Element found) const {
    raise(path, expected, describe(found, path));
}

void WireDecoder::failMissing(const PathStep& path) const {
    raise(&path, "text", "no such key");
}

void WireDecoder::raise(const PathStep* path, std::string_view expected, std::string found) const {
    throw DecodingError(
        {std::string(m_action), m_row, pathText(path), std::string(expected), std::move(found)});
}

std::string WireDecoder::describe(Element found, const PathStep* path) const {
    const bool isHidden = isSecret(path);
    switch (found.type()) {
    case simdjson::dom::element_type::ARRAY:
        return "list";
    case simdjson::dom::element_type::OBJECT:
        return "object";
    case simdjson::dom::element_type::NULL_VALUE:
        return "null";
    case simdjson::dom::element_type::BOOL:
        return m_parser.replacedNumbers() ? "boolean (or a number beyond 64 bits)" : "boolean";
    case simdjson::dom::element_type::STRING:
        return isHidden ? "text" : "text " + excerpt(std::string_view(found));
    default:
        return isHidden ? "number" : "number " + simdjson::minify(found);
    }
}

} // namespace wire

namespace {

/// The byte-order mark that some servers put in front of their replies.
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

template<class T> constexpr bool isVector = false;
template<class T> constexpr bool isVector<std::vector<T>> = true;

} // namespace

void requireReplyWithinBound(std::size_t bytes, std::string_view action) {
    if (bytes > maximumReplyBytes) {
        throw DecodingError({std::string(action), {}, {}, "reply of at most 32 MiB", "a longer one"});
    }
}

template<class Reply> Reply decodeReply(std::string_view json, std::string_view action) {
    requireReplyWithinBound(json.size(), action);
    if (json.starts_with(byteOrderMark)) {
        json.remove_prefix(byteOrderMark.size());
    }
    wire::JSONParser parser;
    wire::Element root;
    if (const auto error = parser.parse(json).get(root)) {
        // A text in brackets may hold an account; a page of HTML is worth a look.
        const bool isBracketed = json.starts_with('{') || json.starts_with('[');
        throw DecodingError({std::string(action),
                             {},
                             {},
                             "JSON",
                             std::string(simdjson::error_message(error)) +
                                 (isBracketed ? std::string() : " " + excerpt(json))});
    }
    wire::WireDecoder decoder(action, parser);
    if constexpr (isVector<Reply>) {
        return decoder.rows<typename Reply::value_type>(root, 0);
    } else {
        Reply reply;
        decoder.record(root, reply, nullptr);
        return reply;
    }
}

#define ONDAVIA_INSTANTIATE(...)                                                                             \
    template __VA_ARGS__ decodeReply<__VA_ARGS__>(std::string_view, std::string_view);
ONDAVIA_FOR_EACH_REPLY(ONDAVIA_INSTANTIATE)
#undef ONDAVIA_INSTANTIATE

} // namespace ondavia
