#include "screens/ScreensWindow.h"

#include "screens/browse/BrowserViewModel.h"

#include <QDateTime>
#include <QPointingDevice>
#include <QWheelEvent>

namespace ondavia::testing {
namespace {

/// Films in more categories than a window shows, with more titles than a row shows.
class CarouselTest : public ScreensTest, public ::testing::WithParamInterface<QSize> {
protected:
    static constexpr int categories = 40;
    static constexpr int films = 20;

    static std::string category(int number) { return "Género " + std::to_string(number); }
    static std::string film(int of, int number) {
        return "Filme " + std::to_string(of) + "." + std::to_string(number);
    }
    static std::vector<std::string> categoryNames() {
        std::vector<std::string> names;
        for (int number = 1; number <= categories; ++number) {
            names.push_back(category(number));
        }
        return names;
    }
    std::vector<Channel> manyFilms(int perCategory = films) {
        std::vector<Channel> rows;
        for (int of = 1; of <= categories; ++of) {
            for (int number = 1; number <= perCategory; ++number) {
                rows.push_back(title(of * 1000 + number, "movie", category(of), film(of, number)));
            }
        }
        return rows;
    }
    void openFilms() {
        fill(manyFilms());
        appState.setVodCategories(categoryItems(categoryNames()));
        appState.setSelectedTab(AppTab::movies);
        show(GetParam().width(), GetParam().height());
        ASSERT_NE(list(), nullptr);
        ASSERT_TRUE(waitUntil([this] { return !models->movies()->isLoading(); }));
        // The frame of the focus is shown from now on.
        press(Qt::Key_Shift);
        list()->forceActiveFocus();
        settle();
    }
    QQuickItem* list() { return named("movieCarousels"); }
    double scrolled() { return list()->property("contentY").toDouble(); }
    void expectFocus(const std::string& name) {
        settle();
        EXPECT_EQ(focusName(), name);
        const QRectF item = sceneRect(*window->activeFocusItem());
        const QRectF page = sceneRect(*list());
        EXPECT_TRUE(page.adjusted(-1, -1, 1, 1).contains(item))
            << name << " is not seen whole: " << item.x() << ", " << item.y() << " of " << item.width()
            << " by " << item.height();
    }
    void wheel(QPoint notch) { wheel(notch, sceneRect(*list()).center(), Qt::NoModifier); }
    void wheel(QPoint notch, QPointF place, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event(place, window->mapToGlobal(place), {}, notch, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        event.setTimestamp(static_cast<quint64>(QDateTime::currentMSecsSinceEpoch()));
        QCoreApplication::sendEvent(window, &event);
        drainEvents();
    }
    /// The cards that the window holds, in sight or not.
    int cards() {
        int found = 0;
        collect(*window->contentItem(), [&](QQuickItem& item) {
            found += QByteArray(item.metaObject()->className()).startsWith("ContentCardView");
        });
        return found;
    }
    void fling(QPointF by) {
        const QPointF from = sceneRect(*list()).center();
        auto* device = QTest::createTouchDevice();
        QTest::touchEvent(window, device).press(0, from.toPoint(), window);
        constexpr int steps = 8;
        for (int step = 1; step <= steps; ++step) {
            QTest::touchEvent(window, device).move(0, (from + by * step / steps).toPoint(), window);
            drainEvents();
        }
        QTest::touchEvent(window, device).release(0, (from + by).toPoint(), window);
        settle();
    }
    /// The uppermost whose cards are seen whole.
    QQuickItem* firstCarousel() {
        QQuickItem* found = nullptr;
        const double top = sceneRect(*list()).top();
        const auto placeOf = [](const QQuickItem& item) { return sceneRect(item).top(); };
        collect(*list(), [&](QQuickItem& item) {
            const bool isRow = item.objectName() == QStringLiteral("carousel") && placeOf(item) >= top;
            found = isRow && (found == nullptr || placeOf(item) < placeOf(*found)) ? &item : found;
        });
        return found;
    }
};

TEST_P(CarouselTest, MakesOnlyTheCardsInSight) {
    openFilms();
    EXPECT_GT(cards(), 3);
    EXPECT_LT(cards(), 60) << "of 600 in its rows";
    shoot("carousels");
}

TEST_P(CarouselTest, ArrowsLeadThroughARowAndFromRowToRowBelowEachOther) {
    openFilms();
    expectFocus("Filme 1.1");
    press(Qt::Key_Right);
    expectFocus("Filme 1.2");
    press(Qt::Key_Down);
    expectFocus("Filme 2.2");
    press(Qt::Key_Down);
    expectFocus("Filme 3.2");
    press(Qt::Key_Left);
    expectFocus("Filme 3.1");
    press(Qt::Key_Up);
    expectFocus("Filme 2.1");
    press(Qt::Key_Up);
    expectFocus("Filme 1.1");
    shoot("carousels-focus");
}

TEST_P(CarouselTest, TheColumnIsTheOneThatIsSeen) {
    openFilms();
    for (int step = 0; step < 9; ++step) {
        press(Qt::Key_Right);
    }
    expectFocus("Filme 1.10");
    const double place = sceneRect(*window->activeFocusItem()).x();
    press(Qt::Key_Down);
    settle();
    const QRectF below = sceneRect(*window->activeFocusItem());
    EXPECT_NEAR(below.x(), place, below.width()) << focusName();
    press(Qt::Key_Up);
    expectFocus("Filme 1.10");
}

TEST_P(CarouselTest, HomeEndAndPageKeysReachTheEnds) {
    openFilms();
    press(Qt::Key_End);
    expectFocus("Filme 1.15");
    press(Qt::Key_End);
    settle();
    EXPECT_TRUE(focusName().starts_with("Filme 40.")) << focusName();
    press(Qt::Key_Home);
    expectFocus("Filme 40.1");
    press(Qt::Key_Home);
    settle();
    EXPECT_TRUE(focusName().starts_with("Filme 1.")) << focusName();
    press(Qt::Key_Home);
    expectFocus("Filme 1.1");
    press(Qt::Key_PageDown);
    settle();
    const std::string down = focusName();
    EXPECT_NE(down, "Filme 1.1");
    expectFocus(down);
    press(Qt::Key_PageUp);
    expectFocus("Filme 1.1");
}

TEST_P(CarouselTest, TheHeaderIsReachedAfterTheLastCardAndAboveTheFirstRow) {
    openFilms();
    press(Qt::Key_Down);
    press(Qt::Key_End);
    press(Qt::Key_Right);
    expectFocus("Género 2");
    press(Qt::Key_Down);
    expectFocus("Filme 2.15");
    press(Qt::Key_Up);
    press(Qt::Key_Home);
    press(Qt::Key_Up);
    expectFocus("Género 1");
    press(Qt::Key_Up);
    EXPECT_EQ(focusName(), "Pesquisar");
    press(Qt::Key_Down);
    expectFocus("Género 1");
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(focusName(), "Filme 1.1");
    EXPECT_NE(named("movieGrid"), nullptr);
}

TEST_P(CarouselTest, AnArrowThatIsHeldDownGoesOnRowByRow) {
    openFilms();
    for (int row = 1; row < 12; ++row) {
        QTest::keyClick(window, Qt::Key_Down);
    }
    expectFocus("Filme 12.1");
    for (int card = 1; card < 12; ++card) {
        QTest::keyClick(window, Qt::Key_Right);
    }
    expectFocus("Filme 12.12");
}

TEST_P(CarouselTest, AHeaderOpensAllTitlesAndBackLeadsToItsRow) {
    openFilms();
    for (int row = 1; row < 6; ++row) {
        press(Qt::Key_Down);
    }
    expectFocus("Filme 6.1");
    const double place = scrolled();
    click("Género 6");
    QQuickItem* grid = named("movieGrid");
    ASSERT_NE(grid, nullptr);
    EXPECT_EQ(grid->property("count").toInt(), films);
    EXPECT_EQ(grid->property("gap").toInt(), 14);
    EXPECT_EQ(accessibleName(*grid).toStdString(), "Género 6");
    EXPECT_EQ(focusName(), "Filme 6.1");
    press(Qt::Key_End);
    settle();
    EXPECT_EQ(focusName(), "Filme 6.20");
    shoot("category-grid");
    press(Qt::Key_Backspace);
    settle();
    EXPECT_EQ(scrolled(), place);
    EXPECT_EQ(focusName(), "Género 6");
    press(Qt::Key_Down);
    expectFocus("Filme 6.1");
}

TEST_P(CarouselTest, BackFromATitleLeadsToItsCard) {
    openFilms();
    for (const auto key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right,
                           Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right}) {
        press(key);
    }
    expectFocus("Filme 3.8");
    const std::vector<QPointF> places = scrolledPlaces();
    press(Qt::Key_Return);
    settle();
    EXPECT_NE(named("detailPlay"), nullptr);
    press(Qt::Key_Escape);
    expectFocus("Filme 3.8");
    EXPECT_EQ(scrolledPlaces(), places);
    press(Qt::Key_Right);
    expectFocus("Filme 3.9");
}

TEST_P(CarouselTest, BackFromATitleOfAGridLeadsToItsCard) {
    openFilms();
    click("Género 1");
    press(Qt::Key_PageDown);
    settle();
    const std::string card = focusName();
    const std::vector<QPointF> places = scrolledPlaces();
    press(Qt::Key_Return);
    settle();
    ASSERT_NE(named("detailPlay"), nullptr);
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(focusName(), card);
    EXPECT_EQ(scrolledPlaces(), places);
    press(Qt::Key_Escape);
    settle();
    EXPECT_NE(list(), nullptr);
}

TEST_P(CarouselTest, ATapOpensATitleAndBackLeadsToIt) {
    openFilms();
    QQuickItem* card = find(QStringLiteral("Filme 1.2"));
    ASSERT_NE(card, nullptr);
    const QPoint place = sceneRect(*card).center().toPoint();
    auto* device = QTest::createTouchDevice();
    QTest::touchEvent(window, device).press(0, place, window);
    QTest::touchEvent(window, device).release(0, place, window);
    settle();
    ASSERT_NE(named("detailPlay"), nullptr);
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(focusName(), "Filme 1.2");
}

TEST_P(CarouselTest, AFingerMovesARowSidewaysAndThePageDown) {
    openFilms();
    QQuickItem* row = firstCarousel();
    ASSERT_NE(row, nullptr);
    // In the middle of a row, wherever that is.
    const double start = row->property("contentX").toDouble();
    const QPointF from = sceneRect(*find(QStringLiteral("Filme 1.2"))).center();
    auto* device = QTest::createTouchDevice();
    QTest::touchEvent(window, device).press(0, from.toPoint(), window);
    for (int step = 1; step <= 10; ++step) {
        QTest::touchEvent(window, device).move(0, (from - QPointF(step * 14, 0)).toPoint(), window);
        drainEvents();
    }
    QTest::touchEvent(window, device).release(0, (from - QPointF(140, 0)).toPoint(), window);
    settle();
    EXPECT_GT(row->property("contentX").toDouble(), start + 60);
    EXPECT_EQ(scrolled(), 0);
    EXPECT_EQ(named("detailPlay"), nullptr) << "no card took it for a tap";
    fling(QPointF(0, -200));
    EXPECT_GT(scrolled(), 100);
}

TEST_P(CarouselTest, TheWheelMovesThePageAndWithShiftARow) {
    openFilms();
    EXPECT_TRUE(waitUntil([this] {
        wheel({0, -120});
        settle();
        return scrolled() > 50;
    }));
    EXPECT_TRUE(waitUntil([this] {
        wheel({0, 120});
        settle();
        return scrolled() <= 0;
    }));
    const auto moved = [this] {
        bool isMoved = false;
        collect(*list(), [&](QQuickItem& item) {
            const bool isRow = item.objectName() == QStringLiteral("carousel");
            isMoved = isMoved || (isRow && item.property("contentX").toDouble() > 60);
        });
        return isMoved;
    };
    EXPECT_FALSE(moved());
    for (int notch = 0; notch < 3; ++notch) {
        wheel({0, -120}, sceneRect(*find(QStringLiteral("Género 1"))).bottomLeft() + QPointF(30, 60),
              Qt::ShiftModifier);
    }
    EXPECT_TRUE(moved());
    EXPECT_EQ(scrolled(), 0);
}

TEST_P(CarouselTest, AfterTheWheelAnArrowGoesToACardInSight) {
    openFilms();
    EXPECT_TRUE(waitUntil([this] {
        for (int notch = 0; notch < 10; ++notch) {
            wheel({0, -120});
        }
        settle();
        return scrolled() > 3 * list()->height();
    }));
    const double place = scrolled();
    press(Qt::Key_Down);
    settle();
    EXPECT_TRUE(focusName().starts_with("Filme ")) << focusName();
    EXPECT_NE(focusName(), "Filme 1.1");
    EXPECT_NEAR(scrolled(), place, list()->height());
    expectFocus(focusName());
}

TEST_P(CarouselTest, ARowThatComesBackStandsWhereItWasLeft) {
    openFilms();
    press(Qt::Key_End);
    expectFocus("Filme 1.15");
    const double place = firstCarousel()->property("contentX").toDouble();
    // Its row is used by others meanwhile.
    for (int page = 0; page < 8; ++page) {
        press(Qt::Key_PageDown);
    }
    settle();
    ASSERT_EQ(find(QStringLiteral("Filme 1.15")), nullptr);
    for (int page = 0; page < 8; ++page) {
        press(Qt::Key_PageUp);
    }
    settle();
    EXPECT_TRUE(focusName().starts_with("Filme 1.")) << focusName();
    EXPECT_NEAR(firstCarousel()->property("contentX").toDouble(), place, 1);
}

TEST_P(CarouselTest, ASynchronisationShowsItsRowsWithoutLosingThePlace) {
    openFilms();
    for (int row = 1; row < 8; ++row) {
        press(Qt::Key_Down);
    }
    press(Qt::Key_Right);
    expectFocus("Filme 8.2");
    const double place = scrolled();
    std::vector<Channel> next = manyFilms(12);
    next.push_back(title(1, "movie", category(8), "O Novo"));
    auto replacement = store->beginReplacement<Channel>();
    replacement.append(0, next);
    replacement.commit();
    ASSERT_TRUE(waitUntil([this] { return find(QStringLiteral("O Novo")) != nullptr; }));
    settle();
    EXPECT_EQ(scrolled(), place);
    EXPECT_EQ(focusName(), "Filme 8.1") << "the card beside the new first one";
    press(Qt::Key_Left);
    expectFocus("O Novo");
}

TEST_P(CarouselTest, SaysThatItLoadsUntilTheCatalogueIsRead) {
    fill(manyFilms());
    appState.setVodCategories(categoryItems(categoryNames()));
    show(GetParam().width(), GetParam().height());
    const std::vector<std::pair<AppTab, const char*>> tabs{{AppTab::movies, "A carregar filmes..."},
                                                           {AppTab::series, "A carregar series..."},
                                                           {AppTab::live, "A carregar canais..."}};
    const std::vector<CatalogueBrowser*> browsers{models->movies(), models->series(), models->live()};
    for (std::size_t index = 0; index < tabs.size(); ++index) {
        const QString text = QString::fromUtf8(tabs[index].second);
        appState.setSelectedTab(tabs[index].first);
        ASSERT_TRUE(waitUntil([&] { return !browsers[index]->isLoading(); }));
        EXPECT_EQ(find(text), nullptr);
        browsers[index]->setIsLoading(true);
        EXPECT_NE(find(text), nullptr) << tabs[index].second;
        EXPECT_EQ(list(), nullptr);
        EXPECT_EQ(named("liveCategories"), nullptr);
        browsers[index]->setIsLoading(false);
        EXPECT_EQ(find(text), nullptr);
    }
}

TEST_P(CarouselTest, AnEmptyCatalogueShowsNoRowsAndNoMessage) {
    show(GetParam().width(), GetParam().height());
    for (const AppTab tab : {AppTab::movies, AppTab::series, AppTab::live}) {
        appState.setSelectedTab(tab);
        settle();
        std::vector<std::string> said;
        collect(*window->contentItem(), [&](QQuickItem& item) {
            if (item.property("plainText").isValid() || item.inherits("QQuickText")) {
                const bool isIcon = item.property("symbol").isValid();
                const std::string text =
                    isIcon ? std::string() : item.property("text").toString().toStdString();
                said.push_back(text);
            }
        });
        std::erase(said, "");
        EXPECT_THAT(said, ::testing::SizeIs(6)) << "the names of the tabs and of the page";
        shoot("empty-" + std::to_string(static_cast<int>(tab)));
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, CarouselTest,
                         ::testing::Values(QSize(1280, 800), QSize(412, 892), QSize(1000, 480)));

class WideCarouselTest : public CarouselTest {};

TEST_P(WideCarouselTest, LeftInTheFirstColumnGoesToTheRailAndRightComesBack) {
    openFilms();
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    expectFocus("Filme 2.1");
    press(Qt::Key_Left);
    EXPECT_LT(sceneRect(*window->activeFocusItem()).right(), 100) << focusName();
    press(Qt::Key_Right);
    expectFocus("Filme 2.1");
}

INSTANTIATE_TEST_SUITE_P(Sizes, WideCarouselTest, ::testing::Values(QSize(1280, 800)));

/// With pictures; for the eye, and for Qt's complaints.
class BrowserLookTest : public ScreensTest, public ::testing::WithParamInterface<QSize> {};

TEST_P(BrowserLookTest, DrawsWithoutAWarning) {
    signInWithCatalogue();
    auto channels = store->mainContext().fetch<Channel>({.where = field(&Channel::type) == "live"});
    const Date now = currentDate();
    for (Channel& channel : channels) {
        channel.epgChannelId = channel.id;
        store->mainContext().insert(channel);
        if (channel.num % 3 != 0) {
            store->mainContext().insert(EPGProgram{channel.id,
                                                   channel.id,
                                                   "Jornal da Tarde, com os Enviados Especiais às Ilhas",
                                                   {},
                                                   now - std::chrono::minutes(5),
                                                   now + std::chrono::hours(1),
                                                   {}});
        }
    }
    store->mainContext().save();
    show(GetParam().width(), GetParam().height());
    appState.setSelectedTab(AppTab::movies);
    ASSERT_TRUE(waitUntil([this] { return posters.served() > 8; }));
    shoot("look-carousels");
    press(Qt::Key_Shift);
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    shoot("look-carousels-focus");
    press(Qt::Key_End);
    press(Qt::Key_Right);
    shoot("look-carousels-header");
    press(Qt::Key_Return);
    settle();
    press(Qt::Key_Down);
    ASSERT_TRUE(waitUntil([this] { return posters.served() > 16; }));
    shoot("look-category");
    appState.setSelectedTab(AppTab::live);
    shoot("look-live");
    click("Desporto, 23");
    press(Qt::Key_Down);
    shoot("look-live-channels");
    models->movies()->setIsLoading(true);
    appState.setSelectedTab(AppTab::movies);
    press(Qt::Key_Escape);
    appState.setSelectedTab(AppTab::movies);
    settle();
    shoot("look-loading");
    EXPECT_THAT(messages, ::testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sizes, BrowserLookTest, ::testing::Values(QSize(1280, 800), QSize(412, 892)));

class LiveBrowserWindowTest : public ScreensTest {};

TEST_F(LiveBrowserWindowTest, AChannelShowsItsProgrammeAndThatItIsLive) {
    Channel first = title(1, "live", "Desporto", "Desporto 1");
    first.epgChannelId = "d1";
    fill({first, title(2, "live", "Desporto", "Desporto 2")});
    const Date now = currentDate();
    store->mainContext().insert(EPGProgram{
        "p", "d1", "Jogo da Jornada", {}, now - std::chrono::minutes(5), now + std::chrono::hours(1), {}});
    store->mainContext().save();
    appState.setLiveCategories(categoryItems({"Desporto", "Vazia"}));
    appState.setSelectedTab(AppTab::live);
    show();
    click("Desporto, 2");
    const auto shown = [this](const char* text) {
        int found = 0;
        collect(*window->contentItem(), [&](QQuickItem& item) {
            found +=
                item.inherits("QQuickText") && item.property("text").toString() == QString::fromUtf8(text);
        });
        return found;
    };
    EXPECT_TRUE(waitUntil([&] { return shown("Jogo da Jornada") == 1; }));
    EXPECT_EQ(shown("AO VIVO"), 2);
    press(Qt::Key_Escape);
    settle();
    click("Vazia");
    EXPECT_EQ(named("liveChannels")->property("count").toInt(), 0);
}

TEST_F(LiveBrowserWindowTest, BackFromAPlayerLeadsToTheChannel) {
    std::vector<Channel> rows;
    for (int number = 1; number <= 200; ++number) {
        rows.push_back(title(number, "live", "Desporto", "Canal " + std::to_string(number)));
    }
    fill(rows);
    appState.setLiveCategories(categoryItems({"Desporto"}));
    appState.setSelectedTab(AppTab::live);
    show();
    click("Desporto, 200");
    press(Qt::Key_PageDown);
    press(Qt::Key_PageDown);
    settle();
    const std::string channel = focusName();
    const double place = named("liveChannels")->property("contentY").toDouble();
    EXPECT_GT(place, 0);
    press(Qt::Key_Return);
    settle();
    ASSERT_TRUE(appState.isPlaying());
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(focusName(), channel);
    EXPECT_EQ(named("liveChannels")->property("contentY").toDouble(), place);
}

} // namespace
} // namespace ondavia::testing
