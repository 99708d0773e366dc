#include "app/MainWindow.h"
#include "app/Services.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <cstdio>

// Prints what the application's window is drawn with. A process of its own: the choice is one for all
// windows.

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    ondavia::Services services(ondavia::MpvOutputs::Window);
    const ondavia::MainWindow main(services, "pt");
    QObject::connect(
        &main.window(), &QQuickWindow::frameSwapped, &application,
        [&main] {
            const auto api = main.window().rendererInterface()->graphicsApi();
            std::puts(api == QSGRendererInterface::Software ? "processor" : "graphics card's interface");
            QCoreApplication::quit();
        },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    return QGuiApplication::exec();
}
