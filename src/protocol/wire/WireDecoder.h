#pragma once

#include "base/Text.h"
#include "protocol/wire/Decoding.h"
#include "protocol/wire/JSONParser.h"
#include "protocol/wire/Numbers.h"
#include "protocol/wire/WireFields.h"

#include <array>
#include <type_traits>

namespace ondavia::wire {

using Element = simdjson::dom::element;

/// One step on the way to a value, for the error text: a key, or a position in a list. Lives on the
/// stack, so that the way costs nothing while all is well.
struct PathStep final {
    const PathStep* parent = nullptr;
    std::string_view key;
    std::int64_t position = -1;
};

/// Turns parsed JSON into wire records by their field tables. Raises DecodingError.
class WireDecoder final {
public:
    /// Raised where an integer is asked for and the parser has kept no more than a float: parse exactly, and
    /// begin again.
    struct NeedsExactNumbers final {};

    WireDecoder(std::string_view action, const JSONParser& parser)
        : m_action(action)
        , m_parser(parser) {}

    /// `firstRow` is the index of the first element within the whole list.
    template<class Row> [[nodiscard]] std::vector<Row> rows(Element list, std::int64_t firstRow) {
        simdjson::dom::array array;
        if (list.get(array) != simdjson::SUCCESS) {
            fail(nullptr, "list", list);
        }
        std::vector<Row> rows;
        rows.reserve(countedSize(array, nullptr));
        m_row = firstRow;
        for (const Element element : array) {
            record(element, rows.emplace_back(), nullptr);
            ++*m_row;
        }
        return rows;
    }

    template<WireRecord Record> void record(Element value, Record& record, const PathStep* path);
    void record(Element value, XtreamSeriesInfo& record, const PathStep* path);

    /// Whether a flexible field held a number that it has no outcome for. Whoever has found the whole reply
    /// to be well ends the process then.
    [[nodiscard]] bool hasFatalNumber() const { return m_hasFatalNumber; }

private:
    template<class Record> struct Entry final {
        std::string_view key;
        bool isRequired;
        void (*decode)(WireDecoder&, Element, Record&, const PathStep&);
    };
    template<class Record> static constexpr auto makeEntries();
    template<class Record, std::size_t Index>
    static void decodeField(WireDecoder& decoder, Element value, Record& record, const PathStep& path) {
        decoder.decode(value, record.*(std::get<Index>(Wire<Record>::fields).member), path);
    }

    template<class T> void decode(Element value, std::optional<T>& target, const PathStep& path) {
        if (value.is_null()) {
            target.reset();
        } else {
            decode(value, target.emplace(), path);
        }
    }
    template<WireRecord T> void decode(Element value, T& target, const PathStep& path) {
        record(value, target, &path);
    }
    template<class T> void decode(Element value, std::vector<T>& target, const PathStep& path) {
        simdjson::dom::array array;
        if (value.get(array) != simdjson::SUCCESS) {
            fail(&path, "list", value);
        }
        target.reserve(countedSize(array, &path));
        PathStep step{&path, {}, 0};
        for (const Element element : array) {
            decode(element, target.emplace_back(), step);
            ++step.position;
        }
    }
    void decode(Element value, std::string& target, const PathStep& path) {
        std::string_view text;
        if (value.get(text) != simdjson::SUCCESS) {
            fail(&path, "text", value);
        }
        target.assign(text);
    }
    void decode(Element value, std::int64_t& target, const PathStep& path);
    void decode(Element value, FlexibleString& target, const PathStep& path);
    void decode(Element value, FlexibleInt& target, const PathStep& path);
    void decode(Element value, std::optional<XtreamEpisodeMap>& target, const PathStep& path);
    void decodeSeasonsByKey(Element value, XtreamEpisodeMap& target, const PathStep& path);
    void decodeSeasonsByPosition(Element value, XtreamEpisodeMap& target, const PathStep& path);

    void requireExactNumbers(Element value) const;
    template<class Container>
    [[nodiscard]] std::size_t countedSize(const Container& elements, const PathStep* path);

    [[noreturn]] void fail(const PathStep* path, std::string_view expected, Element found) const;
    [[noreturn]] void failMissing(const PathStep& path) const;
    [[noreturn]] void raise(const PathStep* path, std::string_view expected, std::string found) const;
    [[nodiscard]] std::string describe(Element found, const PathStep* path) const;

    std::string_view m_action;
    const JSONParser& m_parser;
    std::optional<std::int64_t> m_row;
    std::size_t m_elements = 0;
    bool m_hasFatalNumber = false;
};

template<class Record> constexpr auto WireDecoder::makeEntries() {
    return []<std::size_t... Index>(std::index_sequence<Index...>) {
        constexpr auto& fields = Wire<Record>::fields;
        return std::array{
            Entry<Record>{std::get<Index>(fields).key,
                          std::is_same_v<decltype(std::get<Index>(fields).member), std::string Record::*>,
                          &WireDecoder::decodeField<Record, Index>}...};
    }
    (std::make_index_sequence<std::tuple_size_v<decltype(Wire<Record>::fields)>>());
}

/// How many elements `elements` has, for room to be made in one go. A few bytes of JSON can make hundreds
/// of bytes of records, so their sum is bounded.
template<class Container>
std::size_t WireDecoder::countedSize(const Container& elements, const PathStep* path) {
    m_elements += elements.size();
    if (m_elements > maximumReplyElements) {
        raise(path, "reply of at most " + std::to_string(maximumReplyElements) + " list elements", "more");
    }
    return elements.size();
}

/// What `decode` makes of the root of `parsed`, which is the parse of `text`, or of an exact one where that
/// is needed.
template<class Decode>
auto decodeExactly(JSONParser& parser, Element parsed, std::string_view text, Decode decode) {
    try {
        return decode(parsed);
    } catch (const WireDecoder::NeedsExactNumbers&) {
        // Whether it is JSON has been seen: only numbers are written in another way.
        return decode(parser.parseExactly(text).value());
    }
}

/// Servers keep the order of their keys, so the search for each starts behind the last one found.
template<WireRecord Record> void WireDecoder::record(Element value, Record& record, const PathStep* path) {
    static constexpr auto entries = makeEntries<Record>();
    simdjson::dom::object object;
    if (value.get(object) != simdjson::SUCCESS) {
        fail(path, "object", value);
    }
    PathStep step{path, {}, -1};
    std::uint32_t seen = 0;
    std::size_t expected = 0;
    for (const auto [key, element] : object) {
        for (std::size_t tried = 0; tried < entries.size(); ++tried) {
            const std::size_t index = expected;
            expected = index + 1 == entries.size() ? 0 : index + 1;
            if (entries[index].key == key) {
                seen |= 1U << index;
                step.key = entries[index].key;
                entries[index].decode(*this, element, record, step);
                break;
            }
        }
    }
    for (std::size_t index = 0; index < entries.size(); ++index) {
        if (entries[index].isRequired && (seen & (1U << index)) == 0) {
            step.key = entries[index].key;
            failMissing(step);
        }
    }
}

} // namespace ondavia::wire
