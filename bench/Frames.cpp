#include "Frames.h"

#include "screens/QmlModules.h"

#include <QEventLoop>
#include <QQmlApplicationEngine>
#include <QQuickItem>

#include <atomic>
#include <stdexcept>

namespace ondavia::bench {
namespace {

constexpr const char* emptyWindow = R"(
import QtQuick
import QtQuick.Templates
import Ondavia.Browse
import Ondavia.Movies
import Ondavia.Shell
import Ondavia.Style
Window { width: 1280; height: 800; visible: true; color: Theme.background }
)";

} // namespace

void drawAlike() {
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) {
        qputenv("QSG_RHI_BACKEND", "opengl");
    }
}

QQuickWindow& openEmptyWindow(QQmlApplicationEngine& engine) {
    provideScreens(engine);
    engine.loadData(emptyWindow);
    if (engine.rootObjects().isEmpty()) {
        throw std::runtime_error("the empty window cannot be opened");
    }
    return *qobject_cast<QQuickWindow*>(engine.rootObjects().first());
}

QQuickItem* findVisible(QQuickItem& item, const char* className) {
    if (!item.isVisible()) {
        return nullptr;
    }
    if (QByteArray(item.metaObject()->className()).startsWith(className)) {
        return &item;
    }
    for (QQuickItem* child : item.childItems()) {
        if (QQuickItem* found = findVisible(*child, className)) {
            return found;
        }
    }
    return nullptr;
}

std::chrono::steady_clock::time_point awaitFrame(QQuickWindow& window, const std::function<bool()>& isReady) {
    QEventLoop loop;
    std::atomic<bool> isDrawn = false;
    std::chrono::steady_clock::time_point shown;
    // Just before the frame is made of the items, on this thread.
    QObject::connect(&window, &QQuickWindow::afterAnimating, &loop, [&] { isDrawn = isDrawn || isReady(); });
    // On the thread that draws, since this one may be at work on the next frame already.
    const auto swapped = QObject::connect(
        &window, &QQuickWindow::frameSwapped, &window,
        [&] {
            if (!isDrawn) {
                QMetaObject::invokeMethod(&window, &QQuickWindow::update, Qt::QueuedConnection);
            } else if (shown == std::chrono::steady_clock::time_point()) {
                shown = std::chrono::steady_clock::now();
                QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
            }
        },
        Qt::DirectConnection);
    loop.exec();
    QObject::disconnect(swapped);
    return shown;
}

} // namespace ondavia::bench
