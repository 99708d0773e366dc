#include "screens/FailureWindow.h"

#include "ScreensWindow.h"
#include "store/StoreError.h"
#include "support/FullDisk.h"

#include <system_error>

namespace ondavia::testing {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

/// The window that stands for the application, as `ScreensTest` has the whole interface.
class FailureWindowTest : public ::testing::Test {
protected:
    void show(const std::exception& error, const std::string& language, int width = 1280, int height = 800) {
        failure = std::make_unique<FailureWindow>(error, language);
        window = &failure->window();
        window->resize(width, height);
        giveKeyboard(*window);
    }

    [[nodiscard]] std::vector<std::string> texts() const {
        std::vector<std::string> found;
        collect(*window->contentItem(), [&found](QQuickItem& item) {
            if (item.inherits("QQuickText")) {
                found.push_back(item.property("text").toString().toStdString());
            }
        });
        return found;
    }

    void click(const QString& accessible) {
        collect(*window->contentItem(), [&](QQuickItem& item) {
            if (item.inherits("QQuickAbstractButton") && accessibleName(item) == accessible) {
                QTest::mouseClick(window, Qt::LeftButton, {},
                                  item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint());
            }
        });
        drainEvents();
    }

    void shoot() {
        const QString shots = qEnvironmentVariable("ONDAVIA_SHOTS");
        if (!shots.isEmpty()) {
            const QString name =
                QStringLiteral("/failure-%1x%2.png").arg(window->width()).arg(window->height());
            EXPECT_TRUE(window->grabWindow().save(shots + name));
        }
    }

    std::unique_ptr<FailureWindow> failure;
    QQuickWindow* window = nullptr;
};

TEST_F(FailureWindowTest, SaysWhatIsWrongAndWhatCanBeDone) {
    const StoreError full(StoreFailure::Full, "user.db: no room is left for it");
    for (const QSize size : {QSize(1280, 800), QSize(412, 892)}) {
        show(full, "pt", size.width(), size.height());
        shoot();
        EXPECT_THAT(texts(), Contains("A Ondavia não consegue abrir a tua biblioteca"));
        EXPECT_THAT(texts(), Contains("Não há espaço no disco. Liberta algum e tenta de novo."));
        EXPECT_THAT(texts(), Contains("user.db: no room is left for it"));
    }
    show(full, "en");
    EXPECT_THAT(texts(), Contains("There is no room on the disk. Free some and try again."));
}

TEST_F(FailureWindowTest, EveryFailureHasAnAdviceOfItsOwn) {
    std::set<std::string> advices;
    for (const StoreFailure kind : {StoreFailure::NewerSchema, StoreFailure::Damaged, StoreFailure::Full,
                                    StoreFailure::Busy, StoreFailure::Inaccessible, StoreFailure::Other}) {
        show(StoreError(kind, "detail"), "en");
        for (const std::string& text : texts()) {
            advices.insert(text);
        }
    }
    // Six, and title, detail, two buttons and the icon, which are the same each time.
    EXPECT_EQ(advices.size(), 11U);
}

TEST_F(FailureWindowTest, AFolderThatCannotBeMadeIsOneToo) {
    const std::filesystem::filesystem_error error("cannot create directories", "/nowhere/ondavia",
                                                  std::make_error_code(std::errc::permission_denied));
    show(error, "en");
    EXPECT_THAT(texts(), Contains(HasSubstr("Check its permissions")));
    EXPECT_THAT(texts(), Contains(HasSubstr("/nowhere/ondavia")));
}

TEST_F(FailureWindowTest, AQuotaThatIsUsedUpIsAFullDisk) {
    for (const int number : {ENOSPC, EDQUOT}) {
        show(std::system_error(number, std::generic_category(), "settings.json cannot be written"), "en");
        EXPECT_THAT(texts(), Contains("There is no room on the disk. Free some and try again.")) << number;
    }
}

TEST_F(FailureWindowTest, WhatIsNoFilesFailureDoesNotBlameTheLibrary) {
    show(std::runtime_error("no graphics for http://tv.example/live/ana/palavra/1"), "en");
    EXPECT_THAT(texts(), Contains("Ondavia cannot start"));
    EXPECT_THAT(texts(), ::testing::Not(Contains(HasSubstr("library"))));
    EXPECT_THAT(texts(), ::testing::Not(Contains(HasSubstr("palavra"))));
}

TEST_F(FailureWindowTest, OffersAnotherTry) {
    show(StoreError(StoreFailure::Busy, "user.db"), "pt");
    EXPECT_FALSE(failure->wantsRetry());
    click(QStringLiteral("Tentar novamente"));
    EXPECT_TRUE(failure->wantsRetry());
    EXPECT_FALSE(window->isVisible());
}

TEST_F(FailureWindowTest, CanBeLeft) {
    show(StoreError(StoreFailure::Busy, "user.db"), "pt");
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(failure->wantsRetry());
}

TEST_F(ScreensTest, AFullDiskIsToldAtTheStart) {
    const SmallFilesystem disk;
    if (!disk.isMounted()) {
        GTEST_SKIP() << SmallFilesystem::whyNotMounted;
    }
    LibraryStore::open(disk.path() / "store").reset();
    disk.fill();
    auto onDisk = LibraryStore::open(disk.path() / "store");
    std::swap(store, onDisk);
    show();
    EXPECT_EQ(appState.toastMessage(), "O disco está cheio. Nada de novo fica guardado.");
    screens.reset();
    std::swap(store, onDisk);
    onDisk.reset();
}

TEST_F(ScreensTest, ALossOfTheUsersRowsIsToldUntilItIsRead) {
    const auto path = folder.path() / "lost";
    {
        const auto sound = LibraryStore::open(path);
        sound->mainContext().insert(Favorite("main", "main_1"));
        sound->mainContext().save();
    }
    std::filesystem::resize_file(path / "user.db", 20000);
    auto other = LibraryStore::open(path);
    ASSERT_TRUE(other->openReport().isUserFileRestored);
    std::swap(store, other);
    show(1280, 800, "en");
    ASSERT_NE(find(QStringLiteral("There was a problem with your data")), nullptr);
    EXPECT_THAT(models->lossNotice().toStdString(), HasSubstr("was damaged"));
    screens.reset();
    for (const QSize size : {QSize(1280, 800), QSize(412, 892)}) {
        show(size.width(), size.height());
        shoot("loss");
        QQuickItem* notice = find(QStringLiteral("Houve um problema com os teus dados"));
        ASSERT_NE(notice, nullptr);
        const std::string message = notice->property("message").toString().toStdString();
        EXPECT_THAT(message, HasSubstr("estava danificado"));
        EXPECT_THAT(message, HasSubstr("Registos recuperados: 1 dele, 0 da cópia"));
        EXPECT_THAT(message, HasSubstr("user.db.damaged-"));
        EXPECT_EQ(focusName(), "Entendi");
        press(Qt::Key_Return);
        settle();
        EXPECT_EQ(find(QStringLiteral("Houve um problema com os teus dados")), nullptr);
        EXPECT_NE(focusName(), "Entendi");
        screens.reset();
    }
    std::swap(store, other);
}

TEST_F(ScreensTest, WithoutALossNothingIsTold) {
    show();
    EXPECT_EQ(find(QStringLiteral("Houve um problema com os teus dados")), nullptr);
}

} // namespace
} // namespace ondavia::testing
