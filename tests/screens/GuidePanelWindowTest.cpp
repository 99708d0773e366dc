// The guide panel in a window, under real keys and a real pointer.
#include "GuidePanelWindow.h"

#include <QAccessible>

namespace ondavia::testing {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// As it is drawn: some items keep a colour more exactly than others.
QColor drawn(const QColor& color) {
    return QColor::fromRgba(color.rgba());
}

QColor whiteAt(float opacity) {
    return drawn(QColor::fromRgbF(1, 1, 1, opacity));
}

QColor colorOf(const QQuickItem& item) {
    return drawn(item.property("color").value<QColor>());
}

QFont::Weight weightOf(const QQuickItem& item) {
    return item.property("font").value<QFont>().weight();
}

/// What the moment of a programme decides in its row.
struct RowLook final {
    QColor time;
    QColor dot;
    QColor title;
    QFont::Weight weight;
};

void expectLook(QQuickItem* row, const RowLook& look) {
    ASSERT_NE(row, nullptr);
    const QQuickItem* time = findLabel(*row, row->property("time").toString());
    const QQuickItem* title = findLabel(*row, row->property("title").toString());
    const QQuickItem* dot = findBelow(*row, [](const QQuickItem& item) {
        return item.inherits("QQuickRectangle") && item.size() == QSizeF(8, 8);
    });
    ASSERT_TRUE(time != nullptr && title != nullptr && dot != nullptr);
    EXPECT_EQ(colorOf(*time), look.time);
    EXPECT_EQ(weightOf(*time), QFont::DemiBold);
    EXPECT_EQ(colorOf(*dot), look.dot);
    EXPECT_EQ(colorOf(*title), look.title);
    EXPECT_EQ(weightOf(*title), look.weight);
}

/// Of the days that are offered, that one alone is marked.
void expectOnlyChosenDay(QQuickItem& days, const QString& name) {
    int offered = 0;
    collect(days, [&](QQuickItem& row) {
        if (isOf(row, "EPGDayRow")) {
            const bool isChosen = accessibleName(row) == name;
            const QQuickItem* label = findLabel(row, accessibleName(row));
            ASSERT_NE(label, nullptr);
            EXPECT_EQ(colorOf(*label), isChosen ? QColor("#3fd0c4") : whiteAt(1));
            EXPECT_EQ(findIcon(row, "checkmark") != nullptr, isChosen);
            ++offered;
        }
    });
    EXPECT_EQ(offered, 4);
}

TEST_F(GuidePanelWindow, OpensOnWhatIsOnNow) {
    addDay(utc(2024, 3, 15));
    show(channel(true, 3));
    QQuickItem* current = find("12:00, Telejornal");
    ASSERT_NE(current, nullptr);
    EXPECT_EQ(roleOf(*current), QAccessible::ListItem);
    EXPECT_LT(current->mapToItem(list("guidePrograms"), QPointF()).y(), 200);
    ASSERT_NE(find("11:00, Portugal em Direto: Reportagens, Histórias e Gente de Todas as Regiões do País"),
              nullptr);
    EXPECT_EQ(roleOf(*find(
                  "11:00, Portugal em Direto: Reportagens, Histórias e Gente de Todas as Regiões do País")),
              QAccessible::Button);
    ASSERT_NE(find("Hoje — Sexta-Feira, 15/03"), nullptr);
    shoot("rows");
}

TEST_F(GuidePanelWindow, WhatIsOnStandsOutUntilTheRowsAreReadAnew) {
    const QColor red("#ff4d48");
    addDay(utc(2024, 3, 15));
    show(channel(true, 3));
    const auto expectLooks = [&] {
        expectLook(
            find("11:00, Portugal em Direto: Reportagens, Histórias e Gente de Todas as Regiões do País"),
            {whiteAt(0.5F), whiteAt(0.2F), whiteAt(0.4F), QFont::Normal});
        expectLook(find("12:00, Telejornal"), {red, red, whiteAt(1), QFont::Bold});
        expectLook(find("13:00, Cinema: O Faroleiro da Ilha de São Jorge"),
                   {whiteAt(0.5F), whiteAt(0.3F), whiteAt(0.7F), QFont::Normal});
    };
    expectLooks();
    now += hours(1);
    settle();
    expectLooks();
}

TEST_F(GuidePanelWindow, WhatAProgrammeIsAboutStandsBelowItWhereThatIsKnown) {
    addDay(utc(2024, 3, 15));
    show(channel(true, 3));
    QQuickItem* about = findLabel(*ground, QStringLiteral("O jornal da noite."));
    ASSERT_NE(about, nullptr);
    EXPECT_EQ(colorOf(*about), whiteAt(0.3F));
    EXPECT_EQ(about->property("font").value<QFont>().pixelSize(), 12);
    QQuickItem* bare =
        find("11:00, Portugal em Direto: Reportagens, Histórias e Gente de Todas as Regiões do País");
    ASSERT_NE(bare, nullptr);
    EXPECT_EQ(findLabel(*bare, QString()), nullptr) << "it would move the title up";
}

TEST_F(GuidePanelWindow, WithoutAnArchiveThereIsNoHeaderAndNoButton) {
    addDay(utc(2024, 3, 15));
    show(channel(false, 3));
    EXPECT_EQ(find("Hoje — Sexta-Feira, 15/03"), nullptr);
    int buttons = 0;
    collect(*ground, [&buttons](QQuickItem& item) { buttons += roleOf(item) == QAccessible::Button; });
    EXPECT_EQ(buttons, 0);
    EXPECT_GT(rowsMade(), 4);
    const int enters = ground->property("strayEnters").toInt();
    press(Qt::Key_Return);
    EXPECT_THAT(played, IsEmpty());
    EXPECT_EQ(ground->property("strayEnters").toInt(), enters + 1) << "the key is the host's";
}

TEST_F(GuidePanelWindow, AClickPlaysWhatIsOverAndNothingElse) {
    addDay(utc(2024, 3, 15));
    show(channel(true, 3));
    click("12:00, Telejornal");
    EXPECT_THAT(played, IsEmpty());
    click("11:00, Portugal em Direto: Reportagens, Histórias e Gente de Todas as Regiões do País");
    EXPECT_THAT(played,
                ElementsAre("c1_Portugal em Direto: Reportagens, Histórias e Gente de Todas as Regiões "
                            "do País 11"));
}

TEST_F(GuidePanelWindow, KeysReachEveryRowAndEnterPlays) {
    addDay(utc(2024, 3, 15));
    show(channel(true, 3));
    press(Qt::Key_Tab);
    list("guidePrograms")->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(focusName(), "12:00, Telejornal");
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(focusName(), "10:00, O Preço Certo");
    press(Qt::Key_Return);
    EXPECT_THAT(played, ElementsAre("c1_O Preço Certo 10"));
    press(Qt::Key_Home);
    EXPECT_EQ(focusName(), "00:00, Bom Dia Portugal");
    EXPECT_EQ(list("guidePrograms")->property("contentY").toDouble(),
              list("guidePrograms")->property("originY").toDouble());
    press(Qt::Key_Up);
    EXPECT_EQ(focusName(), "Hoje — Sexta-Feira, 15/03");
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "00:00, Bom Dia Portugal");
    press(Qt::Key_End);
    EXPECT_EQ(focusName(), "23:00, Jornal da Tarde");
    const QQuickItem* last = window.activeFocusItem();
    EXPECT_LE(last->mapToItem(list("guidePrograms"), QPointF(0, last->height())).y(),
              list("guidePrograms")->height() + 1);
    const int strays = ground->property("strayKeys").toInt();
    press(Qt::Key_Down);
    EXPECT_EQ(ground->property("strayKeys").toInt(), strays + 1) << "a key that leads out is the host's";
    press(Qt::Key_PageUp);
    EXPECT_NE(focusName(), "23:00, Jornal da Tarde");
}

