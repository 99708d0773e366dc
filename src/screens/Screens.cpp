#include "screens/Screens.h"

#include "screens/browse/PictureProvider.h"
#include "screens/shell/ScreenModels.h"
#include "screens/style/Environment.h"
#include "screens/texts/Texts.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlIncubationController>
#include <QQuickItem>
#include <QQuickWindow>

#include <stdexcept>

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

/// What a page of the shell makes, in the caller's hands. Raises std::runtime_error.
template<class Type>
std::unique_ptr<Type> make(QQmlComponent& page, const char* property, const QVariant& value) {
    std::unique_ptr<QObject> object(
        page.createWithInitialProperties({{QString::fromLatin1(property), value}}));
    if (qobject_cast<Type*>(object.get()) == nullptr) {
        throw std::runtime_error("the window cannot be opened: " + page.errorString().toStdString());
    }
    return std::unique_ptr<Type>(static_cast<Type*>(object.release()));
}

QUrl pageAddress(const char* name) {
    return {QStringLiteral("qrc:/qt/qml/Ondavia/shell/") + QLatin1String(name)};
}

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

void provideScreens(QQmlEngine& engine) {
    qml_register_types_Ondavia();
    registerCompiledPages();
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

Screens::Screens(const ScreenServices& services)
    : m_pictures(std::make_shared<PictureLoader>(services.makeSession({.requestTimeout = pictureTimeout}),
                                                 services.cacheFolder / "pictures"))
    , m_engine(std::make_unique<QQmlEngine>())
    , m_models(std::make_unique<ScreenModels>(services)) {
    provideScreens(*m_engine);
    installLanguage(services.language);
    m_engine->addImageProvider(QLatin1String(PictureProvider::name), new PictureProvider(m_pictures));
    QQmlEngine::setObjectOwnership(m_models.get(), QQmlEngine::CppOwnership);

    QQmlComponent pages(m_engine.get(), pageAddress("RootView.qml"));
    if (services.readGraphicsDriver) {
        services.readGraphicsDriver();
    }
    auto page = make<QQuickItem>(pages, "models", QVariant::fromValue(m_models.get()));
    QQmlComponent main(m_engine.get(), pageAddress("Main.qml"));
    m_window = make<QQuickWindow>(main, "page", QVariant::fromValue(page.get()));
    m_page = std::move(page);
    auto* environment = m_engine->singletonInstance<Environment*>(qmlTypeId("Ondavia", 1, 0, "Environment"));
    QObject::connect(m_window.get(), &QQuickWindow::frameSwapped, environment, &Environment::noteFrame,
                     static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

Screens::~Screens() {
    finishEntries(*m_engine);
    m_pictures->end();
}

} // namespace ondavia
