// Numbers that are typed, and what the other keys do.
#include "LivePlayerFixture.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

class LiveKeysTest : public LivePlayerFixture {
protected:
    void SetUp() override {
        keepGuideFresh();
        fill({channel(41, "Música")});
        open(1);
    }
    bool press(int key, bool again = false) { return player().keys()->press(key, again); }
    [[nodiscard]] std::string onAir() { return player().currentChannel().id; }
};

TEST_F(LiveKeysTest, DigitsGoToTheChannelOfTheirNumberTwoSecondsAfterTheLast) {
    press(Qt::Key_4);
    EXPECT_EQ(player().number()->digits(), QStringLiteral("4"));
    EXPECT_EQ(player().number()->channelName(), QStringLiteral("Canal 4"));
    scheduler.advance(1.9);
    press(Qt::Key_1);
    EXPECT_EQ(player().number()->digits(), QStringLiteral("41"));
    scheduler.advance(1.9);
    EXPECT_EQ(onAir(), "main_1");
    scheduler.advance(0.2);
    EXPECT_EQ(onAir(), "main_41");
    EXPECT_EQ(player().selectedCategory(), "Música") << "or the next zap leads somewhere else";
    EXPECT_FALSE(player().number()->isTyping());
    EXPECT_EQ(plays(4), 0);
}

TEST_F(LiveKeysTest, DigitsFurtherApartAreTwoNumbers) {
    press(Qt::Key_4);
    scheduler.advance(2.1);
    EXPECT_EQ(onAir(), "main_4");
    press(Qt::Key_2);
    scheduler.advance(2.1);
    EXPECT_EQ(onAir(), "main_2");
}

TEST_F(LiveKeysTest, ANumberWithoutAChannelChangesNothing) {
    press(Qt::Key_7);
    EXPECT_EQ(player().number()->channelName(), QString());
    journal.clear();
    scheduler.advance(2.1);
    EXPECT_FALSE(player().number()->isTyping());
    EXPECT_EQ(onAir(), "main_1");
    EXPECT_EQ(plays(7), 0);
}

TEST_F(LiveKeysTest, LeadingZerosCountForNothingAndTooManyDigitsAreNotTaken) {
    press(Qt::Key_0);
    press(Qt::Key_0);
    press(Qt::Key_3);
    EXPECT_EQ(player().number()->channelName(), QStringLiteral("Canal 3"));
    for (int digit = 0; digit < 30; ++digit) {
        press(Qt::Key_9);
    }
    EXPECT_EQ(player().number()->digits(), QStringLiteral("003999999"));
    player().number()->cancel();
    scheduler.advance(3);
    EXPECT_EQ(onAir(), "main_1");
}

TEST_F(LiveKeysTest, ANumberHoldsAtOnceWhenConfirmed) {
    press(Qt::Key_5);
    player().number()->confirm();
    EXPECT_EQ(onAir(), "main_5");
    scheduler.advance(3);
    EXPECT_EQ(plays(5), 1);
}

TEST_F(LiveKeysTest, BackspaceReturnsToTheChannelBefore) {
    journal.clear();
    EXPECT_TRUE(press(Qt::Key_Backspace));
    EXPECT_TRUE(journal.empty()) << "there was none before the first one";
    press(Qt::Key_5);
    player().number()->confirm();
    press(Qt::Key_Backspace);
    EXPECT_EQ(onAir(), "main_1");
    EXPECT_EQ(player().selectedCategory(), "Notícias");
    press(Qt::Key_Backspace);
    EXPECT_EQ(onAir(), "main_5") << "back and forth";
}

TEST_F(LiveKeysTest, AChannelThatBeginsAnewIsNotTheOneBefore) {
    player().switchToNextChannel();
    player().chooseChannel(1);
    EXPECT_EQ(plays(2), 2);
    press(Qt::Key_Backspace);
    EXPECT_EQ(onAir(), "main_1");
}

TEST_F(LiveKeysTest, ZapWithThePageAndTheChannelKeys) {
    press(Qt::Key_PageUp);
    EXPECT_EQ(onAir(), "main_2");
    press(Qt::Key_ChannelUp);
    EXPECT_EQ(onAir(), "main_3");
    press(Qt::Key_ChannelDown);
    press(Qt::Key_PageDown);
    EXPECT_EQ(onAir(), "main_1");
    EXPECT_TRUE(press(Qt::Key_PageUp, true));
    EXPECT_EQ(onAir(), "main_1") << "a key held down does not race through the list";
}

