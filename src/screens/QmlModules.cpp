#include "screens/QmlModules.h"

#include <QQmlEngine>

/// The QML modules, by the last part of their names and by the libraries that hold them.
#define ONDAVIA_QML_MODULES(DO)                                                                              \
    DO(Browse, browse)                                                                                       \
    DO(Details, details)                                                                                     \
    DO(Favorites, favorites)                                                                                 \
    DO(Guide, guide_panel)                                                                                   \
    DO(Home, home)                                                                                           \
    DO(Live, live)                                                                                           \
    DO(LivePlayer, live_player)                                                                              \
    DO(Movies, movies)                                                                                       \
    DO(Player, player)                                                                                       \
    DO(Search, search)                                                                                       \
    DO(Series, series)                                                                                       \
    DO(Shell, shell)                                                                                         \
    DO(SignIn, signin)                                                                                       \
    DO(Style, style)

// Generated with each module: its types, and its compiled documents. Nothing in a static library registers
// by itself. Outside of every namespace, as Qt's macro demands.
#define ONDAVIA_DECLARE_QML(module, library) void qml_register_types_Ondavia_##module();
#define ONDAVIA_REGISTER_QML(module, library)                                                                \
    qml_register_types_Ondavia_##module();                                                                   \
    Q_INIT_RESOURCE(qmlcache_ondavia_##library);
ONDAVIA_QML_MODULES(ONDAVIA_DECLARE_QML)

static void registerModules() {
    ONDAVIA_QML_MODULES(ONDAVIA_REGISTER_QML)
}

namespace ondavia {

void provideScreens(QQmlEngine& engine) {
    registerModules();
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

} // namespace ondavia
