#pragma once

#include "GuidePanelFixture.h"
#include "ScreensWindow.h"
#include "screens/QmlModules.h"
#include "style/Environment.h"
#include "style/FocusGuide.h"
#include "style/Texts.h"

#include <QElapsedTimer>
#include <QQmlComponent>
#include <QQmlEngine>

namespace ondavia::testing {

/// The panel as a player shows it: at the right of a wide window, below the picture of a narrow one.
inline constexpr const char* guidePanelHost = R"(
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

/// The panel in a window of its own.
class GuidePanelWindow : public GuidePanelFixture {
protected:
    ~GuidePanelWindow() override { installLanguage("pt"); }

    void open(int width = 1280, int height = 800) {
        installLanguage("pt");
        provideScreens(engine);
        QQmlComponent component(&engine);
        component.setData(guidePanelHost, QUrl(QStringLiteral("qrc:/guide-host.qml")));
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
        collect(*ground, [&rows](QQuickItem& item) { rows += isOf(item, "EPGProgramRow"); });
        return rows;
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
            auto one =
                program(idPrefix + name + " " + std::to_string(index), midnight + std::chrono::hours(index),
                        midnight + std::chrono::hours(index + 1));
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

} // namespace ondavia::testing
