#pragma once

#include "protocol/XtreamAPIClient.h"
#include "screens/ScreensWindow.h"
#include "screens/liveplayer/LivePlayerViewModel.h"

namespace ondavia::testing {

/// The live player in the window, over an engine that writes down what it is told.
class LivePlayerWindowTest : public ScreensTest {
protected:
    /// Through the browser, as a viewer comes.
    void openChannel(int width = 1280, int height = 800, const std::string& language = "pt") {
        signInWithCatalogue();
        appState.setPassword("s3cr3t-word");
        keepArchive();
        keepProgramme();
        defaults.setDate("ondavia_last_epg_load", currentDate());
        show(width, height, language);
        models->content()->setSelectedTab(ContentViewModel::Live);
        settle();
        click("Desporto, 23");
        click("Desporto HD 1");
        run();
        settle();
    }
    void run() {
        scheduler.runPending();
        playerManager.setIsBuffering(false);
        playerManager.setIsPlaying(true);
        drainEvents();
    }
    /// Of the first channel: three days of archive, and a programme of each day.
    void keepArchive() {
        Channel first = stored("Desporto HD 1");
        first.tvArchive = true;
        first.tvArchiveDuration = 3;
        first.epgChannelId = "desporto.1";
        store->mainContext().insert(first);
        const Date noon = std::chrono::floor<std::chrono::days>(currentDate()) + std::chrono::hours(12);
        for (int day = 0; day < 3; ++day) {
            const Date start = noon - std::chrono::days(day);
            store->mainContext().insert(EPGProgram{"p-" + std::to_string(day), "desporto.1",
                                                   "A Grande Noite " + std::to_string(day), std::nullopt,
                                                   start, start + std::chrono::minutes(90), std::nullopt});
        }
        store->mainContext().save();
    }
    /// Of the third channel: what is on now.
    void keepProgramme() {
        Channel third = stored("Desporto HD 3");
        third.epgChannelId = "desporto.3";
        store->mainContext().insert(third);
        store->mainContext().insert(EPGProgram{"p-now", "desporto.3", "A Grande Tarde", std::nullopt,
                                               currentDate() - std::chrono::hours(1),
                                               currentDate() + std::chrono::hours(1), std::nullopt});
        store->mainContext().save();
    }
    [[nodiscard]] Channel stored(const std::string& name) {
        return *store->mainContext().fetchFirst<Channel>({.where = field(&Channel::name) == name});
    }
    [[nodiscard]] LivePlayerViewModel& player() {
        return dynamic_cast<LivePlayerViewModel&>(*models->player()->player());
    }
    [[nodiscard]] std::string onAir() { return player().currentChannel().name; }
    /// The rows of the list that say that they are on air.
    [[nodiscard]] std::vector<std::string> markedChannels() {
        std::vector<std::string> names;
        collect(*window->contentItem(), [&names](QQuickItem& item) {
            if (isOf(item, "LiveChannelRow") && item.property("isOnAir").toBool()) {
                names.push_back(accessibleName(item).toStdString());
            }
        });
        return names;
    }
    /// The categories that a check mark stands beside.
    [[nodiscard]] std::vector<std::string> tickedCategories() {
        std::vector<std::string> names;
        collect(*window->contentItem(), [&names](QQuickItem& item) {
            if (item.property("countText").isValid() && findIcon(item, "checkmark") != nullptr) {
                names.push_back(accessibleName(item).toStdString());
            }
        });
        return names;
    }
    [[nodiscard]] QString symbolOf(const char* accessible) {
        const QQuickItem* button = find(QString::fromUtf8(accessible));
        return button != nullptr ? button->property("symbol").toString() : QString();
    }
    /// Nothing of the message lies below the buttons beside it, and these lie in the picture.
    void expectRoomForTheMessage() {
        std::vector<QRectF> message;
        for (const auto* text : {"Não foi possível reproduzir", "Erro de reproducao"}) {
            QQuickItem* label = findLabel(*window->contentItem(), QString::fromUtf8(text));
            ASSERT_NE(label, nullptr);
            message.push_back(sceneRect(*label));
        }
        QQuickItem* retry = find(QStringLiteral("Tentar novamente"));
        ASSERT_NE(retry, nullptr);
        message.push_back(sceneRect(*retry));
        for (const auto* name : {"Canal anterior", "Canal seguinte"}) {
            QQuickItem* button = find(QString::fromUtf8(name));
            ASSERT_NE(button, nullptr) << name;
            EXPECT_TRUE(stage().contains(sceneRect(*button))) << name;
            for (const QRectF& part : message) {
                EXPECT_FALSE(part.intersects(sceneRect(*button))) << name;
            }
        }
    }
    [[nodiscard]] QRectF stage() { return sceneRect(*named("stage")); }
    /// A pointer over the picture brings the controls.
    void wake() {
        const QPoint middle = stage().center().toPoint();
        QTest::mouseMove(window, middle);
        QTest::mouseMove(window, middle + QPoint(30, 20));
        drainEvents();
        settle();
    }
    /// A key that stands for no character.
    void pressRemote(Qt::Key key) {
        QTest::sendKeyEvent(QTest::Click, window, key, QString(), Qt::NoModifier);
        drainEvents();
    }
    void tap(QPoint place) {
        QTest::touchEvent(window, m_screen.get()).press(0, place, window);
        QTest::touchEvent(window, m_screen.get()).release(0, place, window);
        drainEvents();
    }
    [[nodiscard]] std::string lastPlayed() {
        const auto created =
            std::ranges::find_if(journal.rbegin(), journal.rend(),
                                 [](const std::string& line) { return line.starts_with("create "); });
        return created != journal.rend() ? created->substr(7) : std::string();
    }

private:
    std::unique_ptr<QPointingDevice> m_screen{QTest::createTouchDevice()};
};

} // namespace ondavia::testing
