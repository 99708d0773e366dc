// The bar below the live player's picture.
#include "LivePlayerWindow.h"
#include "screens/pictures/PictureProvider.h"

namespace ondavia::testing {
namespace {

class ChannelInfoBarTest : public LivePlayerWindowTest {
protected:
    [[nodiscard]] QQuickItem& bar() { return *findType(*window->contentItem(), "ChannelInfoBar"); }
    [[nodiscard]] bool reads(const char* text) {
        return findLabel(bar(), QString::fromUtf8(text)) != nullptr;
    }
    [[nodiscard]] QUrl logo() { return findType(bar(), "PictureView")->property("source").toUrl(); }
    /// Of its labels.
    [[nodiscard]] int count() {
        int labels = 0;
        collect(bar(), [&labels](QQuickItem& item) { labels += isLabel(item); });
        return labels;
    }
};

TEST_F(ChannelInfoBarTest, NamesTheChannelAndWhatItShowsNow) {
    openChannel();
    click("Desporto HD 3");
    EXPECT_TRUE(reads("Desporto HD 3"));
    EXPECT_TRUE(reads("AO VIVO"));
    EXPECT_TRUE(reads("A Grande Tarde"));
    const int labels = count();
    ASSERT_TRUE(stored("Desporto HD 3").logo);
    EXPECT_EQ(logo(), pictureUrl(stored("Desporto HD 3").logo));
    click("Desporto HD 2");
    EXPECT_TRUE(reads("Desporto HD 2"));
    EXPECT_TRUE(reads("AO VIVO"));
    EXPECT_EQ(count(), labels - 1) << "where the guide knows of nothing, nothing is said";
    EXPECT_EQ(logo(), pictureUrl(stored("Desporto HD 2").logo));
}

TEST_F(ChannelInfoBarTest, ItsMarkIsTheSameInEveryLanguage) {
    openChannel(1280, 800, "en");
    EXPECT_TRUE(reads("AO VIVO"));
}

TEST_F(ChannelInfoBarTest, WaitsInThePlaceOfItsButtonWhileTheGuideIsLoaded) {
    openChannel();
    EXPECT_NE(find(QStringLiteral("EPG")), nullptr);
    EXPECT_EQ(findType(bar(), "Spinner"), nullptr);
    player().setIsLoadingEPG(true);
    drainEvents();
    EXPECT_EQ(find(QStringLiteral("EPG")), nullptr);
    const QQuickItem* spinner = findType(bar(), "Spinner");
    ASSERT_NE(spinner, nullptr);
    EXPECT_TRUE(spinner->property("running").toBool());
    player().setIsLoadingEPG(false);
    drainEvents();
    EXPECT_NE(find(QStringLiteral("EPG")), nullptr);
    EXPECT_EQ(findType(bar(), "Spinner"), nullptr);
}

} // namespace
} // namespace ondavia::testing
