// The guide panel in a window, under real keys and a real pointer.
#include "GuidePanelFixture.h"
#include "ScreensWindow.h"
#include "screens/QmlModules.h"
#include "style/Environment.h"
#include "style/FocusGuide.h"
#include "style/Texts.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlProperty>

namespace ondavia::testing {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The panel as a player shows it: at the right of a wide window, below the picture of a narrow one.
constexpr const char* host = R"(
    import QtQuick
    import Ondavia.Guide
    import Ondavia.Style
    Rectangle {
        id: ground
        required property EPGPanelViewModel guide
        readonly property bool isWide: width >= Theme.wideWindow
        property bool isShown: true
        property bool takesPart: true
        property int strayKeys: 0
        property int strayEnters: 0
        color: Theme.stage
        Keys.onPressed: event => {
            ground.strayKeys += 1
            if (event.key === Qt.Key_Return)
                ground.strayEnters += 1
        }
        Rectangle {
            anchors.right: parent.right
            width: ground.isWide ? 420 : parent.width
            y: ground.isWide ? 0 : parent.width * 9 / 16
            height: parent.height - y
            color: Theme.surface
            Loader {
                anchors.fill: parent
                anchors.margins: Theme.unit * 3
                active: ground.isShown
                visible: ground.takesPart
                focus: true
                sourceComponent: EPGPanelView { model: ground.guide; focus: true }
            }
        }
    })";

class GuidePanelWindow : public GuidePanelFixture {
protected:
    ~GuidePanelWindow() override { installLanguage("pt"); }

