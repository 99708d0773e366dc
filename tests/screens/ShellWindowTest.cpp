#include "ScreensWindow.h"

#include "support/HttpServer.h"

#include <QColor>

#include <cmath>
#include <cstdlib>
#include <future>

namespace ondavia::testing {
namespace {

/// The first visible item below `item` for which `isIt` holds.
/// The name of the icon that stands in `item`.
std::string symbolIn(QQuickItem& item) {
    const QQuickItem* icon = findBelow(item, isIcon);
    return icon != nullptr ? icon->property("symbol").toString().toStdString() : "no icon";
}

/// The colour that is drawn behind all of `item`, with the opacities of both in its alpha.
QColor backgroundOf(QQuickItem& item) {
    const QQuickItem* background = findBelow(item, [&item](const QQuickItem& candidate) {
        return candidate.inherits("QQuickRectangle") && candidate.size() == item.size();
    });
    if (background == nullptr) {
        return {};
    }
    auto color = background->property("color").value<QColor>();
    color.setAlphaF(color.alphaF() * static_cast<float>(background->opacity() * item.opacity()));
    return color;
}

int hueDistance(int one, int other) {
    const int distance = std::abs(one - other) % 360;
    return std::min(distance, 360 - distance);
}

TEST_F(ScreensTest, AToastStandsInTheWindowForSixSeconds) {
    show();
    appState.showToast("Uma mensagem", ToastType::info);
    settle();
    EXPECT_NE(find(QStringLiteral("Uma mensagem")), nullptr);
    scheduler.advance(5.8);
    settle();
    EXPECT_NE(find(QStringLiteral("Uma mensagem")), nullptr);
    scheduler.advance(0.3);
    EXPECT_TRUE(waitUntil([this] { return find(QStringLiteral("Uma mensagem")) == nullptr; }));
}

TEST_F(ScreensTest, AToastWithoutATextIsShownToo) {
    const auto toastIcon = [this] {
        return findBelow(*window->contentItem(), [](const QQuickItem& item) {
            return item.property("symbol").toString() == QStringLiteral("exclamationmark.triangle.fill");
        });
    };
    show();
    EXPECT_EQ(toastIcon(), nullptr);
    appState.showToast("", ToastType::warning);
    settle();
    EXPECT_NE(toastIcon(), nullptr);
    scheduler.advance(6.1);
    EXPECT_TRUE(waitUntil([&] { return toastIcon() == nullptr; }));
}

TEST_F(ScreensTest, EachKindOfToastHasItsIconAndBackground) {
    struct Look final {
        ToastType type;
        std::string symbol;
        int hue;
    };
    constexpr int blue = 220;
    constexpr int green = 135;
    constexpr int orange = 32;
    constexpr int red = 0;
    const std::vector<Look> looks{{ToastType::info, "info.circle.fill", blue},
                                  {ToastType::success, "checkmark.circle.fill", green},
                                  {ToastType::warning, "exclamationmark.triangle.fill", orange},
                                  {ToastType::error, "xmark.circle.fill", red}};
    show();
    for (const Look& look : looks) {
        appState.showToast("Uma mensagem", look.type);
        settle();
        QQuickItem* toast = find(QStringLiteral("Uma mensagem"));
        ASSERT_NE(toast, nullptr);
        EXPECT_EQ(symbolIn(*toast), look.symbol);
        const QColor background = backgroundOf(*toast);
        EXPECT_LE(hueDistance(background.hue(), look.hue), 15) << look.symbol << ", hue " << background.hue();
        EXPECT_GT(background.saturationF(), 0.5) << look.symbol;
        EXPECT_NEAR(background.alphaF(), 0.9, 0.005) << look.symbol;
    }
}

TEST_F(ScreensTest, EachTabHasItsIcon) {
    show();
    const std::vector<std::pair<const char*, std::string>> icons{
        {"Inicio", "house.fill"},
        {"TV", "tv.fill"},
        {"Filmes", "film.fill"},
        {"Series", "play.rectangle.on.rectangle.fill"},
        {"Favoritos", "heart.fill"}};
    for (const auto& [name, symbol] : icons) {
        QQuickItem* tab = find(QString::fromUtf8(name));
        ASSERT_NE(tab, nullptr) << name;
        EXPECT_EQ(symbolIn(*tab), symbol) << name;
    }
}

TEST_F(ScreensTest, SigningInStartsTheLoadBehindTheOverlay) {
    show();
    models->signIn()->open();
    models->signIn()->setServer(QStringLiteral("http://127.0.0.1:1"));
    models->signIn()->setUsername(QStringLiteral("ana"));
    models->signIn()->setPassword(QStringLiteral("palavra"));
    std::vector<bool> loading;
    QObject::connect(&appState, &AppState::isLoadingChanged, window,
                     [&] { loading.push_back(appState.isLoading()); });
    models->signIn()->signIn();
    ASSERT_TRUE(waitUntil([this] { return models->signIn()->canSaveAnyway(); }));
    models->signIn()->saveAnyway();
    EXPECT_TRUE(appState.hasCredentials());
    EXPECT_TRUE(waitUntil([&] { return loading == std::vector{true, false}; })) << loading.size();
    EXPECT_EQ(appState.toastMessage(), "Erro ao carregar conteúdo. Verifica a tua ligação.")
        << "nobody answers at that address";
}

class FirstLoadTest : public ScreensTest, public ::testing::WithParamInterface<QSize> {
protected:
    /// An account whose provider takes the question and is silent until `answer`.
    void showBeforeSilentProvider() {
        server.server.Get(".*",
                          [gate = m_answered](const httplib::Request&, httplib::Response&) { gate.wait(); });
        server.start();
        appState.saveCredentials(server.url(), "ana", "palavra");
        show(GetParam().width(), GetParam().height());
        ASSERT_TRUE(appState.isLoading());
        scheduler.advance(4.9);
        settle();
        EXPECT_EQ(find(leave), nullptr);
        press(Qt::Key_Escape);
        EXPECT_TRUE(appState.isLoading()) << "a wait this short is not left";
        scheduler.advance(0.2);
        settle();
    }
    void answer() {
        m_answer.set_value();
        EXPECT_TRUE(waitForTransfers(std::chrono::minutes(1)));
        drainEvents();
        EXPECT_FALSE(appState.toastMessage()) << "nobody asked for this any more";
    }
    void expectHomeOffersToTryAgain() {
        settle();
        EXPECT_FALSE(appState.isLoading());
        EXPECT_NE(find(QStringLiteral("Tentar novamente")), nullptr);
        EXPECT_NE(find(QStringLiteral("O catálogo ainda está vazio")), nullptr);
        EXPECT_EQ(focusName(), "Tentar novamente");
    }

