#include "style/Environment.h"
#include "support/TestSupport.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <atomic>

// Generated with the module. Outside of every namespace, as Qt's macro demands.
void qml_register_types_Ondavia_Style();

static void provideStyle() {
    qml_register_types_Ondavia_Style();
    Q_INIT_RESOURCE(qmlcache_ondavia_style);
}

namespace ondavia::testing {
namespace {

constexpr const char* page = R"(
import QtQuick
import Ondavia.Style
Window {
    width: 412; height: 892; visible: true; color: Theme.background
    Spinner { objectName: "spinner"; anchors.centerIn: parent }
}
)";

TEST(Spinner, IsDrawnOnceAStepAndSeldomATurn) {
    QQmlEngine engine;
    provideStyle();
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQmlComponent component(&engine);
    component.setData(page, {});
    const std::unique_ptr<QObject> object(component.create());
    auto* window = qobject_cast<QQuickWindow*>(object.get());
    ASSERT_NE(window, nullptr) << component.errorString().toStdString();
    engine.singletonInstance<Environment*>(qmlTypeId("Ondavia.Style", 1, 0, "Environment"))->noteFrame();
    auto* spinner = window->findChild<QQuickItem*>(QStringLiteral("spinner"));
    auto* ring = window->findChild<QQuickItem*>(QStringLiteral("spinnerRing"));

    int steps = 0;
    double turned = 0;
    double last = ring->rotation();
    QObject::connect(ring, &QQuickItem::rotationChanged, ring, [&] {
        const double rotation = ring->rotation();
        turned += rotation > last ? rotation - last : rotation - last + 360;
        last = rotation;
        ++steps;
    });
    ASSERT_TRUE(waitUntil([&] { return steps > 2; }, std::chrono::minutes(1)));
    steps = 0;
    turned = 0;
    std::atomic<int> frames = 0;
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window, [&frames] { ++frames; }, Qt::DirectConnection);
    ASSERT_TRUE(waitUntil([&] { return turned >= 720; }, std::chrono::minutes(1)));
    EXPECT_LE(frames, steps + 2);
    EXPECT_LE(steps, 2 * 8) << "in two turns";

    spinner->setProperty("running", false);
    drainEvents();
    frames = 0;
    EXPECT_FALSE(waitUntil([&] { return frames > 2; }, std::chrono::seconds(1))) << "at rest";
}

} // namespace
} // namespace ondavia::testing