TEST_F(GuidePanelWindow, ADayIsPickedByKeys) {
    addDay(utc(2024, 3, 15));
    addDay(utc(2024, 3, 14), "ontem ");
    show(channel(true, 3));
    press(Qt::Key_Tab);
    list("guidePrograms")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Home);
    press(Qt::Key_Up);
    press(Qt::Key_Return);
    EXPECT_TRUE(panel.showDatePicker());
    EXPECT_EQ(focusName(), "Hoje — Sexta-Feira, 15/03");
    EXPECT_EQ(roleOf(*window.activeFocusItem()), QAccessible::RadioButton);
    shoot("days");
    press(Qt::Key_Escape);
    EXPECT_FALSE(panel.showDatePicker());
    EXPECT_EQ(roleOf(*window.activeFocusItem()), QAccessible::Button) << "back at the header";
    press(Qt::Key_Return);
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "Quinta-Feira, 14/03");
    press(Qt::Key_Return);
    EXPECT_EQ(panel.selectedDate(), at(utc(2024, 3, 14)));
    EXPECT_EQ(focusName(), "Quinta-Feira, 14/03");
    EXPECT_EQ(roleOf(*window.activeFocusItem()), QAccessible::Button);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_THAT(played, ElementsAre("c1_ontem Bom Dia Portugal 0")) << "a day before today begins at its top";
}

