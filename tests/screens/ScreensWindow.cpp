#include "ScreensWindow.h"

#include "base/LocalizedText.h"
#include "screens/Screens.h"

#include <QAccessible>
#include <QDateTime>
#include <QElapsedTimer>
#include <QWheelEvent>

namespace ondavia::testing {
namespace {

std::vector<std::string>* collectedMessages = nullptr;

void collectMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtDebugMsg) {
        collectedMessages->push_back(text.toStdString());
    }
}

void installMessages(std::vector<std::string>* list) {
    collectedMessages = list;
    qInstallMessageHandler(list == nullptr ? nullptr : collectMessage);
}

} // namespace

void collect(QQuickItem& item, const std::function<void(QQuickItem&)>& visit) {
    if (item.isVisible()) {
        visit(item);
        for (QQuickItem* child : item.childItems()) {
            collect(*child, visit);
        }
    }
}

QString accessibleName(const QObject& item) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(const_cast<QObject*>(&item));
    return interface != nullptr ? interface->text(QAccessible::Name) : QString();
}

void giveKeyboard(QWindow& window) {
    ASSERT_TRUE(waitUntil([&window] { return window.isExposed(); }));
    window.requestActivate();
    ASSERT_TRUE(waitUntil([&window] { return window.isActive(); }));
    drainEvents();
}

QRectF sceneRect(const QQuickItem& item) {
    return item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
}

void turnWheel(QQuickItem& list, QPoint notch, const std::function<bool()>& isThere) {
    QQuickWindow* window = list.window();
    const QPointF place = sceneRect(list).center();
    EXPECT_TRUE(waitUntil([&] {
        if (list.property("moving").toBool()) {
            return false;
        }
        if (isThere()) {
            return true;
        }
        QWheelEvent event(place, window->mapToGlobal(place), {}, notch, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        // A view takes events without a time for one and the same.
        event.setTimestamp(static_cast<quint64>(QDateTime::currentMSecsSinceEpoch()));
        QCoreApplication::sendEvent(window, &event);
        return false;
    }));
}

ScreensTest::ScreensTest(std::unique_ptr<SecItemStore> secItems)
    : ScreensFixture(std::move(secItems)) {}

ScreensTest::~ScreensTest() {
    installMessages(nullptr);
    installTextCatalogue({});
}

void ScreensTest::show(int width, int height, const std::string& language) {
    messages.clear();
    installMessages(&messages);
    screens = std::make_unique<Screens>(services(language));
    window = &screens->window();
    models = &screens->models();
    window->resize(width, height);
    giveKeyboard(*window);
    settle();
}

void ScreensTest::settle() {
    constexpr int longestMovement = 400;
    constexpr int rest = 200;
    constexpr int looks = 10;
    QElapsedTimer time;
    time.start();
    waitUntil([&] { return time.elapsed() > longestMovement; });
    // A slow machine is late with what moves lists and pages.
    std::vector<QPointF> places;
    int same = 0;
    EXPECT_TRUE(waitUntil([&] {
        std::vector<QPointF> now = scrolledPlaces();
        same = now == places && !isChangingPages() ? same + 1 : 0;
        if (same == 0) {
            places = std::move(now);
            time.restart();
        }
        return same >= looks && time.elapsed() > rest;
    }));
}

/// Where every list and page is scrolled to.
std::vector<QPointF> ScreensTest::scrolledPlaces() {
    std::vector<QPointF> places;
    collect(*window->contentItem(), [&places](QQuickItem& item) {
        if (item.inherits("QQuickFlickable")) {
            places.emplace_back(item.property("contentX").toReal(), item.property("contentY").toReal());
        }
    });
    return places;
}

bool ScreensTest::isChangingPages() {
    bool changes = false;
    collect(*window->contentItem(), [&changes](QQuickItem& item) {
        changes = changes || (item.inherits("QQuickStackView") && item.property("busy").toBool());
    });
    return changes;
}

void ScreensTest::shoot(const std::string& name) {
    const QString shots = qEnvironmentVariable("ONDAVIA_SHOTS");
    if (!shots.isEmpty()) {
        settle();
        const QString suffix = QStringLiteral("-%1x%2").arg(window->width()).arg(window->height());
        EXPECT_TRUE(window->grabWindow().save(shots + QLatin1Char('/') + QString::fromStdString(name) +
                                              suffix + QStringLiteral(".png")));
    }
}

QQuickItem* ScreensTest::find(const QString& accessible) {
    QQuickItem* found = nullptr;
    collect(*window->contentItem(), [&](QQuickItem& item) {
        if (found == nullptr && item.isEnabled() && accessibleName(item) == accessible) {
            found = &item;
        }
    });
    return found;
}

QQuickItem* ScreensTest::named(const char* objectName) {
    QQuickItem* found = nullptr;
    collect(*window->contentItem(), [&](QQuickItem& item) {
        found = item.objectName() == QLatin1String(objectName) ? &item : found;
    });
    return found;
}

void ScreensTest::click(const char* accessible) {
    QQuickItem* item = find(QString::fromUtf8(accessible));
    ASSERT_NE(item, nullptr) << accessible;
    QTest::mouseClick(window, Qt::LeftButton, {},
                      item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
    drainEvents();
    settle();
}

void ScreensTest::signInWithCatalogue() {
    const std::vector<std::string> live{"Portugal | Generalistas",
                                        "Desporto",
                                        "Notícias e Atualidade Internacional em Português",
                                        "Infantil",
                                        "Documentários",
                                        "Música",
                                        "Cinema e Séries",
                                        "Regionais e Ilhas Atlânticas"};
    const std::vector<std::string> films{"Estreias",
                                         "Drama",
                                         "Comédia",
                                         "Animação e Família",
                                         "Ficção Científica",
                                         "Thriller e Mistério",
                                         "Clássicos do Cinema Português"};
    std::vector<Channel> rows;
    std::int64_t number = 0;
    for (const auto& group : live) {
        for (int index = 1; index <= 23 && group != "Música"; ++index) {
            ++number;
            Channel channel = title(number, "live", group, group + " HD " + std::to_string(index));
            channel.logo = index % 4 == 0 ? std::optional<std::string>() : posters.logo(number);
            rows.push_back(std::move(channel));
        }
    }
    const std::vector<std::string> names{"A Última Maré",
                                         "O Faroleiro da Ilha de São Jorge e Outras Histórias de Mar",
                                         "Noite em Branco",
                                         "Linha 28",
                                         "Sal",
                                         "O Inverno dos Pássaros",
                                         "Ponte Levadiça"};
    for (const auto& group : films) {
        for (int index = 1; index <= 40; ++index) {
            ++number;
            Channel channel =
                title(number, "movie", group, names[static_cast<std::size_t>(number) % names.size()]);
            channel.logo = index % 6 == 0 ? std::optional<std::string>() : posters.poster(number);
            channel.rating =
                index % 3 == 0 ? "0" : std::to_string(5 + index % 5) + "." + std::to_string(index % 10);
            rows.push_back(std::move(channel));
        }
    }
    fill(rows);
    appState.setServer("http://tv.example");
    appState.setUsername("ana");
    appState.setHasCredentials(true);
    defaults.setStringArray("ondavia_live_cat_order", live);
    defaults.setStringArray("ondavia_vod_cat_order", films);
    defaults.setDate("ondavia_last_sync", currentDate());
}

} // namespace ondavia::testing
