#pragma once

#include <QString>

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

/// One short fact of a title.
struct DetailBadge final {
    QString text;
    bool highlight = false;

    bool operator==(const DetailBadge&) const = default;
};

// Each absent where the field says nothing.

[[nodiscard]] std::optional<DetailBadge> textBadge(const std::optional<std::string>& text);
/// "0" is what providers send for none.
[[nodiscard]] std::optional<DetailBadge> ratingBadge(const std::optional<std::string>& rating);
/// The first of several genres.
[[nodiscard]] std::optional<DetailBadge> genreBadge(const std::optional<std::string>& genre);

/// Those that are there, in their order.
[[nodiscard]] std::vector<DetailBadge>
presentBadges(std::initializer_list<std::optional<DetailBadge>> badges);

} // namespace ondavia
