#include "protocol/wire/SubtitleListings.h"

#include "protocol/wire/Decoding.h"
#include "protocol/wire/JSONParser.h"

#include <array>
#include <set>

namespace ondavia {
namespace {

using simdjson::dom::element;
using simdjson::dom::element_type;

/// A place to try: a key of an object within the root, or of the root itself.
struct Place final {
    std::string_view name;
    std::string_view parent;
    std::string_view key;
};
constexpr std::array places{Place{"info.subtitles", "info", "subtitles"}, Place{"info.subs", "info", "subs"},
                            Place{"movie_data.subtitles", "movie_data", "subtitles"},
                            Place{"subtitles", "", "subtitles"}};

/// Where an element that is an object may have its file.
constexpr std::array<std::string_view, 6> fileKeys{"url", "link", "href", "src", "subtitle_url", "file"};

std::optional<element> valueOf(element parent, std::string_view key) {
    std::optional<element> value;
    simdjson::dom::object object;
    if (parent.get(object) == simdjson::SUCCESS) {
        for (const auto [name, candidate] : object) {
            if (name == key) {
                value = candidate;
            }
        }
    }
    return value;
}

std::string_view textOf(const std::optional<element>& value) {
    std::string_view text;
    return value && value->get(text) == simdjson::SUCCESS ? text : std::string_view();
}

/// Empty for an element that names no file.
std::string_view fileOf(element listed) {
    for (const std::string_view key : fileKeys) {
        if (const auto file = textOf(valueOf(listed, key)); !file.empty()) {
            return file;
        }
    }
    return textOf(listed);
}

SubtitleListing listingAt(element root, const Place& place) {
    SubtitleListing listing{place.name, 0, {}};
    const auto parent = place.parent.empty() ? std::optional(root) : valueOf(root, place.parent);
    const auto value = parent ? valueOf(*parent, place.key) : std::nullopt;
    simdjson::dom::array list;
    if (value && value->get(list) == simdjson::SUCCESS) {
        for (const element listed : list) {
            ++listing.elementCount;
            const auto file = fileOf(listed);
            if (!file.empty() && listing.files.size() < maximumReplyElements) {
                listing.files.emplace_back(file);
            }
        }
    }
    return listing;
}

/// The keys of an object, in their order among texts. As many as say what kind of object it is.
std::optional<std::string> keysOf(element parent) {
    constexpr std::size_t enough = 100;
    simdjson::dom::object object;
    if (parent.get(object) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    std::set<std::string_view> keys;
    for (const auto [key, value] : object) {
        keys.insert(key);
    }
    std::string text;
    std::size_t count = 0;
    for (const std::string_view key : keys) {
        text += (count == 0 ? "" : ", ") + (count < enough ? beginning(key) : "...");
        if (count++ == enough) {
            break;
        }
    }
    return text;
}

std::string typeName(element value) {
    switch (value.type()) {
    case element_type::ARRAY:
        return "list";
    case element_type::OBJECT:
        return "object";
    case element_type::NULL_VALUE:
        return "null";
    case element_type::BOOL:
        return "boolean";
    case element_type::STRING:
        return "text";
    default:
        return "number";
    }
}

} // namespace

std::optional<SubtitleListings> readSubtitleListings(std::string_view json) {
    if (json.starts_with(wire::byteOrderMark)) {
        json.remove_prefix(wire::byteOrderMark.size());
    }
    wire::JSONParser parser;
    element root;
    if (parser.parse(json).get(root) != simdjson::SUCCESS || !root.is_object()) {
        return std::nullopt;
    }
    SubtitleListings listings;
    for (const Place& place : places) {
        if (auto listing = listingAt(root, place); listing.elementCount > 0) {
            listings.lists.push_back(std::move(listing));
        }
    }
    listings.rootKeys = *keysOf(root);
    if (const auto info = valueOf(root, "info")) {
        listings.infoKeys = keysOf(*info);
        const auto subtitles = valueOf(*info, "subtitles");
        listings.infoSubtitlesType = subtitles ? std::optional(typeName(*subtitles)) : std::nullopt;
    }
    return listings;
}

} // namespace ondavia
