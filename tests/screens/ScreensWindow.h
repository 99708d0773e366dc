#pragma once

#include "Posters.h"
#include "ScreensFixture.h"
#include "screens/shell/ScreenModels.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gmock/gmock.h>

namespace ondavia::testing {

/// Visits every visible item below and including `item`.
void collect(QQuickItem& item, const std::function<void(QQuickItem&)>& visit);

/// The first visible item that `isIt`, below and including `root`; null for none. So for all of these.
[[nodiscard]] QQuickItem* findBelow(QQuickItem& root, const std::function<bool(const QQuickItem&)>& isIt);
/// One of that QML type.
[[nodiscard]] QQuickItem* findType(QQuickItem& root, const char* type);
[[nodiscard]] QQuickItem* findLabel(QQuickItem& root, const QString& text);
[[nodiscard]] QQuickItem* findIcon(QQuickItem& root, const char* symbol);

[[nodiscard]] bool isIcon(const QQuickItem& item);
[[nodiscard]] bool isLabel(const QQuickItem& item);
[[nodiscard]] bool isOf(const QQuickItem& item, const char* type);

/// What an assistive program would call the item.
[[nodiscard]] QString accessibleName(const QObject& item);

/// As the screens give it: Qt 6.4 hands out that of the item's class.
[[nodiscard]] int roleOf(QQuickItem& item);

/// Waits until the shown window has the keyboard: before that, keys reach no shortcut of it.
void giveKeyboard(QWindow& window);

/// Where the item is in its window.
[[nodiscard]] QRectF sceneRect(const QQuickItem& item);

inline constexpr QPoint notchUp(0, 120);
inline constexpr QPoint notchDown(0, -120);
inline constexpr QPoint notchRight(-120, 0);
/// Notch by notch, each when the list has come to rest, until `isThere`.
void turnWheel(QQuickItem& list, QPoint notch, const std::function<bool()>& isThere);

/// The whole interface in a window, under whatever display there is. With ONDAVIA_SHOTS set to a folder,
/// `shoot` leaves a picture there.
class ScreensTest : public ScreensFixture {
protected:
    explicit ScreensTest(std::unique_ptr<SecItemStore> secItems = makeMemoryStore());
    ~ScreensTest() override;

    void TearDown() override { EXPECT_THAT(messages, ::testing::IsEmpty()); }

    void show(int width = 1280, int height = 800, const std::string& language = "pt");
    /// Lets every movement of the interface end.
    void settle();
    [[nodiscard]] std::vector<QPointF> scrolledPlaces();
    [[nodiscard]] bool isChangingPages();
    void shoot(const std::string& name);
    void press(Qt::Key key) {
        QTest::keyClick(window, key);
        drainEvents();
    }
    [[nodiscard]] QQuickItem* find(const QString& accessible);
    /// The visible item of that name; null for none.
    [[nodiscard]] QQuickItem* named(const char* objectName);
    void click(const char* accessible);
    [[nodiscard]] std::string focusName() const {
        const QQuickItem* item = window->activeFocusItem();
        return item != nullptr ? accessibleName(*item).toStdString() : std::string();
    }
    /// A catalogue of several categories with pictures that come from a server, and an account.
    void signInWithCatalogue();

    /// What Qt has complained about.
    std::vector<std::string> messages;
    Posters posters;
    ScreenModels* models = nullptr;
    QQuickWindow* window = nullptr;
    std::unique_ptr<Screens> screens;
};

} // namespace ondavia::testing
