#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

class StoreContext;

/// `text` as a search compares it: in lower case, character by character and the same in every language, so
/// that the sigma at a word's end is the one amid a word. What is no UTF-8 becomes the replacement character.
[[nodiscard]] std::string foldedForSearch(std::string_view text);

/// What a search looks at in a catalogue: of every item the name, the group title and the series name, in
/// lower case, by number. Nothing changes after it was made; any thread.
class SearchIndex final {
public:
    /// What a search needs at least, in characters as a reader counts them.
    static constexpr int minimumLength = 2;

    SearchIndex() = default;
    /// Reads the whole catalogue; on the thread of `context`. Raises StoreError.
    [[nodiscard]] static SearchIndex read(StoreContext& context);

    /// The items of whose name, group title or series name `text` is a part, whatever the case, by number;
    /// those of `type` alone where one is given. Each is a place for the calls below.
    [[nodiscard]] std::vector<std::size_t> find(std::string_view text,
                                                const std::optional<std::string>& type = {}) const;

    [[nodiscard]] std::size_t size() const { return m_keys.size(); }
    /// By which the store knows the row.
    [[nodiscard]] std::int64_t key(std::size_t place) const { return m_keys[place]; }
    [[nodiscard]] const std::string& type(std::size_t place) const { return m_types[m_rowTypes[place]]; }
    /// As it stands in the catalogue.
    [[nodiscard]] const std::string& groupTitle(std::size_t place) const {
        return m_groups[m_rowGroups[place]];
    }

private:
    /// Many texts in one, each with a byte behind it that no text has, so that one run finds whoever has a
    /// part.
    class Texts final {
    public:
        void add(std::string_view text);
        void shrink();
        /// Marks the texts that `part` is found in.
        void mark(std::string_view part, std::vector<char>& marks) const;

    private:
        /// Where `part` begins next, at `from` or later; npos when nowhere.
        [[nodiscard]] std::size_t find(std::string_view part, std::size_t from) const;

        /// How often each byte occurs.
        std::array<std::uint32_t, 256> m_counts{};
        std::string m_bytes;
        /// Behind each text.
        std::vector<std::uint32_t> m_ends;
    };

    Texts m_names;
    Texts m_foldedGroups;
    Texts m_seriesNames;
    /// The row of each series name.
    std::vector<std::uint32_t> m_seriesRows;
    std::vector<std::string> m_groups;
    std::vector<std::string> m_types;
    std::vector<std::int64_t> m_keys;
    std::vector<std::uint32_t> m_rowGroups;
    std::vector<std::uint8_t> m_rowTypes;
};

} // namespace ondavia
