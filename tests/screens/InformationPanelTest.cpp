#include "ScreensWindow.h"
#include "screens/QmlModules.h"
#include "screens/player/InformationModel.h"

#include <QQmlComponent>
#include <QQmlEngine>

namespace ondavia::testing {
namespace {

class InformationPanelTest : public ScreensFixture, public ::testing::WithParamInterface<int> {
protected:
    InformationPanelTest() {
        provideScreens(engine);
        window.setColor(Qt::white);
        window.resize(GetParam() + 32, 480);
        QQmlComponent component(&engine);
        component.setData("import Ondavia.Player\nInformationPanel { x: 16; y: 16 }", {});
        panel.reset(qobject_cast<QQuickItem*>(
            component.createWithInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&model)}})));
        EXPECT_NE(panel, nullptr) << component.errorString().toStdString();
        panel->setParentItem(window.contentItem());
        panel->setWidth(GetParam());
        window.show();
        giveKeyboard(window);
    }

    /// What is not within the panel.
    std::vector<std::string> outside() {
        std::vector<std::string> names;
        collect(*panel, [&](QQuickItem& item) {
            const QRectF place = item.mapRectToItem(panel.get(), item.boundingRect());
            if (!place.isEmpty() && !panel->boundingRect().contains(place)) {
                names.push_back(accessibleName(item).toStdString());
            }
        });
        return names;
    }

    InformationModel model{playerManager, scheduler};
    QQmlEngine engine;
    QQuickWindow window;
    std::unique_ptr<QQuickItem> panel;
};

TEST_P(InformationPanelTest, ShowsEveryLineWholeWithinItsWidthAndOnlyWhenAsked) {
    playerManager.play(title(1, "movie", "Drama", "Uma Longa Noite"), 0);
    scheduler.runPending();
    lastEngine.lock()->currentStatistics = {
        .videoCodec = "hevc",
        .audioCodec = "eac3",
        .width = 1920,
        .height = 1080,
        .frameRate = 23.976,
        .bitrate = 4'250'000,
        .decoder = "software",
        .droppedFrames = 12,
        .secondsBuffered = 8.25,
        .serverAnswer = "HTTP/1.1 503 Service Unavailable: the server has said this and nothing more"};
    EXPECT_FALSE(panel->isVisible());
    model.setIsShown(true);
    ASSERT_TRUE(panel->isVisible());
    // Lines wrap before the next frame.
    EXPECT_TRUE(waitUntil([this] { return outside().empty(); })) << ::testing::PrintToString(outside());
    std::vector<std::string> names;
    collect(*panel, [&names](QQuickItem& item) { names.push_back(accessibleName(item).toStdString()); });
    EXPECT_THAT(names, ::testing::IsSupersetOf({"Informação", "Som: eac3",
                                                "Última resposta: HTTP/1.1 503 Service Unavailable: the "
                                                "server has said this and nothing more"}));
    const QString shots = qEnvironmentVariable("ONDAVIA_SHOTS");
    if (!shots.isEmpty()) {
        EXPECT_TRUE(window.grabWindow().save(shots + QStringLiteral("/information-%1.png").arg(GetParam())));
    }
    model.setIsShown(false);
    EXPECT_FALSE(panel->isVisible());
}

INSTANTIATE_TEST_SUITE_P(Widths, InformationPanelTest, ::testing::Values(460, 328));

} // namespace
} // namespace ondavia::testing
