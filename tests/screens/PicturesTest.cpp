#include "ScreensWindow.h"
#include "ScriptedSession.h"

#include <map>

namespace ondavia::testing {
namespace {

/// A colour for each number up to 60 that no other has.
QColor colourOf(int number) {
    return QColor::fromHsv(number * 6 % 360, 200, number % 2 == 0 ? 120 : 220);
}

bool isSameColour(const QColor& left, const QColor& right) {
    constexpr int tolerance = 6;
    return std::abs(left.red() - right.red()) < tolerance &&
           std::abs(left.green() - right.green()) < tolerance &&
           std::abs(left.blue() - right.blue()) < tolerance;
}

class PicturesTest : public ScreensTest {
protected:
    PicturesTest() {
        m_server.server.Get(R"(/(\d+)\.png)",
                            [this](const httplib::Request& request, httplib::Response& response) {
                                QImage image(400, 600, QImage::Format_RGB32);
                                image.fill(colourOf(std::stoi(request.matches[1])));
                                QByteArray bytes;
                                QBuffer buffer(&bytes);
                                buffer.open(QIODevice::WriteOnly);
                                image.save(&buffer, "PNG");
                                response.set_content(bytes.toStdString(), "image/png");
                                ++m_served;
                            });
        m_server.start();
        // Connections are used again, as with providers: a reply can meet the wrong request.
        m_server.server.set_keep_alive_max_count(1000);
        std::vector<Channel> rows;
        for (int number = 1; number <= 60; ++number) {
            rows.push_back(title(number, "movie", "Drama", std::to_string(number)));
            rows.back().logo = m_server.url("/" + std::to_string(number) + ".png");
        }
        fill(rows);
        appState.setVodCategories(categoryItems({"Drama"}));
        appState.setSelectedTab(AppTab::movies);
    }

    /// The titles in sight whose picture is not theirs.
    [[nodiscard]] std::vector<int> wrong() const {
        std::vector<int> found;
        const QImage frame = window->grabWindow();
        int cards = 0;
        collect(*window->contentItem(), [&](QQuickItem& item) {
            if (!QByteArray(item.metaObject()->className()).startsWith("ContentCardView")) {
                return;
            }
            const QPointF middle = item.mapToScene({item.width() / 2, item.height() / 3});
            const QPoint pixel = (middle * frame.devicePixelRatio()).toPoint();
            const int number = accessibleName(item).toInt();
            if (frame.rect().contains(pixel)) {
                ++cards;
                // The bar of a narrow window covers the lowest.
                const bool isCovered = middle.y() > window->height() - 80;
                if (!isCovered && !isSameColour(frame.pixelColor(pixel), colourOf(number))) {
                    found.push_back(number);
                }
            }
        });
        return cards > 1 ? found : std::vector<int>{-1};
    }

    std::atomic_int m_served = 0;
    HttpServer m_server;
};

TEST_F(PicturesTest, EachTitleKeepsItsOwnWhileTheWindowChangesItsSize) {
    show();
    for (int round = 0; round < 4; ++round) {
        for (int change = 1; change <= 12; ++change) {
            window->resize(400 + (round * 317 + change * 211) % 1000, 500 + change * 173 % 500);
            // Loads are given up at every stage.
            QTest::qWait(change * 5);
        }
        EXPECT_TRUE(waitUntil([this] { return wrong().empty(); }))
            << "round " << round << ": " << ::testing::PrintToString(wrong());
    }
}

TEST_F(PicturesTest, TheWindowMayGoWhileCardsAndTheirPicturesAreMade) {
    for (int round = 0; round < 6; ++round) {
        // Without what earlier rounds have kept.
        std::filesystem::remove_all(folder.path() / "cache");
        const int before = m_served;
        screens = std::make_unique<Screens>(services());
        ASSERT_TRUE(waitUntil([&] { return m_served > before + round; }));
        screens.reset();
    }
}

TEST_F(PicturesTest, TransfersHaveEndedWhenTheWindowIsGone) {
    const auto session = std::make_shared<ScriptedSession>();
    session->neverAnswers = true;
    ScreenServices silent = services();
    silent.makeSession = [&](const URLSessionConfiguration&) { return session; };
    screens = std::make_unique<Screens>(silent);
    ASSERT_TRUE(waitUntil([&] { return session->underWay > 1; }));
    screens.reset();
    EXPECT_EQ(session->underWay, 0);
}

} // namespace
} // namespace ondavia::testing
