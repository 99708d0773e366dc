// The live player in both arrangements, with its list and its guide, and the mini player over the browsers.
#include "app/Services.h"
#include "tour/Tour.h"

#include <QQuickItem>

#include <stdexcept>

namespace ondavia {
namespace {

/// A channel with past days in its guide.
Channel archivedChannel(StoreContext& catalogue) {
    const auto found = catalogue.fetchFirst<Channel>(
        {.where = field(&Channel::type) == "live" && field(&Channel::tvArchive) == true,
         .sort = {ascending(&Channel::num)}});
    if (!found) {
        throw std::runtime_error("the provider has no channel with an archive");
    }
    return *found;
}

} // namespace

/// On the channel that was just chosen in a browser.
void Tour::watchLive() {
    showMoving(QStringLiteral("live-player"));
    press(Qt::Key_Return);
    shoot(QStringLiteral("live-player-controls"));
    press(Qt::Key_PageUp);
    press(Qt::Key_4);
    press(Qt::Key_2);
    shoot(QStringLiteral("live-player-digits"));
    press(Qt::Key_Return);
    shoot(QStringLiteral("live-player-zapped"));
    click(find(QStringLiteral("categoryMenu")));
    shoot(QStringLiteral("live-player-categories"));
    press(Qt::Key_Escape);
    press(Qt::Key_Question);
    shoot(QStringLiteral("live-player-keys"));
    press(Qt::Key_Question);
    settle();
    showTheWholeScreen();
    browseOverTheMiniPlayer();
    m_services.appState.playChannel(archivedChannel(m_services.store->mainContext()));
    showGuide();
    click(row(QStringLiteral("guidePrograms"), 0));
    showMoving(QStringLiteral("live-player-recording"));
    press(Qt::Key_Escape);
    press(Qt::Key_Escape);
    settle();
    endMiniPlayer();
}

void Tour::showGuide() {
    showMoving(QStringLiteral("live-player-archived"));
    press(Qt::Key_G);
    waitFor(QStringLiteral("the guide"), [this] { return isShown(QStringLiteral("guideHeader")); });
    shoot(QStringLiteral("live-player-guide"));
    click(find(QStringLiteral("guideHeader")));
    shoot(QStringLiteral("live-player-days"));
    press(Qt::Key_Escape);
    settle();
}

void Tour::showTheWholeScreen() {
    press(Qt::Key_F);
    shoot(QStringLiteral("live-player-full"));
    press(Qt::Key_Return);
    shoot(QStringLiteral("live-player-full-controls"));
    press(Qt::Key_Escape);
    settle();
}

void Tour::browseOverTheMiniPlayer() {
    press(Qt::Key_Escape);
    waitFor(QStringLiteral("the mini player"), [this] { return m_services.appState.showMiniPlayer(); });
    shoot(QStringLiteral("live-mini-over-channels"));
    selectTab(2);
    shoot(QStringLiteral("live-mini-over-films"));
    selectTab(1);
}

void Tour::endMiniPlayer() {
    click(find(QStringLiteral("miniClose")));
    waitFor(QStringLiteral("the end of playback"), [this] { return !m_services.appState.isPlaying(); });
    settle();
}

} // namespace ondavia
