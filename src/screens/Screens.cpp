#include "screens/Screens.h"

#include "screens/browse/PictureProvider.h"
#include "screens/shell/ScreenModels.h"
#include "screens/texts/Texts.h"

#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQuickWindow>

/// Generated with the module. Calling it keeps the linker from dropping the registration of its types.
void qml_register_types_Ondavia();

/// Compiled pages lie in a static library, which registers nothing by itself. Outside of every namespace,
/// as the macro demands.
static void registerCompiledPages() {
    Q_INIT_RESOURCE(qmlcache_ondavia_screens);
}

namespace ondavia {

namespace {

/// Longest silence of a picture server, in seconds.
constexpr double pictureTimeout = 20;

QUrl pageAddress(const char* name) {
    return {QStringLiteral("qrc:/qt/qml/Ondavia/shell/") + QLatin1String(name)};
}

} // namespace

void provideScreens(QQmlEngine& engine) {
    qml_register_types_Ondavia();
    registerCompiledPages();
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

QQuickWindow* loadScreens(QQmlApplicationEngine& engine, const ScreenServices& services) {
    provideScreens(engine);
    installLanguage(services.language);
    // The engine's from here on.
    engine.addImageProvider(QLatin1String(PictureProvider::name),
                            new PictureProvider(services.makeSession({.requestTimeout = pictureTimeout}),
                                                services.cacheFolder / "pictures"));
    auto* models = new ScreenModels(services, &engine);

    QQmlComponent pages(&engine, pageAddress("RootView.qml"));
    if (services.readGraphicsDriver) {
        services.readGraphicsDriver();
    }
    QObject* page =
        pages.createWithInitialProperties({{QStringLiteral("models"), QVariant::fromValue(models)}});
    if (page == nullptr) {
        for (const QQmlError& problem : pages.errors()) {
            qWarning().noquote() << problem.toString();
        }
        return nullptr;
    }
    engine.setInitialProperties({{QStringLiteral("page"), QVariant::fromValue(page)}});
    engine.load(pageAddress("Main.qml"));
    auto* window =
        engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    if (window != nullptr) {
        page->setParent(window);
    }
    return window;
}

} // namespace ondavia
