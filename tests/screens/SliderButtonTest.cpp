#include "screens/player/SliderButtonModel.h"
#include "support/ManualScheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

class SliderButtonTest : public ::testing::Test {
protected:
    SliderButtonTest() {
        QObject::connect(&button, &SliderButtonModel::changed, &button,
                         [this](double value) { changes.push_back(value); });
    }
    /// Moves the pointer so far down from where it went down.
    void drag(double down) { button.moveTo(start + QPointF(0, down)); }

    const QPointF start{400, 300};
    ManualScheduler scheduler;
    SliderButtonModel button{0.0, 1.0, scheduler};
    std::vector<double> changes;
};

TEST_F(SliderButtonTest, AnUpwardDragOfTwoHundredSweepsTheRange) {
    button.setValue(0.25);
    EXPECT_TRUE(changes.empty()) << "a mirrored value is no change of the viewer's";
    button.press(start);
    drag(-50);
    EXPECT_TRUE(button.isDragging());
    EXPECT_TRUE(button.isOpen());
    EXPECT_FALSE(button.showSlider());
    drag(-100);
    EXPECT_DOUBLE_EQ(button.value(), 0.75) << "counted from where the drag began";
    button.release();
    EXPECT_FALSE(button.isOpen()) << "the end of a drag is no tap";
    EXPECT_THAT(changes, ElementsAre(0.5, 0.75));
}

TEST_F(SliderButtonTest, ADragStaysWithinTheRange) {
    button.setValue(0.5);
    button.press(start);
    drag(-300);
    EXPECT_EQ(button.value(), 1.0);
    drag(300);
    EXPECT_EQ(button.value(), 0.0);
}

TEST_F(SliderButtonTest, AMovementOfLessThanFiveIsPartOfATap) {
    button.setValue(0.5);
    button.press(start);
    button.moveTo(start + QPointF(3, -3.9));
    EXPECT_FALSE(button.isDragging());
    EXPECT_EQ(button.value(), 0.5);
    button.release();
    EXPECT_TRUE(button.showSlider());
    EXPECT_TRUE(changes.empty());
}

TEST_F(SliderButtonTest, AMovementOfFiveInAnyDirectionIsADrag) {
    button.setValue(0.5);
    button.press(start);
    button.moveTo(start + QPointF(3, -4));
    EXPECT_TRUE(button.isDragging());
    EXPECT_DOUBLE_EQ(button.value(), 0.52);
    drag(-1);
    EXPECT_DOUBLE_EQ(button.value(), 0.505) << "and stays one on its way back";
    button.release();
    EXPECT_FALSE(button.showSlider());
}

TEST_F(SliderButtonTest, APointerThatIsTakenAwayTapsNothing) {
    button.press(start);
    button.cancel();
    button.release();
    EXPECT_FALSE(button.showSlider());
    drag(-50);
    EXPECT_FALSE(button.isDragging()) << "nothing is held";
}

TEST_F(SliderButtonTest, KeysGoThroughTheRangeInSteps) {
    button.tap();
    button.step(1);
    EXPECT_DOUBLE_EQ(button.value(), 0.05);
    scheduler.advance(1.5);
    button.step(-3);
    EXPECT_EQ(button.value(), 0.0);
    EXPECT_THAT(changes, ElementsAre(::testing::DoubleEq(0.05), 0.0));
    scheduler.advance(1.5);
    EXPECT_TRUE(button.showSlider()) << "a key is a use of it";
}

TEST_F(SliderButtonTest, ATapOpensTheSliderForTwoSecondsAfterItsLastUse) {
    button.tap();
    EXPECT_TRUE(button.showSlider());
    scheduler.advance(1.9);
    button.slide(80, 160);
    EXPECT_DOUBLE_EQ(button.value(), 0.5);
    scheduler.advance(1.9);
    EXPECT_TRUE(button.showSlider());
    scheduler.advance(0.2);
    EXPECT_FALSE(button.showSlider());
}

TEST_F(SliderButtonTest, ASecondTapClosesItAndTheFirstOnesTimeRunsOut) {
    button.tap();
    scheduler.advance(1);
    button.tap();
    EXPECT_FALSE(button.showSlider());
    EXPECT_EQ(scheduler.activeTimers(), 1);
    scheduler.advance(1.1);
    EXPECT_FALSE(button.showSlider());
}

TEST_F(SliderButtonTest, TheTopOfTheSliderIsItsUpperEnd) {
    button.slide(0, 160);
    EXPECT_EQ(button.value(), 1.0);
    button.slide(160, 160);
    EXPECT_EQ(button.value(), 0.0);
    button.slide(-40, 160);
    EXPECT_EQ(button.value(), 1.0);
    button.slide(900, 160);
    EXPECT_EQ(button.value(), 0.0);
}

TEST_F(SliderButtonTest, ClosesNothingOnceItIsOffTheScreen) {
    button.tap();
    button.invalidate();
    scheduler.advance(3);
    EXPECT_TRUE(button.showSlider());
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST_F(SliderButtonTest, ComesBackAsItWasLeftAndThenCloses) {
    button.tap();
    button.invalidate();
    scheduler.advance(3);
    button.resume();
    EXPECT_TRUE(button.showSlider());
    scheduler.advance(2.1);
    EXPECT_FALSE(button.showSlider());
    button.resume();
    EXPECT_EQ(scheduler.activeTimers(), 0) << "nothing is open";
}

TEST_F(SliderButtonTest, WatchesItsValueWhileItIsDragged) {
    button.press({0, 100});
    button.moveTo({0, 80});
    changes.clear();
    button.setValue(0.4);
    EXPECT_THAT(changes, ElementsAre(0.4));
}

TEST_F(SliderButtonTest, WatchesItsValueWhileTheSliderShows) {
    button.tap();
    scheduler.advance(1.5);
    button.setValue(0.4);
    EXPECT_THAT(changes, ElementsAre(0.4));
    scheduler.advance(1.5);
    EXPECT_TRUE(button.showSlider());
    scheduler.advance(0.6);
    button.setValue(0.6);
    EXPECT_THAT(changes, ElementsAre(0.4));
}

TEST_F(SliderButtonTest, KnowsAnyRange) {
    SliderButtonModel wide(-1, 3, scheduler);
    EXPECT_EQ(wide.value(), -1);
    wide.slide(40, 160);
    EXPECT_DOUBLE_EQ(wide.value(), 2);
    EXPECT_DOUBLE_EQ(wide.fraction(), 0.75);
}

} // namespace
} // namespace ondavia::testing
