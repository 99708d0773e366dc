#include "screens/shell/DetailPages.h"

#include "DetailFixture.h"
#include "screens/browse/BrowserViewModel.h"

#include <QPointer>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

class DetailPagesTest : public DetailFixture {
protected:
    DetailPages pages{detailServices()};
    /// What a page is shown in.
    QObject stack;
    std::vector<QPointer<DetailViewModel>> opened;

    void show() {
        QObject::connect(&pages, &DetailPages::opened, &stack, [this](DetailViewModel* model) {
            opened.emplace_back(model);
            model->belongTo(new QObject(&stack));
        });
    }
};

TEST_F(DetailPagesTest, AModelGoesWithItsPage) {
    show();
    pages.open(title(7, "movie", "Drama", "Uma Longa Noite"));
    ASSERT_EQ(opened.size(), 1U);
    ASSERT_NE(opened[0], nullptr);
    EXPECT_EQ(opened[0]->title(), QStringLiteral("Uma Longa Noite"));
    EXPECT_FALSE(opened[0]->isSeries());
    delete opened[0]->parent();
    EXPECT_EQ(opened[0], nullptr);
}

TEST_F(DetailPagesTest, ASeriesHasAPageOfItsKind) {
    show();
    pages.open(title(70, "series", "Drama", "O Faroleiro"));
    ASSERT_EQ(opened.size(), 1U);
    EXPECT_TRUE(opened[0]->isSeries());
}

TEST_F(DetailPagesTest, WhatNobodyShowsGoesAtOnce) {
    QPointer<DetailViewModel> seen;
    QObject::connect(&pages, &DetailPages::opened, &stack, [&](DetailViewModel* model) { seen = model; });
    pages.open(title(7, "movie", "Drama", "Uma Longa Noite"));
    EXPECT_EQ(seen, nullptr);
}

TEST_F(DetailPagesTest, AnotherAccountHasOtherPages) {
    int outdated = 0;
    QObject::connect(&pages, &DetailPages::allOutdated, &stack, [&] { ++outdated; });
    appState.saveCredentials("http://tv.example", "ana", "word");
    EXPECT_EQ(outdated, 1);
    appState.saveCredentials("http://tv.example", "ana", "word");
    EXPECT_EQ(outdated, 1) << "the same one";
    appState.logout();
    EXPECT_EQ(outdated, 2);
}

TEST_F(DetailPagesTest, ABrowserLeadsToTheTitleOfARow) {
    std::vector<std::string> led;
    BrowserViewModel browser(BrowserKind::Series, appState, *store, catalogue,
                             [&](const Channel& title) { led.push_back(title.name); });
    Channel series = title(70, "series", "Drama", "O Faroleiro");
    fill({series, title(7, "movie", "Drama", "Uma Longa Noite"), title(71, "series", "Drama", "A Ilha")});
    appState.setSeriesCategories(categoryItems({"Vazia", "Drama"}));
    browser.appear();
    ASSERT_TRUE(waitUntil([&] { return !browser.isLoading(); }));
    browser.openCategory(0);
    ASSERT_EQ(browser.titles()->rowCount(), 2) << "the category that has titles is open";
    browser.open(1);
    browser.open(2);
    browser.open(-1);
    EXPECT_THAT(led, ElementsAre("A Ilha"));
    EXPECT_FALSE(appState.isPlaying());
}

} // namespace
} // namespace ondavia::testing