TEST_F(GuidePanelWindow, ADayIsPickedByAClick) {
    addDay(utc(2024, 3, 15));
    add({program("ontem", now - hours(24), now - hours(23))});
    show(channel(true, 3));
    click("Hoje — Sexta-Feira, 15/03");
    EXPECT_TRUE(panel.showDatePicker());
    EXPECT_EQ(rowsMade(), 0) << "the days stand in the place of the programmes";
    expectOnlyChosenDay(*list("guideDays"), QStringLiteral("Hoje — Sexta-Feira, 15/03"));
    click("Quinta-Feira, 14/03");
    EXPECT_FALSE(panel.showDatePicker());
    EXPECT_EQ(rowsMade(), 1);
    EXPECT_NE(find("12:30, ontem"), nullptr);
}

TEST_F(GuidePanelWindow, SaysThatItWaitsAndThatThereIsNothing) {
    signIn();
    hold();
    show(channel(true, 3));
    EXPECT_NE(find("A carregar programacao..."), nullptr);
    EXPECT_EQ(find("Sem informacao de programacao"), nullptr);
    const QQuickItem* spinner = findType(*ground, "Spinner");
    ASSERT_NE(spinner, nullptr);
    EXPECT_TRUE(spinner->property("running").toBool());
    EXPECT_EQ(findIcon(*ground, "tv.slash"), nullptr);
    shoot("loading");
    release();
    ASSERT_TRUE(waitUntil([this] { return panel.content() == Content::Empty; }));
    drainEvents();
    EXPECT_EQ(find("A carregar programacao..."), nullptr);
    EXPECT_NE(find("Sem informacao de programacao"), nullptr);
    EXPECT_EQ(findType(*ground, "Spinner"), nullptr);
    EXPECT_NE(findIcon(*ground, "tv.slash"), nullptr);
    shoot("empty");
}

TEST_F(GuidePanelWindow, ReadsAnewEachTimeThatItComesIntoSight) {
    show(channel(false, 0));
    EXPECT_EQ(panel.content(), Content::Empty);
    addDay(utc(2024, 3, 15));
    ground->setProperty("takesPart", false);
    EXPECT_EQ(panel.content(), Content::Empty);
    ground->setProperty("takesPart", true);
    EXPECT_EQ(panel.content(), Content::Programs);
    settle();
    EXPECT_NE(find("12:00, Telejornal"), nullptr);
}

TEST_F(GuidePanelWindow, APanelThatGoesDropsItsAnswer) {
    signIn();
    serveListings(listing("Tarde", "2024-03-15 14:00:00", "2024-03-15 15:00:00"));
    hold();
    show(channel(false, 0));
    ASSERT_TRUE(waitForRequests(1));
    ground->setProperty("isShown", false);
    drainEvents();
    endRequests();
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), 1);
    EXPECT_THAT(titles(), IsEmpty());
    ground->setProperty("isShown", true);
    settle();
    EXPECT_NE(find("14:00, Tarde"), nullptr);
}

TEST_F(GuidePanelWindow, ADayOfThousandsMakesOnlyTheRowsInSight) {
    std::vector<EPGProgram> many;
    for (int index = 0; index < 5000; ++index) {
        const Date start = utc(2024, 3, 15) + std::chrono::seconds(index * 10);
        many.push_back(program(std::to_string(10'000 + index), start, start + minutes(40)));
    }
    add(many);
    show(channel(true, 3));
    EXPECT_EQ(panel.programs()->rowCount(), 5000);
    EXPECT_GT(rowsMade(), 5);
    EXPECT_LT(rowsMade(), 40);
    list("guidePrograms")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    list("guidePrograms")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_End);
    EXPECT_EQ(focusName(), "13:53, 14999");
    EXPECT_LT(rowsMade(), 40);
}

TEST_F(GuidePanelWindow, StandsBelowThePictureOfANarrowWindow) {
    addDay(utc(2024, 3, 15));
    show(channel(true, 7), 412, 892);
    ASSERT_NE(find("12:00, Telejornal"), nullptr);
    shoot("rows");
    click("Hoje — Sexta-Feira, 15/03");
    EXPECT_NE(find("Segunda-Feira, 11/03"), nullptr);
    shoot("days");
}

TEST_F(GuidePanelWindow, WaitsBelowThePictureOfANarrowWindow) {
    signIn();
    hold();
    show(channel(false, 0), 412, 892);
    EXPECT_NE(find("A carregar programacao..."), nullptr);
    shoot("loading");
    release();
    ASSERT_TRUE(waitUntil([this] { return panel.content() == Content::Empty; }));
    shoot("empty");
}

} // namespace
} // namespace ondavia::testing
