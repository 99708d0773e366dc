#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

class SearchIndex;

/// Neither live nor a film nor a series: whatever there is.
inline constexpr std::string_view everyType = "all";

/// How many items of each type.
struct TypeCounts final {
    std::size_t live = 0;
    std::size_t movie = 0;
    std::size_t series = 0;

    bool operator==(const TypeCounts&) const = default;
};

/// The items of one group title, by the keys of their rows.
struct ResultGroup final {
    std::string groupTitle;
    std::vector<std::int64_t> keys;

    bool operator==(const ResultGroup&) const = default;
};

/// What a search found, in the order of the numbers.
class SearchResults final {
public:
    SearchResults() = default;
    /// The items at `places` of `index`.
    SearchResults(std::shared_ptr<const SearchIndex> index, std::vector<std::size_t> places);

    [[nodiscard]] bool isEmpty() const { return m_places.empty(); }
    [[nodiscard]] std::size_t size() const { return m_places.size(); }
    [[nodiscard]] TypeCounts typeCounts() const;
    /// The items of `type`, or of `everyType`, by group title: the groups in the order of their first items,
    /// the items of a group in theirs.
    [[nodiscard]] std::vector<ResultGroup> grouped(std::string_view type) const;

private:
    std::shared_ptr<const SearchIndex> m_index;
    std::vector<std::size_t> m_places;
};

} // namespace ondavia
