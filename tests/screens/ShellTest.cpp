#include "ScreensFixture.h"
#include "screens/home/HomeViewModel.h"
#include "screens/player/OrientationLock.h"
#include "screens/shell/ToastTimer.h"

#include <QQuickWindow>

namespace ondavia::testing {
namespace {

class ToastTest : public ScreensFixture {
protected:
    ToastTimer timer{content, scheduler};
};

TEST_F(ToastTest, GoesSixSecondsAfterItAppeared) {
    appState.showToast("one", ToastType::error);
    scheduler.advance(5.9);
    EXPECT_EQ(appState.toastMessage(), "one");
    scheduler.advance(0.2);
    EXPECT_FALSE(appState.toastMessage());
    EXPECT_EQ(appState.toastType(), ToastType::error) << "the kind is not reset";
}

TEST_F(ToastTest, ASecondTextGoesWithTheFirstOnesTime) {
    appState.showToast("one", ToastType::info);
    scheduler.advance(5);
    appState.showToast("two", ToastType::warning);
    EXPECT_EQ(scheduler.activeTimers(), 1);
    scheduler.advance(1.1);
    EXPECT_FALSE(appState.toastMessage());
}

TEST_F(ToastTest, AppearingAgainStartsAnew) {
    appState.showToast("one", ToastType::info);
    scheduler.advance(7);
    appState.showToast("two", ToastType::info);
    scheduler.advance(5.9);
    EXPECT_EQ(appState.toastMessage(), "two");
    scheduler.advance(0.2);
    EXPECT_FALSE(appState.toastMessage());
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST_F(ToastTest, OnePresentAtTheStartGoesToo) {
    appState.showToast("early", ToastType::info);
    const ToastTimer late(content, scheduler);
    scheduler.advance(6.1);
    EXPECT_FALSE(appState.toastMessage());
}

TEST_F(ToastTest, OneWithoutATextIsThereAndGoesToo) {
    EXPECT_FALSE(content.toastMessage().isValid());
    appState.showToast("", ToastType::info);
    EXPECT_TRUE(content.toastMessage().isValid());
    scheduler.advance(5.9);
    EXPECT_EQ(appState.toastMessage(), "");
    scheduler.advance(0.2);
    EXPECT_FALSE(appState.toastMessage());
    EXPECT_FALSE(content.toastMessage().isValid());
}

class HomeTest : public ScreensFixture {
protected:
    int added = 0;
    int loaded = 0;
    int searched = 0;
    HomeViewModel model{
        appState,
        {.addProvider = [this] { ++added; }, .load = [this] { ++loaded; }, .search = [this] { ++searched; }}};
};

TEST_F(HomeTest, WelcomesByWhatThereIs) {
    EXPECT_FALSE(model.hasAccount());
    EXPECT_EQ(model.title(), QStringLiteral("Nenhum provedor associado"));
    appState.saveCredentials("http://tv.example", "ana", "word");
    EXPECT_TRUE(model.hasAccount());
    EXPECT_FALSE(model.hasCatalogue());
    EXPECT_TRUE(model.lacksCatalogue());
    EXPECT_EQ(model.title(), QStringLiteral("O catálogo ainda está vazio"));
    appState.setIsLoading(true);
    EXPECT_FALSE(model.lacksCatalogue()) << "nothing has failed while it is on its way";
    EXPECT_EQ(model.title(), QStringLiteral("O que vamos ver hoje?"));
    appState.setIsLoading(false);
    appState.setTotalMovies(3);
    EXPECT_TRUE(model.hasCatalogue());
    EXPECT_EQ(model.totals(), (QStringList{QStringLiteral("0"), QStringLiteral("3"), QStringLiteral("0")}));
}

TEST_F(HomeTest, LeadsToTheTabsTheSignInStepTheLoadAndTheSearch) {
    model.openLive();
    EXPECT_EQ(appState.selectedTab(), AppTab::live);
    model.openMovies();
    EXPECT_EQ(appState.selectedTab(), AppTab::movies);
    model.openSeries();
    EXPECT_EQ(appState.selectedTab(), AppTab::series);
    model.addProvider();
    model.load();
    model.search();
    EXPECT_EQ(added, 1);
    EXPECT_EQ(loaded, 1);
    EXPECT_EQ(searched, 1);
}

TEST(OrientationLock, AllowsAllFourAtStartAndReportsTheMaskUntilTheNextSet) {
    const Qt::ScreenOrientations landscape{Qt::LandscapeOrientation, Qt::InvertedLandscapeOrientation};
    const Qt::ScreenOrientations all = landscape | Qt::PortraitOrientation | Qt::InvertedPortraitOrientation;
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), all);
    OrientationLock::set(landscape);
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), landscape);
    OrientationLock::set(all);
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), all);
}

TEST(OrientationLock, TurnsNoWindow) {
    const QQuickWindow window;
    OrientationLock::set(Qt::LandscapeOrientation);
    EXPECT_EQ(window.contentOrientation(), Qt::PrimaryOrientation) << "a compositor would turn the picture";
    OrientationLock::set(Qt::LandscapeOrientation | Qt::InvertedLandscapeOrientation |
                         Qt::PortraitOrientation | Qt::InvertedPortraitOrientation);
}

} // namespace
} // namespace ondavia::testing
