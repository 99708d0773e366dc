#pragma once

#include "demo/Catalogue.h"

#include <optional>
#include <string>

namespace ondavia::demo {

/// The title database (popular lists, details) in the wire form of its version 3. About three quarters of the
/// popular titles are in the catalogue; some Portuguese titles come in a foreign script, as untranslated ones
/// do. May be used from any thread.
class TitleDatabase final {
public:
    static constexpr std::string_view key = "demo-title-key";

    explicit TitleDatabase(const Catalogue& catalogue)
        : m_catalogue(catalogue) {}

    enum class Kind { film, series };
    enum class Language { portuguese, english };

    [[nodiscard]] std::string popular(Kind kind, Language language) const;
    /// Absent for an id that the database does not hold.
    [[nodiscard]] std::optional<std::string> details(Kind kind, std::int64_t id) const;

    /// What a picture path such as "/m700003.jpg" shows.
    struct Artwork final {
        Kind kind;
        std::int64_t id;
        std::string title;
    };
    [[nodiscard]] std::optional<Artwork> artwork(std::string_view path) const;

private:
    struct Entry final {
        std::int64_t id;
        std::string portuguese;
        std::string english;
        int year;
        Genre genre;
        std::string plot;
        int minutes;
        int votes;
    };
    [[nodiscard]] Entry entry(Kind kind, std::size_t position) const;
    [[nodiscard]] std::optional<Entry> entryOf(Kind kind, std::int64_t id) const;

    const Catalogue& m_catalogue;
};

} // namespace ondavia::demo