    void open(int width = 1280, int height = 800) {
        installLanguage("pt");
        provideScreens(engine);
        QQmlComponent component(&engine);
        component.setData(host, QUrl(QStringLiteral("qrc:/guide-host.qml")));
        ground.reset(qobject_cast<QQuickItem*>(
            component.createWithInitialProperties({{QStringLiteral("guide"), QVariant::fromValue(&panel)},
                                                   {QStringLiteral("width"), width},
                                                   {QStringLiteral("height"), height}})));
        ASSERT_TRUE(ground) << component.errorString().toStdString();
        ground->setParentItem(window.contentItem());
        ground->setFocus(true);
        // It hears every key, and is made when it is first asked.
        engine.singletonInstance<FocusGuide*>(qmlTypeId("Ondavia.Style", 1, 0, "FocusGuide"));
        auto* environment =
            engine.singletonInstance<Environment*>(qmlTypeId("Ondavia.Style", 1, 0, "Environment"));
        QObject::connect(&window, &QQuickWindow::frameSwapped, environment, &Environment::noteFrame);
        window.resize(width, height);
        window.show();
        giveKeyboard(window);
        settle();
    }
    void settle() {
        // Longer than any movement of the panel.
        QElapsedTimer time;
        time.start();
        waitUntil([&time] { return time.elapsed() > 400; });
    }
    void press(Qt::Key key) {
        QTest::keyClick(&window, key);
        settle();
    }
    void shoot(const std::string& name) {
        const QString shots = qEnvironmentVariable("ONDAVIA_SHOTS");
        if (!shots.isEmpty()) {
            settle();
            const QString file = QStringLiteral("/guide-%1-%2x%3.png");
            EXPECT_TRUE(window.grabWindow().save(
                shots + file.arg(QString::fromStdString(name)).arg(window.width()).arg(window.height())));
        }
    }
    [[nodiscard]] std::vector<QQuickItem*> all(const QString& name) {
        std::vector<QQuickItem*> found;
        collect(*ground, [&](QQuickItem& item) {
            if (accessibleName(item) == name) {
                found.push_back(&item);
            }
        });
        return found;
    }
    [[nodiscard]] QQuickItem* find(const char* name) {
        const auto found = all(QString::fromUtf8(name));
        return found.empty() ? nullptr : found.front();
    }
    [[nodiscard]] QQuickItem* list(const char* objectName) {
        QQuickItem* found = nullptr;
        collect(*ground, [&](QQuickItem& item) {
            found = item.objectName() == QLatin1String(objectName) ? &item : found;
        });
        return found;
    }
    [[nodiscard]] int rowsMade() {
        int rows = 0;
        collect(*ground, [&rows](QQuickItem& item) {
            rows += QByteArray(item.metaObject()->className()).startsWith("EPGProgramRow");
        });
        return rows;
    }
    /// As the screens give it: Qt 6.4 hands out that of the item's class.
    [[nodiscard]] static int roleOf(QQuickItem* item) {
        return QQmlProperty::read(item, QStringLiteral("Accessible.role"), qmlContext(item)).toInt();
    }
    void click(const char* name) {
        QQuickItem* item = find(name);
        ASSERT_NE(item, nullptr) << name;
        QTest::mouseClick(&window, Qt::LeftButton, {},
                          item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
        settle();
    }
    [[nodiscard]] std::string focusName() const {
        const QQuickItem* item = window.activeFocusItem();
        return item != nullptr ? accessibleName(*item).toStdString() : std::string();
    }

    /// A day as providers fill it, with one programme on now.
    void addDay(Date midnight, const std::string& idPrefix = {}) {
        const std::vector<std::pair<std::string, std::string>> shows{
            {"Bom Dia Portugal", "As notícias da manhã, o trânsito e o tempo em todo o país."},
            {"A Praça", ""},
            {"Jornal da Tarde", "A atualidade nacional e internacional."},
            {"O Preço Certo",
             "Concurso apresentado em direto, com prémios que mudam de episódio para episódio "
             "e um público que nunca se cala."},
            {"Portugal em Direto: Reportagens, Histórias e Gente de Todas as Regiões do País", ""},
            {"Telejornal", "O jornal da noite."},
            {"Cinema: O Faroleiro da Ilha de São Jorge", "Um homem, uma luz, e um mar que não dorme."}};
        std::vector<EPGProgram> programs;
        for (int index = 0; index < 24; ++index) {
            const auto& [name, about] = shows[static_cast<std::size_t>(index) % shows.size()];
            auto one = program(idPrefix + name + " " + std::to_string(index), midnight + hours(index),
                               midnight + hours(index + 1));
            one.title = name;
            one.desc = about;
            programs.push_back(std::move(one));
        }
        add(programs);
    }
    void show(const Channel& shownChannel, int width = 1280, int height = 800) {
        panel.setChannel(shownChannel);
        open(width, height);
    }

    QQmlEngine engine;
    QQuickWindow window;
    std::unique_ptr<QQuickItem> ground;
};

TEST_F(GuidePanelWindow, OpensOnWhatIsOnNow) {
    addDay(utc(2024, 3, 15));
    show(channel(true, 3));
    QQuickItem* current = find("12:00, Telejornal");
    ASSERT_NE(current, nullptr);
    EXPECT_EQ(roleOf(current), QAccessible::ListItem);
    EXPECT_LT(current->mapToItem(list("guidePrograms"), QPointF()).y(), 200);
    ASSERT_NE(find("11:00, Portugal em Direto: Reportagens, Histórias e Gente de Todas as Regiões do País"),
              nullptr);
    EXPECT_EQ(
        roleOf(find("11:00, Portugal em Direto: Reportagens, Histórias e Gente de Todas as Regiões do País")),
        QAccessible::Button);
    ASSERT_NE(find("Hoje — Sexta-Feira, 15/03"), nullptr);
    shoot("rows");
}

TEST_F(GuidePanelWindow, WithoutAnArchiveThereIsNoHeaderAndNoButton) {
    addDay(utc(2024, 3, 15));
    show(channel(false, 3));
    EXPECT_EQ(find("Hoje — Sexta-Feira, 15/03"), nullptr);
    int buttons = 0;
    collect(*ground, [&buttons](QQuickItem& item) { buttons += roleOf(&item) == QAccessible::Button; });
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
    EXPECT_EQ(roleOf(window.activeFocusItem()), QAccessible::RadioButton);
    shoot("days");
    press(Qt::Key_Escape);
    EXPECT_FALSE(panel.showDatePicker());
    EXPECT_EQ(roleOf(window.activeFocusItem()), QAccessible::Button) << "back at the header";
    press(Qt::Key_Return);
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "Quinta-Feira, 14/03");
    press(Qt::Key_Return);
    EXPECT_EQ(panel.selectedDate(), at(utc(2024, 3, 14)));
    EXPECT_EQ(focusName(), "Quinta-Feira, 14/03");
    EXPECT_EQ(roleOf(window.activeFocusItem()), QAccessible::Button);
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
    shoot("loading");
    release();
    ASSERT_TRUE(waitUntil([this] { return panel.content() == Content::Empty; }));
    drainEvents();
    EXPECT_EQ(find("A carregar programacao..."), nullptr);
    EXPECT_NE(find("Sem informacao de programacao"), nullptr);
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