TEST_F(LiveKeysTest, AnotherZapForgetsTheNumberThatIsBeingTyped) {
    press(Qt::Key_4);
    press(Qt::Key_PageUp);
    EXPECT_EQ(onAir(), "main_2");
    scheduler.advance(2.1);
    EXPECT_EQ(onAir(), "main_2");
    press(Qt::Key_4);
    press(Qt::Key_Backspace);
    scheduler.advance(2.1);
    EXPECT_EQ(onAir(), "main_1");
}

TEST_F(LiveKeysTest, BelowASheetOnlyThoseWorkThatMeanTheSameThere) {
    press(Qt::Key_S);
    ASSERT_TRUE(player().showSettings());
    for (const int key : {Qt::Key_4, Qt::Key_PageUp, Qt::Key_Backspace, Qt::Key_G, Qt::Key_L, Qt::Key_Up}) {
        EXPECT_FALSE(press(key)) << key;
    }
    scheduler.advance(2.1);
    EXPECT_EQ(onAir(), "main_1");
    EXPECT_TRUE(press(Qt::Key_M));
    EXPECT_TRUE(press(Qt::Key_S));
    EXPECT_FALSE(player().showSettings());
    EXPECT_TRUE(press(Qt::Key_PageUp));
}

TEST_F(LiveKeysTest, ChangeBetweenListAndGuideAlsoFromTheWholeScreen) {
    int wanted = 0;
    const QObject listener;
    QObject::connect(&player(), &LivePlayerViewModel::panelWanted, &listener, [&wanted] { ++wanted; });
    player().setIsFullscreen(true);
    press(Qt::Key_G);
    EXPECT_TRUE(player().showEPG());
    EXPECT_FALSE(player().isFullscreen());
    press(Qt::Key_L);
    EXPECT_FALSE(player().showEPG());
    press(Qt::Key_G);
    EXPECT_TRUE(player().showEPG());
    press(Qt::Key_G);
    EXPECT_FALSE(player().showEPG()) << "the same key takes it away";
    press(Qt::Key_G);
    player().goBack();
    EXPECT_FALSE(player().showEPG());
    EXPECT_TRUE(appState.isPlaying());
    EXPECT_FALSE(appState.showMiniPlayer()) << "the way back leads through the list";
    EXPECT_EQ(wanted, 6);
}

TEST_F(LiveKeysTest, DoWhatThePlayersKeysDo) {
    press(Qt::Key_Space);
    EXPECT_FALSE(playerManager.isPlaying());
    press(Qt::Key_K);
    EXPECT_TRUE(playerManager.isPlaying());
    press(Qt::Key_M);
    EXPECT_TRUE(playerManager.isMuted());
    press(Qt::Key_H);
    EXPECT_TRUE(player().isFavorite());
    press(Qt::Key_Up);
    EXPECT_THAT(systemVolume.asked.back(), ::testing::FloatNear(0.55F, 1e-6F));
    press(Qt::Key_Down);
    EXPECT_THAT(systemVolume.asked.back(), ::testing::FloatNear(0.5F, 1e-6F));
    press(Qt::Key_F);
    EXPECT_TRUE(player().isFullscreen());
    press(Qt::Key_F);
    EXPECT_FALSE(player().isFullscreen());
    press(Qt::Key_S);
    EXPECT_TRUE(player().showSettings());
    EXPECT_EQ(player().sheet()->sections().size(), 3U) << "neither speed nor skips";
    press(Qt::Key_I);
    EXPECT_TRUE(player().information()->isShown());
    press(Qt::Key_Question);
    EXPECT_TRUE(player().showKeys());
    EXPECT_FALSE(press(Qt::Key_Right));
    EXPECT_FALSE(press(Qt::Key_J));
    EXPECT_FALSE(press(Qt::Key_N));
}

TEST_F(LiveKeysTest, AreListedEachWithItsAction) {
    std::vector<std::string> names;
    for (const QVariant& line : player().keys()->lines()) {
        names.push_back(line.toMap().value(QStringLiteral("keys")).toString().toStdString());
        EXPECT_FALSE(line.toMap().value(QStringLiteral("action")).toString().isEmpty());
    }
    EXPECT_THAT(names, ElementsAre("Espaço, K", "Page Up", "Page Down", "0 – 9", "Retrocesso", "L", "G", "H",
                                   "↑", "↓", "M", "F", "S", "I", "?", "Esc"));
}

} // namespace
} // namespace ondavia::testing
