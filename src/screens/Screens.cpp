#include "screens/Screens.h"

#include "screens/browse/PictureNetwork.h"
#include "screens/shell/ScreenModels.h"
#include "screens/texts/Texts.h"

#include <QQmlApplicationEngine>

/// Generated with the module. Calling it keeps the linker from dropping the registration of its types.
void qml_register_types_Ondavia();

/// Compiled pages lie in a static library, which registers nothing by itself. Outside of every namespace,
/// as the macro demands.
static void registerCompiledPages() {
    Q_INIT_RESOURCE(qmlcache_ondavia_screens);
}

namespace ondavia {

namespace {

/// The engine wants a factory that outlives it; as its child's property it goes right after it.
class OwnedPictureNetwork final : public QObject {
public:
    OwnedPictureNetwork(const std::filesystem::path& cacheFolder, QObject* parent)
        : QObject(parent)
        , network(cacheFolder) {}
    PictureNetwork network;
};

} // namespace

void provideScreens(QQmlEngine& engine) {
    qml_register_types_Ondavia();
    registerCompiledPages();
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

void loadScreens(QQmlApplicationEngine& engine, const ScreenServices& services) {
    provideScreens(engine);
    installLanguage(services.language);
    auto* pictures = new OwnedPictureNetwork(services.cacheFolder, &engine);
    engine.setNetworkAccessManagerFactory(&pictures->network);
    auto* models = new ScreenModels(services, &engine);
    engine.setInitialProperties({{QStringLiteral("models"), QVariant::fromValue(models)}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Ondavia/shell/Main.qml")));
}

} // namespace ondavia
