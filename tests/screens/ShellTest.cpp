#include "ScreensFixture.h"
#include "screens/home/HomeViewModel.h"
#include "screens/shell/OrientationLock.h"
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
    HomeViewModel model{appState};
};

TEST_F(HomeTest, WelcomesByWhatThereIs) {
    EXPECT_FALSE(model.hasAccount());
    EXPECT_EQ(model.title(), QStringLiteral("Nenhum provedor associado"));
    appState.saveCredentials("http://tv.example", "ana", "word");
    EXPECT_TRUE(model.hasAccount());
    EXPECT_FALSE(model.hasCatalogue());
    appState.setTotalMovies(3);
    EXPECT_TRUE(model.hasCatalogue());
    EXPECT_EQ(model.totals(), (QStringList{QStringLiteral("0"), QStringLiteral("3"), QStringLiteral("0")}));
}

TEST(OrientationLock, AllowsAllFourAtStartAndReportsTheMaskUntilTheNextSet) {
    const Qt::ScreenOrientations landscape{Qt::LandscapeOrientation, Qt::InvertedLandscapeOrientation};
    const Qt::ScreenOrientations all = landscape | Qt::PortraitOrientation | Qt::InvertedPortraitOrientation;
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), all);
    OrientationLock::set(landscape);
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), landscape)
        << "without a window the mask is kept";

    QQuickWindow window;
    Qt::ScreenOrientations reportedThen;
    QObject::connect(&window, &QWindow::contentOrientationChanged, &window,
                     [&] { reportedThen = AppDelegate::supportedInterfaceOrientations(); });
    OrientationLock::set(Qt::PortraitOrientation);
    EXPECT_EQ(window.contentOrientation(), Qt::PortraitOrientation);
    EXPECT_EQ(reportedThen, Qt::ScreenOrientations(Qt::PortraitOrientation))
        << "the answer must be new already";
    OrientationLock::set(landscape);
    EXPECT_EQ(window.contentOrientation(), Qt::LandscapeOrientation);
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), landscape);
    OrientationLock::set(all);
    EXPECT_EQ(window.contentOrientation(), Qt::PrimaryOrientation);
}

} // namespace
} // namespace ondavia::testing
