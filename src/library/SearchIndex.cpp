#include "library/SearchIndex.h"

#include "base/Text.h"
#include "entities/Channel.h"
#include "store/StoreContext.h"

#include <QString>

#include <algorithm>
#include <cstring>
#include <tuple>
#include <unordered_map>

namespace ondavia {
namespace {

/// In no UTF-8.
constexpr char separator = '\xFF';

/// Each different value once, in the order of their first appearance.
template<class Number> class Values final {
public:
    explicit Values(std::vector<std::string>& values)
        : m_values(values) {}
    /// The value's place, and whether it is new.
    std::pair<Number, bool> place(std::string&& value) {
        const auto [found, isNew] = m_places.try_emplace(value, static_cast<Number>(m_values.size()));
        if (isNew) {
            m_values.push_back(std::move(value));
        }
        return {found->second, isNew};
    }

private:
    std::vector<std::string>& m_values;
    std::unordered_map<std::string, Number> m_places;
};

} // namespace

std::string foldedForSearch(std::string_view text) {
    const bool isAscii = std::ranges::all_of(
        text, [](char character) { return static_cast<unsigned char>(character) < 0x80; });
    if (isAscii) {
        return asciiLowercase(std::string(text));
    }
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toLower().toStdString();
}

void SearchIndex::Texts::add(std::string_view text) {
    for (const char character : text) {
        ++m_counts[static_cast<unsigned char>(character)];
    }
    m_bytes += text;
    m_bytes += separator;
    m_ends.push_back(static_cast<std::uint32_t>(m_bytes.size()));
}

void SearchIndex::Texts::shrink() {
    m_bytes.shrink_to_fit();
    m_ends.shrink_to_fit();
}

/// By the byte of `part` that the texts have least of, when they have few of it: most of them are passed over
/// without a look.
std::size_t SearchIndex::Texts::find(std::string_view part, std::size_t from) const {
    const auto count = [this](char character) { return m_counts[static_cast<unsigned char>(character)]; };
    const auto rarest = std::ranges::min_element(part, {}, count);
    // About what a stop at a byte costs, in bytes of a plain run.
    constexpr std::size_t priceOfAStop = 32;
    const std::string_view bytes = m_bytes;
    if (count(*rarest) * priceOfAStop > bytes.size()) {
        const void* found = memmem(bytes.data() + from, bytes.size() - from, part.data(), part.size());
        return found == nullptr ? std::string_view::npos
                                : static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data());
    }
    const auto before = static_cast<std::size_t>(rarest - part.begin());
    std::size_t found = bytes.find(*rarest, from + before);
    while (found != std::string_view::npos && bytes.compare(found - before, part.size(), part) != 0) {
        found = bytes.find(*rarest, found + 1);
    }
    return found == std::string_view::npos ? found : found - before;
}

void SearchIndex::Texts::mark(std::string_view part, std::vector<char>& marks) const {
    if (part.empty()) {
        std::ranges::fill(marks, char{1});
        return;
    }
    std::size_t text = 0;
    for (std::size_t found = find(part, 0); found != std::string_view::npos;
         found = find(part, m_ends[text])) {
        while (m_ends[text] <= found) {
            ++text;
        }
        marks[text] = 1;
    }
}

SearchIndex SearchIndex::read(StoreContext& context) {
    SearchIndex index;
    Values<std::uint32_t> groups(index.m_groups);
    Values<std::uint8_t> types(index.m_types);
    const auto add =
        [&](PartialRow<std::string, std::string, std::string, std::optional<std::string>>&& row) {
            auto& [type, name, groupTitle, seriesName] = row.members;
            const std::string folded = foldedForSearch(name);
            const std::string foldedSeries = seriesName ? foldedForSearch(*seriesName) : folded;
            if (foldedSeries != folded) {
                index.m_seriesNames.add(foldedSeries);
                index.m_seriesRows.push_back(static_cast<std::uint32_t>(index.m_keys.size()));
            }
            const std::string foldedGroup = foldedForSearch(groupTitle);
            const auto [group, isNew] = groups.place(std::move(groupTitle));
            if (isNew) {
                index.m_foldedGroups.add(foldedGroup);
            }
            index.m_keys.push_back(row.key);
            index.m_names.add(folded);
            index.m_rowGroups.push_back(group);
            index.m_rowTypes.push_back(types.place(std::move(type)).first);
        };
    context.forEachMembers<Channel>({.sort = {ascending(&Channel::num)}}, add, &Channel::type, &Channel::name,
                                    &Channel::groupTitle, &Channel::seriesName);
    index.m_names.shrink();
    index.m_seriesNames.shrink();
    index.m_keys.shrink_to_fit();
    index.m_rowGroups.shrink_to_fit();
    index.m_rowTypes.shrink_to_fit();
    return index;
}

std::vector<std::size_t> SearchIndex::find(std::string_view text,
                                           const std::optional<std::string>& type) const {
    const std::string part = foldedForSearch(text);
    std::vector<char> rows(size());
    m_names.mark(part, rows);
    std::vector<char> series(m_seriesRows.size());
    m_seriesNames.mark(part, series);
    for (std::size_t place = 0; place < series.size(); ++place) {
        rows[m_seriesRows[place]] |= series[place];
    }
    std::vector<char> groups(m_groups.size());
    m_foldedGroups.mark(part, groups);
    std::vector<std::size_t> found;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const bool isFound = rows[row] != 0 || groups[m_rowGroups[row]] != 0;
        if (isFound && (!type || m_types[m_rowTypes[row]] == *type)) {
            found.push_back(row);
        }
    }
    return found;
}

} // namespace ondavia
