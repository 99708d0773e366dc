#include "playback/FSPlayerUIView.h"

#include "PlayerManagerFixture.h"

#include <QImage>
#include <QQuickWindow>
#include <QSignalSpy>

namespace ondavia::testing {
namespace {

class FSPlayerUIViewTest : public PlayerManagerTest {
protected:
    FSPlayerUIViewTest() {
        window.resize(400, 300);
        window.setColor(Qt::green);
    }

    /// A host of 100 x 50, in the window unless it is told to stay out.
    std::unique_ptr<FSPlayerUIView> makeHost(QQuickItem* parent) {
        auto host = std::make_unique<FSPlayerUIView>();
        host->setSize({100, 50});
        host->setParentItem(parent);
        host->setManager(manager.get());
        return host;
    }

    /// Plays with an engine whose picture is `picture`, as the real one has it from its beginning.
    void playPicture() {
        manager = std::make_unique<PlayerManager>(PlayerEnvironment{
            [this](const std::string& content, const FSOptions& options) {
                auto engine = std::make_shared<FakePlayer>(content, options, journal, notifications);
                engine->fakeView().picture = &picture;
                return engine;
            },
            notifications,
            scheduler,
            audio,
            {},
            nowPlaying,
            commands});
    }

    QQuickItem* content() { return window.contentItem(); }

    QQuickWindow window;
    QQuickItem picture;
};

TEST_F(FSPlayerUIViewTest, TakesThePictureOfANewEngine) {
    playPicture();
    const auto host = makeHost(content());
    EXPECT_EQ(picture.parentItem(), nullptr);
    picture.setPosition({7, 7});
    manager->play(movie(), 0);
    EXPECT_EQ(picture.parentItem(), host.get());
    EXPECT_EQ(picture.position(), QPointF(0, 0));
    EXPECT_EQ(picture.size(), QSizeF(100, 50));
}

TEST_F(FSPlayerUIViewTest, TakesThePictureWhenItComesIntoBeing) {
    playPicture();
    manager->play(movie(), 0);
    const auto host = makeHost(content());
    EXPECT_EQ(picture.parentItem(), host.get());
}

TEST_F(FSPlayerUIViewTest, TakesThePictureWhenItJoinsAWindow) {
    playPicture();
    manager->play(movie(), 0);
    const auto host = makeHost(nullptr);
    EXPECT_EQ(picture.parentItem(), nullptr);
    host->setParentItem(content());
    EXPECT_EQ(picture.parentItem(), host.get());
}

TEST_F(FSPlayerUIViewTest, KeepsThePictureInItsBounds) {
    playPicture();
    const auto host = makeHost(content());
    manager->play(movie(), 0);
    host->setSize({200, 120});
    EXPECT_EQ(picture.size(), QSizeF(200, 120));
    EXPECT_TRUE(host->clip());
}

TEST_F(FSPlayerUIViewTest, TheHostUpdatedLastHasThePicture) {
    playPicture();
    const auto full = makeHost(content());
    manager->play(movie(), 0);
    const auto mini = makeHost(content());
    EXPECT_EQ(picture.parentItem(), mini.get());
    full->setSize({300, 200});
    EXPECT_EQ(picture.parentItem(), full.get());
    EXPECT_EQ(picture.size(), QSizeF(300, 200));
}

TEST_F(FSPlayerUIViewTest, HostsOutOfSightTakeNothing) {
    playPicture();
    const auto shown = makeHost(content());
    const auto hidden = makeHost(content());
    QQuickItem page;
    page.setParentItem(content());
    page.setVisible(false);
    const auto onHiddenPage = makeHost(&page);
    hidden->setVisible(false);
    manager->play(movie(), 0);
    EXPECT_EQ(picture.parentItem(), shown.get());
    hidden->setSize({10, 10});
    onHiddenPage->setSize({10, 10});
    EXPECT_EQ(picture.parentItem(), shown.get());
    EXPECT_EQ(picture.size(), QSizeF(100, 50));
    page.setVisible(true);
    EXPECT_EQ(picture.parentItem(), onHiddenPage.get());
    onHiddenPage->setParentItem(nullptr);
}

TEST_F(FSPlayerUIViewTest, ThePictureOutlivesAHostAndMovesToTheNext) {
    playPicture();
    auto full = makeHost(content());
    manager->play(movie(), 0);
    journal.clear();
    full.reset();
    EXPECT_EQ(picture.parentItem(), nullptr);
    const auto mini = makeHost(content());
    EXPECT_EQ(picture.parentItem(), mini.get());
    EXPECT_TRUE(journal.empty()) << "the engine is told nothing";
}

TEST_F(FSPlayerUIViewTest, LetsInputThrough) {
    const auto host = makeHost(content());
    EXPECT_FALSE(host->isEnabled());
    EXPECT_EQ(host->acceptedMouseButtons(), Qt::NoButton);
}

TEST_F(FSPlayerUIViewTest, FollowsAChangeOfManagerAndItsEnd) {
    const auto host = makeHost(content());
    QSignalSpy changes(host.get(), &FSPlayerUIView::managerChanged);
    playPicture();
    EXPECT_EQ(host->manager(), nullptr);
    host->setManager(manager.get());
    host->setManager(manager.get());
    EXPECT_EQ(changes.count(), 1);
    manager->play(movie(), 0);
    EXPECT_EQ(picture.parentItem(), host.get());
    manager.reset();
    host->setSize({20, 20});
    EXPECT_EQ(host->manager(), nullptr);
}

TEST_F(FSPlayerUIViewTest, IsBlackWithoutAPicture) {
    const auto host = makeHost(content());
    window.show();
    ASSERT_TRUE(waitUntil([this] { return window.isExposed(); }));
    const QImage shot = window.grabWindow();
    ASSERT_FALSE(shot.isNull());
    EXPECT_EQ(shot.pixelColor(50, 25), QColor(Qt::black));
    EXPECT_EQ(shot.pixelColor(250, 200), QColor(Qt::green));
}

} // namespace
} // namespace ondavia::testing
