#include "ScreensWindow.h"

#include "support/HttpServer.h"

#include <QClipboard>

#include <future>
#include <stdexcept>

namespace ondavia::testing {
namespace {

constexpr const char* link = "http://tv.example:8080/get.php?username=ana&password=palavra&type=m3u";

/// The sign-in step in windows of several sizes, the last ones too short for it.
class SignInWindowTest : public ScreensTest, public ::testing::WithParamInterface<QSize> {
protected:
    void open() {
        show(GetParam().width(), GetParam().height());
        models->signIn()->open();
        settle();
    }
    void type(const std::string& text) {
        for (const char letter : text) {
            QTest::keyClick(window, letter);
        }
        drainEvents();
    }
    /// Null where the step is not on screen.
    QQuickItem* findNamed(const char* name) {
        QQuickItem* found = nullptr;
        collect(*window->contentItem(),
                [&](QQuickItem& item) { found = item.objectName() == QLatin1String(name) ? &item : found; });
        return found;
    }
    QQuickItem& named(const char* name) {
        QQuickItem* found = findNamed(name);
        if (found == nullptr) {
            throw std::runtime_error(std::string("not on screen: ") + name);
        }
        return *found;
    }
    QRectF place(const char* name) {
        QQuickItem& item = named(name);
        return item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
    }
    QString textOf(const char* field) { return named(field).property("text").toString(); }
    /// Where everything stands that can be pressed or typed into.
    std::vector<QRectF> places() {
        return {place("server"), place("username"), place("password"), place("signIn"), place("test")};
    }
    void fillIn(const std::string& server = "http://127.0.0.1:1") {
        models->signIn()->setServer(QString::fromStdString(server));
        models->signIn()->setUsername(QStringLiteral("ana"));
        models->signIn()->setPassword(QStringLiteral("palavra"));
        settle();
    }
};

TEST_P(SignInWindowTest, NothingMovesForAHintOrAVerdict) {
    open();
    const auto before = places();
    models->signIn()->setServer(QStringLiteral("tv.example:8080"));
    settle();
    ASSERT_TRUE(models->signIn()->lacksScheme());
    EXPECT_EQ(places(), before) << "the hint about the scheme";
    const QString warning =
        QStringLiteral("Um endereço só começa por http:// ou https:// em minúsculas: este é tomado pelo "
                       "nome de um servidor.");
    EXPECT_EQ(find(warning), nullptr);
    models->signIn()->setServer(QStringLiteral("HTTP://tv.example:8080"));
    settle();
    EXPECT_NE(find(warning), nullptr);
    EXPECT_EQ(places(), before) << "the warning about the scheme";
    models->signIn()->setServer(QStringLiteral("tv.example:8080"));
    settle();
    shoot("signin-hint");
    HttpServer provider;
    std::promise<void> answer;
    provider.server.Get(
        ".*", [gate = answer.get_future().share()](const httplib::Request&, httplib::Response& response) {
            gate.wait();
            response.status = 503;
        });
    provider.start();
    fillIn(provider.url());
    models->signIn()->signIn();
    settle();
    ASSERT_TRUE(models->signIn()->isChecking());
    // A window that is too short makes room for the answer at once, when no button can be pressed.
    const auto checking = places();
    auto unscrolled = checking;
    for (QRectF& item : unscrolled) {
        item.translate(0, before.front().y() - checking.front().y());
    }
    EXPECT_EQ(unscrolled, before) << "while it is checked";
    answer.set_value();
    ASSERT_TRUE(waitUntil([this] { return models->signIn()->canSaveAnyway(); }));
    settle();
    EXPECT_EQ(places(), checking) << "a verdict moves nothing";
    const QQuickItem* verdict = find(models->signIn()->resultText());
    ASSERT_NE(verdict, nullptr);
    EXPECT_LE(verdict->mapToScene(QPointF(0, verdict->height())).y(), window->height()) << "in sight";
    shoot("signin-verdict");
}

TEST_P(SignInWindowTest, TheHintStandsInsideItsFieldAndTakesNoTabStop) {
    open();
    type("tv.example:8080");
    QQuickItem* hint = find(QStringLiteral("Acrescentar http://"));
    ASSERT_NE(hint, nullptr);
    const QRectF field = place("server");
    const QRectF inside = hint->mapRectToScene(QRectF(0, 0, hint->width(), hint->height()));
    EXPECT_TRUE(field.contains(inside));
    press(Qt::Key_Tab);
    EXPECT_EQ(named("username").hasActiveFocus(), true) << focusName();
    QTest::mouseClick(window, Qt::LeftButton, {}, inside.center().toPoint());
    drainEvents();
    EXPECT_EQ(textOf("server"), QStringLiteral("http://tv.example:8080"));
}

TEST_P(SignInWindowTest, TabScrollsToWhatItReaches) {
    open();
    fillIn();
    for (int step = 0; step < 12; ++step) {
        press(Qt::Key_Tab);
        settle();
        const QQuickItem* item = window->activeFocusItem();
        ASSERT_NE(item, nullptr);
        const QRectF seen = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        EXPECT_GE(seen.top(), 0) << focusName();
        EXPECT_LE(seen.bottom(), window->height()) << focusName();
    }
}

TEST_P(SignInWindowTest, FieldsAreEmptyAfterTheStepHasGone) {
    open();
    fillIn();
    ASSERT_EQ(textOf("password"), QStringLiteral("palavra"));
    press(Qt::Key_Escape);
    if (const QQuickItem* fading = findNamed("password")) {
        EXPECT_EQ(fading->property("text").toString(), QString());
    }
    settle();
    EXPECT_EQ(find(QStringLiteral("Servidor")), nullptr);
    models->signIn()->open();
    settle();
    for (const char* field : {"server", "username", "password"}) {
        EXPECT_EQ(textOf(field), QString()) << field;
    }
}

TEST_P(SignInWindowTest, ALinkIsReadWhenItIsPastedByKeyOrByTheMiddleButton) {
    open();
    QGuiApplication::clipboard()->setText(QLatin1String(link));
    QTest::keyClick(window, Qt::Key_V, Qt::ControlModifier);
    drainEvents();
    EXPECT_EQ(textOf("server"), QStringLiteral("http://tv.example:8080"));
    EXPECT_EQ(textOf("password"), QStringLiteral("palavra"));
    models->signIn()->close();
    settle();
    models->signIn()->open();
    settle();
    ASSERT_TRUE(QGuiApplication::clipboard()->supportsSelection());
    QGuiApplication::clipboard()->setText(QLatin1String(link), QClipboard::Selection);
    QTest::mouseClick(window, Qt::MiddleButton, {}, place("server").center().toPoint() + QPoint(0, 10));
    drainEvents();
    EXPECT_EQ(textOf("server"), QStringLiteral("http://tv.example:8080"));
    EXPECT_EQ(textOf("username"), QStringLiteral("ana"));
}

TEST_P(SignInWindowTest, ATypedLinkIsReadWhenItsFieldIsLeft) {
    open();
    type(link);
    EXPECT_EQ(textOf("server"), QLatin1String(link));
    press(Qt::Key_Tab);
    EXPECT_EQ(textOf("server"), QStringLiteral("http://tv.example:8080"));
    EXPECT_EQ(textOf("username"), QStringLiteral("ana"));
    EXPECT_EQ(textOf("password"), QStringLiteral("palavra"));
}

TEST_P(SignInWindowTest, AHalfTypedLinkIsLeftAloneWhileAnotherWindowIsInFront) {
    open();
    type(link);
    QWindow other;
    other.show();
    giveKeyboard(other);
    ASSERT_FALSE(window->isActive());
    EXPECT_FALSE(named("server").hasActiveFocus());
    EXPECT_EQ(textOf("server"), QLatin1String(link));
    giveKeyboard(*window);
    press(Qt::Key_Tab);
    EXPECT_EQ(textOf("username"), QStringLiteral("ana")) << "it is read when its field is left";
}

TEST_P(SignInWindowTest, BackspaceInAnEmptyFieldDoesNotLeaveTheStep) {
    open();
    type("a");
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_TRUE(models->signIn()->isOpen());
}

TEST_P(SignInWindowTest, BackspaceBesideAFieldThrowsNothingAway) {
    open();
    type("tv.example");
    named("server").setProperty("focus", false);
    ASSERT_FALSE(named("server").hasActiveFocus());
    press(Qt::Key_Backspace);
    EXPECT_TRUE(models->signIn()->isOpen());
    EXPECT_EQ(textOf("server"), QStringLiteral("tv.example"));
    press(Qt::Key_Escape);
    EXPECT_FALSE(models->signIn()->isOpen());
}

INSTANTIATE_TEST_SUITE_P(Sizes, SignInWindowTest,
                         ::testing::Values(QSize(1280, 800), QSize(412, 892), QSize(360, 640),
                                           QSize(1000, 480), QSize(400, 480)));

} // namespace
} // namespace ondavia::testing
