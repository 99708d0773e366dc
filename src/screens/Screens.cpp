#include "screens/Screens.h"

#include "screens/Pages.h"
#include "screens/QmlModules.h"
#include "screens/pictures/PictureProvider.h"
#include "screens/shell/ScreenModels.h"
#include "style/Environment.h"
#include "style/Texts.h"

#include <QQmlEngine>
#include <QQmlIncubationController>
#include <QQuickItem>
#include <QQuickWindow>

namespace ondavia {

namespace {

/// Longest silence of a picture server, in seconds.
constexpr double pictureTimeout = 20;

/// A list that goes while Qt makes an entry for it beside the event loop leaves memory behind that is still
/// written to.
void finishEntries(const QQmlEngine& engine) {
    constexpr int slice = 20;
    QQmlIncubationController* entries = engine.incubationController();
    while (entries != nullptr && entries->incubatingObjectCount() > 0) {
        entries->incubateFor(slice);
    }
}

} // namespace

Screens::Screens(const ScreenServices& services)
    : m_pictures(std::make_shared<PictureLoader>(services.makeSession({.requestTimeout = pictureTimeout}),
                                                 services.cacheFolder / "pictures"))
    , m_engine(std::make_unique<QQmlEngine>()) {
    provideScreens(*m_engine);
    installLanguage(services.language);
    m_models = std::make_unique<ScreenModels>(services);
    m_engine->addImageProvider(QLatin1String(PictureProvider::name), new PictureProvider(m_pictures));
    QQmlEngine::setObjectOwnership(m_models.get(), QQmlEngine::CppOwnership);

    QQmlComponent pages(m_engine.get(), pageAddress("RootView.qml"));
    if (services.readGraphicsDriver) {
        services.readGraphicsDriver();
    }
    auto page =
        makePage<QQuickItem>(pages, {{QStringLiteral("models"), QVariant::fromValue(m_models.get())}});
    if (services.chooseDrawing) {
        services.chooseDrawing();
    }
    QQmlComponent main(m_engine.get(), pageAddress("Main.qml"));
    m_window = makePage<QQuickWindow>(main, {{QStringLiteral("page"), QVariant::fromValue(page.get())}});
    m_page = std::move(page);
    auto* environment =
        m_engine->singletonInstance<Environment*>(qmlTypeId("Ondavia.Style", 1, 0, "Environment"));
    QObject::connect(m_window.get(), &QQuickWindow::frameSwapped, environment, &Environment::noteFrame,
                     static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

Screens::~Screens() {
    finishEntries(*m_engine);
    m_pictures->end();
}

} // namespace ondavia
