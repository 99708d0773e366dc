#include "store/SectionedKeys.h"

#include <algorithm>
#include <tuple>

namespace ondavia {

std::int64_t SectionedKeys::add(int section) {
    const std::int64_t key = m_nextKey++;
    const bool continues = !m_ranges.empty() && m_ranges.back().section == section &&
                           m_ranges.back().first + m_ranges.back().count == key;
    if (!continues) {
        m_ranges.push_back({section, key, 0});
    }
    ++m_ranges.back().count;
    return key;
}

std::int64_t SectionedKeys::add(int section, std::string_view id) {
    const std::int64_t key = add(section);
    m_hashes.push_back({std::hash<std::string_view>()(id), key});
    return key;
}

std::int64_t SectionedKeys::count(int section) const {
    std::int64_t rows = 0;
    for (const KeyRange& range : m_ranges) {
        rows += range.section == section ? range.count : 0;
    }
    return rows;
}

std::vector<KeyRange> SectionedKeys::takeSection(int section) {
    std::erase_if(m_hashes, [&](const HashedKey& entry) { return sectionOf(entry.key) == section; });
    const auto middle =
        std::stable_partition(m_ranges.begin(), m_ranges.end(),
                              [section](const KeyRange& range) { return range.section != section; });
    std::vector<KeyRange> taken(middle, m_ranges.end());
    m_ranges.erase(middle, m_ranges.end());
    return taken;
}

std::vector<std::int64_t>
SectionedKeys::supersededKeys(const std::function<std::string(std::int64_t)>& idOfKey) {
    const auto byHash = [](const HashedKey& left, const HashedKey& right) { return left.hash < right.hash; };
    std::sort(m_hashes.begin(), m_hashes.end(), byHash);
    std::vector<std::int64_t> superseded;
    std::vector<std::tuple<std::string, int, std::int64_t>> candidates;
    for (auto begin = m_hashes.cbegin(); begin != m_hashes.cend();) {
        const auto end = std::find_if(begin, m_hashes.cend(),
                                      [begin](const HashedKey& entry) { return entry.hash != begin->hash; });
        candidates.clear();
        for (auto entry = begin; end - begin > 1 && entry != end; ++entry) {
            candidates.emplace_back(idOfKey(entry->key), sectionOf(entry->key), entry->key);
        }
        std::sort(candidates.begin(), candidates.end());
        for (std::size_t index = 1; index < candidates.size(); ++index) {
            if (std::get<0>(candidates[index - 1]) == std::get<0>(candidates[index])) {
                superseded.push_back(std::get<2>(candidates[index - 1]));
            }
        }
        begin = end;
    }
    return superseded;
}

int SectionedKeys::sectionOf(std::int64_t key) const {
    const auto after =
        std::upper_bound(m_ranges.begin(), m_ranges.end(), key,
                         [](std::int64_t value, const KeyRange& range) { return value < range.first; });
    return std::prev(after)->section;
}

} // namespace ondavia
