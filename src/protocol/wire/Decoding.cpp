#include "protocol/wire/Decoding.h"

#include "base/FatalFault.h"
#include "base/VisibleText.h"
#include "protocol/wire/WireDecoder.h"

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
            path->position >= 0 ? "[" + std::to_string(path->position) + "]" : beginning(path->key);
        text.insert(0, step + (needsDot ? "." : ""));
    }
    return text;
}

} // namespace

void WireDecoder::decode(Element value, std::int64_t& target, const PathStep& path) {
    if (value.get(target) != simdjson::SUCCESS) {
        requireExactNumbers(value);
        fail(&path, "integer", value);
    }
}

void WireDecoder::requireExactNumbers(Element value) const {
    if (value.is_double() && !m_parser.isExact()) {
        throw NeedsExactNumbers();
    }
}

void WireDecoder::decode(Element value, FlexibleString& target, const PathStep& /*path*/) {
    std::string_view text;
    double number = 0;
    if (value.get(text) == simdjson::SUCCESS) {
        target.value.emplace(text);
    } else if (value.get(number) == simdjson::SUCCESS) {
        target.value = flexibleText(number);
        m_hasFatalNumber = m_hasFatalNumber || !target.value;
    } else {
        target.value.reset();
    }
}

void WireDecoder::decode(Element value, FlexibleInt& target, const PathStep& /*path*/) {
    std::string_view text;
    std::int64_t integer = 0;
    if (value.get(integer) == simdjson::SUCCESS) {
        target.value = integer;
    } else if (value.get(text) == simdjson::SUCCESS) {
        target.value = parseDecimalInteger(text);
    } else {
        requireExactNumbers(value);
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
    const bool hadFatalNumber = m_hasFatalNumber;
    try {
        if (value.is_object()) {
            decodeSeasonsByKey(value, target.emplace(), path);
        } else if (value.is_array()) {
            decodeSeasonsByPosition(value, target.emplace(), path);
        }
    } catch (const DecodingError&) {
        if (m_elements > maximumReplyElements) {
            // A bound of ours and not the server's shape.
            throw;
        }
        // By design without a trace: the series stays usable with its seasons and detail.
        target.reset();
        // What is not kept needs no outcome either.
        m_hasFatalNumber = hadFatalNumber;
    }
}

void WireDecoder::decodeSeasonsByKey(Element value, XtreamEpisodeMap& target, const PathStep& path) {
    const simdjson::dom::object seasons(value);
    (void)countedSize(seasons, &path);
    for (const auto [key, episodes] : seasons) {
        auto& season = target[std::string(key)];
        season.clear();
        decode(episodes, season, PathStep{&path, key, -1});
    }
}

void WireDecoder::decodeSeasonsByPosition(Element value, XtreamEpisodeMap& target, const PathStep& path) {
    const simdjson::dom::array seasons(value);
    (void)countedSize(seasons, &path);
    PathStep step{&path, {}, 0};
    for (const Element episodes : seasons) {
        if (!episodes.is_null()) {
            decode(episodes, target[std::to_string(step.position)], step);
        }
        ++step.position;
    }
}

void WireDecoder::fail(const PathStep* path, std::string_view expected, Element found) const {
    raise(path, expected, describe(found, path));
}

void WireDecoder::failMissing(const PathStep& path) const {
    raise(&path, "text", "no such key");
}

void WireDecoder::raise(const PathStep* path, std::string_view expected, std::string found) const {
    throw DecodingError({std::string(m_action), m_row, visibleText(maskSecrets(pathText(path))),
                         std::string(expected), std::move(found)});
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
        return isHidden ? "number" : "number " + maskSecrets(simdjson::minify(found));
    }
}

} // namespace wire

namespace {

template<class T> constexpr bool isVector = false;
template<class T> constexpr bool isVector<std::vector<T>> = true;

} // namespace

void requireReplyWithinBound(std::size_t bytes, std::string_view action) {
    if (bytes > maximumReplyBytes) {
        throw DecodingError({std::string(action), {}, {}, "reply of at most 32 MiB", "a longer one"});
    }
}

void raiseFatalNumber() {
    fatalFault("a whole number beyond 64 bits where a text was expected");
}

template<class Reply> Reply decodeReply(std::string_view json, std::string_view action) {
    requireReplyWithinBound(json.size(), action);
    if (json.starts_with(wire::byteOrderMark)) {
        json.remove_prefix(wire::byteOrderMark.size());
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
    return wire::decodeExactly(parser, root, json, [&](wire::Element element) {
        wire::WireDecoder decoder(action, parser);
        Reply reply;
        if constexpr (isVector<Reply>) {
            reply = decoder.rows<typename Reply::value_type>(element, 0);
        } else {
            decoder.record(element, reply, nullptr);
        }
        if (decoder.hasFatalNumber()) {
            raiseFatalNumber();
        }
        return reply;
    });
}

#define ONDAVIA_INSTANTIATE(...)                                                                             \
    template __VA_ARGS__ decodeReply<__VA_ARGS__>(std::string_view, std::string_view);
ONDAVIA_FOR_EACH_REPLY(ONDAVIA_INSTANTIATE)
#undef ONDAVIA_INSTANTIATE

} // namespace ondavia
