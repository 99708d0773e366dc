#include "ScriptedSession.h"

#include "screens/pictures/PictureProvider.h"
#include "support/TestSupport.h"

#include <QBuffer>
#include <QDirIterator>
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

namespace ondavia::testing {
namespace {

const std::string address = "http://img.example/a b/1.jpg?token=x%2Fy";

std::string encoded(QSize size, const QColor& colour = Qt::red) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes.toStdString();
}

class PictureLoaderTest : public ::testing::Test {
protected:
    /// What a page gets to draw; null for nothing.
    QImage load(QSize size = {}) {
        PictureLoader loader(session, folder.path(), [this] { return now; });
        const std::unique_ptr<QQuickImageResponse> response(loader.load(id(), size));
        bool isFinished = false;
        QObject::connect(response.get(), &QQuickImageResponse::finished, [&] { isFinished = true; });
        EXPECT_TRUE(waitUntil([&] { return isFinished; }));
        EXPECT_EQ(response->errorString(), QString()) << "a missing picture is no fault of the program";
        const std::unique_ptr<QQuickTextureFactory> drawing(response->textureFactory());
        return drawing ? drawing->image() : QImage();
    }
    static QString id() { return pictureUrl(address).path().mid(1); }
    TemporaryFolder folder;
    Date now = currentDate();
    std::shared_ptr<ScriptedSession> session = std::make_shared<ScriptedSession>();

    PictureLoaderTest() { session->response = {200, encoded({400, 600})}; }
};

TEST_F(PictureLoaderTest, AsksForTheAddressOfTheCatalogueWithinABound) {
    EXPECT_FALSE(load().isNull());
    EXPECT_EQ(session->asked, std::vector{QUrl(QString::fromStdString(address)).toEncoded().toStdString()});
    EXPECT_EQ(session->bound, std::size_t{16} << 20);
}

TEST_F(PictureLoaderTest, MakesAPictureThatCoversWhatWasAskedForAndNeverEnlargesOne) {
    EXPECT_EQ(load({128, 128}).size(), QSize(128, 192));
    EXPECT_EQ(load({800, 800}).size(), QSize(400, 600));
    EXPECT_EQ(load({}).size(), QSize(400, 600));
}

TEST_F(PictureLoaderTest, KeepsPicturesForTheNextStart) {
    load();
    EXPECT_FALSE(load().isNull());
    EXPECT_EQ(session->asked.size(), 1U);
}

TEST_F(PictureLoaderTest, AsksAgainForAnOldPictureAndMakesDoWithItWhenThereIsNoNewOne) {
    load();
    now += std::chrono::days(6);
    load();
    EXPECT_EQ(session->asked.size(), 1U);
    now += std::chrono::days(2);
    session->fails = true;
    EXPECT_FALSE(load().isNull());
    session->fails = false;
    session->response.body = encoded({40, 60}, Qt::blue);
    EXPECT_EQ(load().pixelColor(5, 5), QColor(Qt::blue));
    EXPECT_EQ(session->asked.size(), 3U);
}

TEST_F(PictureLoaderTest, WritesNoAddressDown) {
    load();
    int files = 0;
    QDirIterator kept(QString::fromStdString(folder.path().string()), QDir::Files,
                      QDirIterator::Subdirectories);
    while (kept.hasNext()) {
        QFile file(kept.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_FALSE(file.readAll().contains("img.example"));
        ++files;
    }
    EXPECT_GT(files, 0);
}

TEST_F(PictureLoaderTest, IsEmptyWithoutAWordWhenThereIsNone) {
    session->response = {404, encoded({400, 600})};
    EXPECT_TRUE(load().isNull());
    session->response = {200, "no picture at all"};
    EXPECT_TRUE(load().isNull());
    session->response = {200, ""};
    EXPECT_TRUE(load().isNull());
    session->response = {200, R"(<svg xmlns="http://www.w3.org/2000/svg" width="64" height="64"/>)"};
    EXPECT_TRUE(load().isNull()) << "a drawing is carried out by whoever reads it";
    session->fails = true;
    EXPECT_TRUE(load().isNull());
    EXPECT_EQ(session->asked.size(), 5U) << "what is no picture is not kept";
}

TEST_F(PictureLoaderTest, EndsInTheMiddleOfATransfer) {
    session->neverAnswers = true;
    auto loader = std::make_unique<PictureLoader>(session, folder.path());
    const std::unique_ptr<QQuickImageResponse> response(loader->load(id(), {}));
    ASSERT_TRUE(waitUntil([this] { return session->underWay > 0; }));
    loader.reset();
}

TEST_F(PictureLoaderTest, AResponseMayGoBeforeItsPictureComes) {
    session->neverAnswers = true;
    PictureLoader loader(session, folder.path());
    std::unique_ptr<QQuickImageResponse> response(loader.load(id(), {}));
    ASSERT_TRUE(waitUntil([this] { return session->underWay > 0; }));
    response->cancel();
    response.reset();
}

TEST_F(PictureLoaderTest, IsEmptyOnceItHasEnded) {
    PictureLoader loader(session, folder.path());
    loader.end();
    const std::unique_ptr<QQuickImageResponse> response(loader.load(id(), {}));
    bool isFinished = false;
    QObject::connect(response.get(), &QQuickImageResponse::finished, [&] { isFinished = true; });
    EXPECT_TRUE(waitUntil([&] { return isFinished; }));
    EXPECT_EQ(response->textureFactory(), nullptr);
    EXPECT_TRUE(session->asked.empty());
}

TEST(PictureUrl, TakesPicturesOfTheWebOnly) {
    EXPECT_EQ(pictureUrl("https://img.example/a b.png").toString(),
              QStringLiteral("image://pictures/aHR0cHM6Ly9pbWcuZXhhbXBsZS9hJTIwYi5wbmc"));
    for (const char* text :
         {"", "file:///etc/passwd", "qrc:/x.png", "/etc/passwd", "image://x/y", "n/a", "http"}) {
        EXPECT_TRUE(pictureUrl(text).isEmpty()) << text;
    }
    EXPECT_TRUE(pictureUrl(std::nullopt).isEmpty());
}

} // namespace
} // namespace ondavia::testing
