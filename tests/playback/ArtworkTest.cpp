#include "PlayerManagerFixture.h"
#include "platform/linux/CurlURLSession.h"
#include "support/HttpServer.h"

#include <QBuffer>
#include <QImage>
#include <QUrl>

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace ondavia::testing {
namespace {

std::string picture(int width, int height, const char* format = "PNG") {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    image.save(&bytes, format);
    return bytes.data().toStdString();
}

/// Qt reads it where its plug-in for drawings is installed.
constexpr const char* drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"64\" height=\"64\">"
                                "<rect width=\"64\" height=\"64\"/></svg>";

/// With more behind it than anybody wants to read.
std::string endlessPicture() {
    std::string bytes = picture(64, 64);
    bytes.resize(ArtworkLoader::maximumBytes + 1, '\0');
    return bytes;
}

/// An engine that does nothing, and a real server for the pictures.
class ArtworkTest : public PlayerManagerTest {
protected:
    ArtworkTest() {
        makeSession = makeCurlURLSession;
        server.server.Get("/.*", [this](const httplib::Request& request, httplib::Response& response) {
            ++requests;
            logos += request.path == "/logo.png" ? 1 : 0;
            if (request.path == "/held.png") {
                std::unique_lock lock(m_mutex);
                m_released.wait(lock, [this] { return m_isReleased; });
            }
            const auto body = bodies.find(request.path);
            response.status = body == bodies.end() || request.path == "/gone.png" ? 404 : 200;
            if (body != bodies.end()) {
                response.set_content(body->second, "image/png");
            }
        });
        server.start();
    }
    ~ArtworkTest() override { release(); }

    void release() {
        const std::lock_guard lock(m_mutex);
        m_isReleased = true;
        m_released.notify_all();
    }
    Channel film(const std::string& logo, const std::string& id = "main_2") const {
        Channel channel = movie();
        channel.id = id;
        channel.logo = server.url(logo);
        return channel;
    }
    [[nodiscard]] bool hasArtwork() const {
        return waitUntil([this] { return manager->cachedArtwork() != nullptr; });
    }
    [[nodiscard]] std::shared_ptr<const MPMediaItemArtwork> loaded(ArtworkLoader& loader,
                                                                   const std::string& path) const {
        const auto loading = loader.load(QUrl(QString::fromStdString(server.url(path))));
        EXPECT_TRUE(waitUntil([&loading] { return loading.isFinished(); }));
        return loading.result();
    }
    [[nodiscard]] bool isAsked(int times) const {
        return waitUntil([this, times] { return requests >= times; });
    }

    const std::map<std::string, std::string> bodies = {{"/a.png", picture(320, 180)},
                                                       {"/b.png", picture(64, 64)},
                                                       {"/held.png", picture(16, 16)},
                                                       {"/none", "no picture at all"},
                                                       {"/gone.png", picture(48, 48)},
                                                       {"/drawing.svg", drawing},
                                                       {"/wide.jpg", picture(4000, 1000, "JPG")},
                                                       {"/endless.png", endlessPicture()}};
    std::atomic_int requests = 0;
    std::atomic_int logos = 0;
    HttpServer server;

private:
    std::mutex m_mutex;
    std::condition_variable m_released;
    bool m_isReleased = false;
};

TEST_F(ArtworkTest, IsLoadedAndShown) {
    start(film("/a.png"));
    EXPECT_EQ(manager->cachedArtworkURL(), server.url("/a.png"));
    EXPECT_EQ(nowPlaying.nowPlayingInfo()->artwork, nullptr);
    ASSERT_TRUE(hasArtwork());
    EXPECT_EQ(manager->cachedArtwork()->width, 320);
    EXPECT_EQ(manager->cachedArtwork()->height, 180);
    const QByteArray png = QByteArray::fromStdString(manager->cachedArtwork()->png);
    EXPECT_EQ(QImage::fromData(png, "PNG").size(), QSize(320, 180));
    EXPECT_EQ(nowPlaying.nowPlayingInfo()->artwork, manager->cachedArtwork());
}

TEST_F(ArtworkTest, IsTheBackdropBeforeTheLogoEvenAnEmptyOne) {
    Channel channel = film("/logo.png");
    channel.backdrop = server.url("/backdrop.png");
    start(channel);
    EXPECT_EQ(manager->cachedArtworkURL(), server.url("/backdrop.png"));
    channel.backdrop = "";
    start(channel);
    EXPECT_EQ(manager->cachedArtworkURL(), std::nullopt);
    channel.backdrop.reset();
    start(channel);
    EXPECT_EQ(manager->cachedArtworkURL(), server.url("/logo.png"));
}

TEST_F(ArtworkTest, IsNotAskedForTwice) {
    start(film("/a.png"));
    ASSERT_TRUE(hasArtwork());
    ASSERT_EQ(requests, 1);
    const auto artwork = manager->cachedArtwork();
    manager->fetchArtworkIfNeeded();
    // Whatever that would have asked for is on its way before these.
    const auto session = makeCurlURLSession({});
    constexpr int others = 5;
    for (int request = 0; request < others; ++request) {
        resultOf(session->data(QUrl(QString::fromStdString(server.url("/b.png")))));
    }
    EXPECT_EQ(requests, 1 + others);
    EXPECT_EQ(manager->cachedArtwork(), artwork);
}

TEST_F(ArtworkTest, IsTriedAgainWhenItCouldNotBeHad) {
    start(film("/none"));
    ASSERT_TRUE(isAsked(1));
    manager->fetchArtworkIfNeeded();
    EXPECT_TRUE(isAsked(2));
}

TEST_F(ArtworkTest, IsNoneWithoutAnItem) {
    manager->fetchArtworkIfNeeded();
    EXPECT_EQ(manager->cachedArtworkURL(), std::nullopt);
}

TEST_F(ArtworkTest, OfAnItemThatHasGoneIsDropped) {
    start(film("/held.png", "first"));
    ASSERT_TRUE(isAsked(1));
    // Behind the player's back, so that the first one's transfer goes on.
    manager->setCurrentItem(film("/b.png", "second"));
    release();
    // The first one's picture is there long before the last of these.
    ArtworkLoader loader(makeSession);
    constexpr int others = 5;
    for (int request = 0; request < others; ++request) {
        EXPECT_EQ(loaded(loader, "/held.png")->width, 16);
    }
    EXPECT_EQ(manager->cachedArtwork(), nullptr);
}

TEST_F(ArtworkTest, NeverHoldsUpTheEndOrTheNext) {
    start(film("/held.png", "first"));
    ASSERT_TRUE(isAsked(1));
    manager->stop();
    EXPECT_EQ(manager->cachedArtworkURL(), std::nullopt);
    start(film("/b.png", "second"));
    ASSERT_TRUE(hasArtwork()) << "though the server still holds the first one back";
    EXPECT_EQ(manager->cachedArtwork()->width, 64);
    start(film("/held.png", "third"));
    manager.reset();
}

TEST_F(ArtworkTest, ThatIsNoneIsPassedOverWithoutAWord) {
    const LogCapture log;
    Channel unreadable = film("");
    unreadable.logo = "http://tv.example/no picture.png";
    Channel local = film("");
    local.logo = "file:///etc/hostname";
    for (const Channel& channel : {film("/none"), film("/missing"), unreadable, local}) {
        start(channel);
        EXPECT_EQ(manager->cachedArtworkURL(), channel.logo) << "it is noted before anything is loaded";
        start(film("/b.png", "proof"));
        ASSERT_TRUE(hasArtwork());
        EXPECT_EQ(manager->cachedArtwork()->width, 64);
    }
    EXPECT_THAT(log.messages(LogCategory::player, LogLevel::Error), ::testing::IsEmpty());
    EXPECT_THAT(log.messages(LogCategory::network, LogLevel::Error), ::testing::IsEmpty());
}

TEST_F(ArtworkTest, IsNoDrawing) {
    EXPECT_EQ(makeArtwork(drawing), nullptr);
    for (const char* format : {"PNG", "JPG", "BMP", "ICO"}) {
        ASSERT_NE(makeArtwork(picture(32, 32, format)), nullptr) << format;
        EXPECT_EQ(makeArtwork(picture(32, 32, format))->width, 32);
    }
    EXPECT_EQ(makeArtwork(picture(32, 32, "XPM")), nullptr);
}

TEST_F(ArtworkTest, IsAPictureWhateverStatusItComesWith) {
    start(film("/gone.png"));
    ASSERT_TRUE(hasArtwork());
    EXPECT_EQ(manager->cachedArtwork()->width, 48);
}

TEST_F(ArtworkTest, IsNotTheLogoWhereTheBackdropCannotBeHad) {
    Channel channel = film("/logo.png");
    channel.backdrop = server.url("/none");
    start(channel);
    // One at a time: with the second one under way the first has failed.
    for (int request = 1; request < 4; ++request) {
        ASSERT_TRUE(isAsked(request));
        drainEvents();
        manager->fetchArtworkIfNeeded();
    }
    EXPECT_TRUE(isAsked(4));
    EXPECT_EQ(logos, 0);
}

TEST_F(ArtworkTest, IsNoLargerThanAnybodyShowsIt) {
    start(film("/wide.jpg"));
    ASSERT_TRUE(hasArtwork());
    EXPECT_EQ(manager->cachedArtwork()->width, ArtworkLoader::longestSide);
    EXPECT_EQ(manager->cachedArtwork()->height, ArtworkLoader::longestSide / 4);
}

TEST_F(ArtworkTest, StopsAtItsBound) {
    ArtworkLoader loader(makeSession);
    EXPECT_EQ(loaded(loader, "/endless.png"), nullptr);
    EXPECT_EQ(loaded(loader, "/none"), nullptr);
    EXPECT_EQ(loaded(loader, "/b.png")->width, 64);
}

} // namespace
} // namespace ondavia::testing
