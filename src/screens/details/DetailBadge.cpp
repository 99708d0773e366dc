#include "screens/details/DetailBadge.h"

#include "style/ShownText.h"

namespace ondavia {

std::optional<DetailBadge> textBadge(const std::optional<std::string>& text) {
    // Blanks alone would make a badge with nothing in it.
    const QString shown = shownText(text.value_or(std::string())).trimmed();
    return shown.isEmpty() ? std::nullopt : std::optional(DetailBadge{shown, false});
}

std::optional<DetailBadge> ratingBadge(const std::optional<std::string>& rating) {
    auto badge = rating != "0" ? textBadge(rating) : std::nullopt;
    if (badge) {
        badge = DetailBadge{QStringLiteral("★ ") + badge->text, true};
    }
    return badge;
}

std::optional<DetailBadge> genreBadge(const std::optional<std::string>& genre) {
    return genre ? textBadge(genre->substr(0, genre->find(','))) : std::nullopt;
}

std::vector<DetailBadge> presentBadges(std::initializer_list<std::optional<DetailBadge>> badges) {
    std::vector<DetailBadge> present;
    for (const auto& badge : badges) {
        if (badge) {
            present.push_back(*badge);
        }
    }
    return present;
}

} // namespace ondavia