    const QString leave = QStringLiteral("Cancelar");
    HttpServer server;

private:
    std::promise<void> m_answer;
    std::shared_future<void> m_answered = m_answer.get_future().share();
};

TEST_P(FirstLoadTest, CanBeLeftByTheButtonThatHasTheFocus) {
    showBeforeSilentProvider();
    ASSERT_NE(find(leave), nullptr);
    EXPECT_EQ(focusName(), leave.toStdString());
    shoot("loading-leave");
    press(Qt::Key_Return);
    expectHomeOffersToTryAgain();
    shoot("home-left");
    answer();
}

TEST_P(FirstLoadTest, CanBeLeftByEscape) {
    showBeforeSilentProvider();
    press(Qt::Key_Escape);
    expectHomeOffersToTryAgain();
    EXPECT_EQ(find(QStringLiteral("Sair da Ondavia?")), nullptr);
    answer();
}

TEST_P(FirstLoadTest, TheEscapeThatLeavesItDoesNoMore) {
    appState.setSelectedTab(AppTab::movies);
    showBeforeSilentProvider();
    press(Qt::Key_Escape);
    EXPECT_FALSE(appState.isLoading());
    EXPECT_EQ(appState.selectedTab(), AppTab::movies);
    answer();
}

INSTANTIATE_TEST_SUITE_P(Sizes, FirstLoadTest, ::testing::Values(QSize(1280, 800), QSize(412, 892)));

} // namespace
} // namespace ondavia::testing
