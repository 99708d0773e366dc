#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

/// Consecutive keys of rows of one section.
struct KeyRange final {
    int section = 0;
    std::int64_t first = 0;
    std::int64_t count = 0;
};

/// Gives out the keys of a replacement's rows, ascending as they arrive, and knows which section each
/// belongs to and which rows have ids that occurred before. Keys that followed the sections instead would
/// have rows inserted in the middle of the table, which splits pages. One thread at a time.
///
/// Of ids only hashes are kept, 16 bytes a row. Equal hashes make candidates, whose ids are then compared.
class SectionedKeys final {
public:
    explicit SectionedKeys(std::int64_t firstKey)
        : m_nextKey(firstKey + 1) {}

    /// The key of the next row.
    std::int64_t add(int section);
    /// The same, with the row's id remembered.
    std::int64_t add(int section, std::string_view id);

    /// Rows added to a section and not taken away.
    [[nodiscard]] std::int64_t count(int section) const;

    /// Forgets the rows of a section and returns their keys.
    [[nodiscard]] std::vector<KeyRange> takeSection(int section);

    /// The keys of the rows whose id comes again later in a section or in a higher one.
    [[nodiscard]] std::vector<std::int64_t>
    supersededKeys(const std::function<std::string(std::int64_t)>& idOfKey);

private:
    struct HashedKey final {
        std::size_t hash;
        std::int64_t key;
    };

    [[nodiscard]] int sectionOf(std::int64_t key) const;

    std::int64_t m_nextKey;
    /// Ascending by their first key.
    std::vector<KeyRange> m_ranges;
    std::vector<HashedKey> m_hashes;
};

} // namespace ondavia
