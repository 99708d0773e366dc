#include "ScreensWindow.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QStringListModel>

namespace ondavia::testing {
namespace {

constexpr QPoint leftwards(-120, 0);
constexpr QPoint downwards(0, -120);
constexpr QPoint upwards(0, 120);

/// Choices with the role that a row of chips reads.
class Names final : public QStringListModel {
public:
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override { return {{Qt::DisplayRole, "name"}}; }
};

/// More choices than fit into a row.
class ChipRowTest : public ScreensTest, public ::testing::WithParamInterface<QSize> {
protected:
    static constexpr int choices = 60;

    void openChoices() {
        show(GetParam().width(), GetParam().height());
        QQmlComponent component(qmlEngine(named("root")));
        component.setData(
            "import QtQuick; import Ondavia.Style\n"
            "ChipRow { id: row; height: 60; focus: true; onPicked: index => row.chosen = index }",
            {});
        QStringList names;
        for (int number = 1; number <= choices; ++number) {
            names.append(QStringLiteral("Género %1").arg(number));
        }
        m_names.setStringList(names);
        m_row.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(
            {{QStringLiteral("model"), QVariant::fromValue<QAbstractItemModel*>(&m_names)},
             {QStringLiteral("chosen"), 0},
             {QStringLiteral("width"), GetParam().width()}})));
        ASSERT_NE(m_row, nullptr) << component.errorString().toStdString();
        m_row->setParentItem(window->contentItem());
        press(Qt::Key_Shift);
        chips()->forceActiveFocus();
        settle();
    }
    QQuickItem* chips() { return m_row.get(); }
    int current() { return chips()->property("currentIndex").toInt(); }
    double scrolled() { return chips()->property("contentX").toDouble(); }
    void expectFocusInSight() {
        settle();
        const QRectF chip = sceneRect(*window->activeFocusItem());
        EXPECT_EQ(focusName(), "Género " + std::to_string(current() + 1));
        EXPECT_TRUE(sceneRect(*chips()).adjusted(-1, 0, 1, 0).contains(chip)) << focusName();
    }

private:
    Names m_names;
    std::unique_ptr<QQuickItem> m_row;
};

TEST_P(ChipRowTest, AfterTheWheelAnArrowGoesToAChipInSight) {
    openChoices();
    turnWheel(*chips(), leftwards, [this] { return scrolled() > 2 * window->width(); });
    const double place = scrolled();
    press(Qt::Key_Right);
    expectFocusInSight();
    EXPECT_GT(current(), 0);
    EXPECT_NEAR(scrolled(), place, 1) << "the row stays where the wheel has left it";
}

TEST_P(ChipRowTest, AWheelThatOnlyTurnsUpAndDownMovesItToo) {
    openChoices();
    turnWheel(*chips(), downwards, [this] { return scrolled() > window->width(); });
    turnWheel(*chips(), upwards, [this] { return scrolled() <= 0; });
    const double end = scrolled();
    settle();
    EXPECT_EQ(scrolled(), end) << "it was not carried past its end";
}

TEST_P(ChipRowTest, HomeAndEndGoToItsEnds) {
    openChoices();
    press(Qt::Key_End);
    EXPECT_EQ(current(), choices - 1);
    expectFocusInSight();
    press(Qt::Key_Left);
    EXPECT_EQ(current(), choices - 2);
    press(Qt::Key_Home);
    EXPECT_EQ(current(), 0);
    expectFocusInSight();
}

TEST_P(ChipRowTest, FollowsTheChoiceAfterAClickToo) {
    openChoices();
    click("Género 2");
    EXPECT_EQ(current(), 1);
    EXPECT_EQ(chips()->property("chosen").toInt(), 1);
    chips()->setProperty("chosen", 0);
    drainEvents();
    EXPECT_EQ(current(), 0);
}

INSTANTIATE_TEST_SUITE_P(Sizes, ChipRowTest, ::testing::Values(QSize(1280, 800), QSize(412, 892)));

} // namespace
} // namespace ondavia::testing
