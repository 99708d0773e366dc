// The search over the whole catalogue, and the page of a series down to its episodes.
#include "tour/Tour.h"

#include <QQuickItem>

namespace ondavia {

void Tour::search() {
    press(Qt::Key_Slash);
    waitFor(QStringLiteral("the search"), [this] { return isShown(QStringLiteral("searchField")); });
    shoot(QStringLiteral("search-hint"));
    type(QStringLiteral("searchText"), QStringLiteral("mar"));
    waitFor(QStringLiteral("results"), [this] { return isShown(QStringLiteral("searchResults")); });
    shoot(QStringLiteral("search-results"));
    click(row(QStringLiteral("searchChips"), 1));
    shoot(QStringLiteral("search-chip"));
    type(QStringLiteral("searchText"), QStringLiteral("nada disto"));
    waitFor(QStringLiteral("their end"), [this] { return !isShown(QStringLiteral("searchResults")); });
    shoot(QStringLiteral("search-nothing"));
    press(Qt::Key_Escape);
    settle();
}

/// On the page of a series whose seasons are there.
void Tour::seeEpisodes() {
    // Below the button that leads back.
    constexpr double room = 120;
    const double seasons = find(QStringLiteral("seasons")).parentItem()->y();
    find(QStringLiteral("detailScroll")).setProperty("contentY", seasons - room);
    shoot(QStringLiteral("series-episodes"));
    click(row(QStringLiteral("seasons"), 1));
    shoot(QStringLiteral("series-season"));
}

} // namespace ondavia
