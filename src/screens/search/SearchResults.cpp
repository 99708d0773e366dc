#include "screens/search/SearchResults.h"

#include "library/SearchIndex.h"

#include <unordered_map>

namespace ondavia {

SearchResults::SearchResults(std::shared_ptr<const SearchIndex> index, std::vector<std::size_t> places)
    : m_index(std::move(index))
    , m_places(std::move(places)) {}

TypeCounts SearchResults::typeCounts() const {
    TypeCounts counts;
    for (const std::size_t place : m_places) {
        const std::string& type = m_index->type(place);
        counts.live += type == "live" ? 1 : 0;
        counts.movie += type == "movie" ? 1 : 0;
        counts.series += type == "series" ? 1 : 0;
    }
    return counts;
}

std::vector<ResultGroup> SearchResults::grouped(std::string_view type) const {
    std::vector<ResultGroup> groups;
    // The index keeps each title once: its address stands for it, and no title is compared with another.
    std::unordered_map<const std::string*, std::size_t> groupOfTitle;
    for (const std::size_t place : m_places) {
        if (type != everyType && m_index->type(place) != type) {
            continue;
        }
        const std::string& title = m_index->groupTitle(place);
        const auto [group, isNew] = groupOfTitle.try_emplace(&title, groups.size());
        if (isNew) {
            groups.push_back({title, {}});
        }
        groups[group->second].keys.push_back(m_index->key(place));
    }
    return groups;
}

} // namespace ondavia
