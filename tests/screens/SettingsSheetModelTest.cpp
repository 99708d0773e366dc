#include "PlayerFixture.h"
#include "playback/PlayerManager.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

QVariantMap stream(const QVariant& index, const char* type, const char* codec, const char* language = "") {
    return {{QStringLiteral("stream_idx"), index},
            {QStringLiteral("type"), QLatin1String(type)},
            {QStringLiteral("codec_name"), QLatin1String(codec)},
            {QStringLiteral("language"), QLatin1String(language)}};
}

class SettingsSheetTest : public PlayerFixture {
protected:
    /// Two sounds, of which the first plays, and one subtitle.
    void offerTracks() {
        engine().meta.mediaMeta = {
            {QStringLiteral("streams"),
             QVariantList{stream(0, "video", "h264"), stream(1, "audio", "aac"), stream(2, "audio", "ac3"),
                          stream(3, "timedtext", "subrip", "por")}}};
        engine().meta.audioMeta = {{QStringLiteral("stream_idx"), 1}};
    }
    void open() {
        player().openSettings();
        ASSERT_NE(player().sheet(), nullptr);
    }
    [[nodiscard]] SettingsSheetModel& sheet() { return *player().sheet(); }
    [[nodiscard]] SettingsSectionModel& section(const char* key) {
        for (SettingsSectionModel* candidate : sheet().sections()) {
            if (candidate->key() == QLatin1String(key)) {
                return *candidate;
            }
        }
        throw std::logic_error(key);
    }
    [[nodiscard]] static std::vector<std::string> keysOf(const SettingsSheetModel& sheet) {
        std::vector<std::string> found;
        for (const SettingsSectionModel* candidate : sheet.sections()) {
            found.push_back(candidate->key().toStdString());
        }
        return found;
    }
    /// The options of a section; a selected one in brackets.
    [[nodiscard]] std::vector<std::string> options(const char* key) {
        std::vector<std::string> found;
        for (const QVariant& option : section(key).options()) {
            const std::string name = option.toMap().value(QStringLiteral("title")).toString().toStdString();
            found.push_back(option.toMap().value(QStringLiteral("isSelected")).toBool() ? "[" + name + "]"
                                                                                        : name);
        }
        return found;
    }
    void choose(const char* key, int index) {
        sheet().toggleSection(QLatin1String(key));
        sheet().choose(QLatin1String(key), index);
    }
};

TEST_F(SettingsSheetTest, ListsItsSectionsInOrder) {
    playFilm();
    open();
    EXPECT_THAT(keysOf(sheet()), ElementsAre("audio", "subtitles", "aspect", "speed", "skip"));
    EXPECT_EQ(section("audio").title(), QStringLiteral("Pista de Audio"));
    EXPECT_EQ(section("subtitles").title(), QStringLiteral("Legendas"));
    EXPECT_EQ(section("aspect").title(), QStringLiteral("Proporcao"));
    EXPECT_EQ(section("speed").title(), QStringLiteral("Velocidade"));
    EXPECT_EQ(section("skip").title(), QStringLiteral("Intervalo de salto"));
    EXPECT_EQ(section("aspect").value(), QStringLiteral("Original"));
    EXPECT_EQ(section("speed").value(), QStringLiteral("1x"));
    EXPECT_EQ(section("skip").value(), QStringLiteral("10s"));
}

TEST_F(SettingsSheetTest, ALiveChannelHasNeitherSpeedNorSkips) {
    PlaybackChoices choices;
    const SettingsSheetModel live(SettingsSheetModel::Kind::Live, playerManager, choices);
    EXPECT_THAT(keysOf(live), ElementsAre("audio", "subtitles", "aspect"));
}

TEST_F(SettingsSheetTest, FillsItselfInWhenTheEngineHasReadTheStreams) {
    playFilm();
    open();
    EXPECT_EQ(section("audio").value(), QStringLiteral("Nao disponivel"));
    EXPECT_EQ(section("subtitles").value(), QStringLiteral("Desativado"));
    EXPECT_THAT(options("audio"), ElementsAre());
    EXPECT_THAT(options("subtitles"), ElementsAre());
    const auto reads = sheet().trackRefreshTrigger();
    offerTracks();
    engine().post(FSPlayerIsPreparedToPlayNotification);
    drainEvents();
    EXPECT_EQ(sheet().trackRefreshTrigger(), reads + 1);
    EXPECT_EQ(section("audio").value(), QStringLiteral("AAC"));
    EXPECT_THAT(options("audio"), ElementsAre("[AAC]", "AC3"));
    EXPECT_THAT(options("subtitles"), ElementsAre("[Desativado]", "POR"));
}

TEST_F(SettingsSheetTest, OpensOneSectionAtATime) {
    playFilm();
    open();
    EXPECT_FALSE(sheet().expandedSection());
    sheet().toggleSection(QStringLiteral("audio"));
    EXPECT_TRUE(section("audio").isExpanded());
    sheet().toggleSection(QStringLiteral("speed"));
    EXPECT_FALSE(section("audio").isExpanded());
    EXPECT_TRUE(section("speed").isExpanded());
    sheet().toggleSection(QStringLiteral("speed"));
    EXPECT_FALSE(section("speed").isExpanded());
    EXPECT_FALSE(sheet().expandedSection());
}

TEST_F(SettingsSheetTest, IsBuiltAnewEachTimeItOpens) {
    playFilm();
    open();
    sheet().toggleSection(QStringLiteral("audio"));
    player().closeSettings();
    offerTracks();
    open();
    EXPECT_FALSE(sheet().expandedSection());
    EXPECT_THAT(options("audio"), ElementsAre("[AAC]", "AC3"));
}

TEST_F(SettingsSheetTest, ASoundIsExchangedInTheEngine) {
    playFilm();
    offerTracks();
    open();
    choose("audio", 1);
    EXPECT_EQ(count("exchange 2"), 1);
    EXPECT_FALSE(sheet().expandedSection());
}

TEST_F(SettingsSheetTest, ASubtitleIsSwitchedOnAndOff) {
    playFilm();
    offerTracks();
    open();
    choose("subtitles", 1);
    EXPECT_EQ(count("exchange 3"), 1);
    EXPECT_FALSE(sheet().expandedSection());
    engine().meta.subtitleMeta = {{QStringLiteral("stream_idx"), 3}};
    sheet().refreshTracks();
    EXPECT_EQ(section("subtitles").value(), QStringLiteral("POR"));
    EXPECT_THAT(options("subtitles"), ElementsAre("Desativado", "[POR]"));
    choose("subtitles", 0);
    EXPECT_EQ(count("close timedtext"), 1);
}

TEST_F(SettingsSheetTest, OfTwoSubtitlesThatAreOnTheExternalOneNamesTheRow) {
    playFilm();
    offerTracks();
    engine().meta.subtitleMeta = {{QStringLiteral("stream_idx"), 3}};
    const SubtitleTrack external{"srt-1", "en", "English", "http://tv.example/en.srt", {}};
    playerManager.setLoadedSubtitles({external});
    playerManager.setCurrentSubtitleTrack(external);
    open();
    EXPECT_EQ(section("subtitles").value(), QStringLiteral("English"));
    EXPECT_THAT(options("subtitles"), ElementsAre("Desativado", "[English]", "[POR]"));
}

TEST_F(SettingsSheetTest, AProportionIsAskedOfTheManager) {
    playFilm();
    open();
    EXPECT_THAT(options("aspect"), ElementsAre("[Original]", "16:9", "4:3", "Preencher"));
    choose("aspect", 3);
    EXPECT_EQ(playerManager.selectedAspectRatio(), "Preencher");
    EXPECT_EQ(section("aspect").value(), QStringLiteral("Preencher"));
    EXPECT_THAT(options("aspect"), ElementsAre("Original", "16:9", "4:3", "[Preencher]"));
    EXPECT_FALSE(sheet().expandedSection());
}

TEST_F(SettingsSheetTest, ASpeedIsKeptByTheScreenAndToldToTheEngine) {
    playFilm();
    open();
    EXPECT_THAT(options("speed"), ElementsAre("0.5x", "0.75x", "[1x]", "1.2x", "1.5x", "2x"));
    choose("speed", 4);
    EXPECT_FLOAT_EQ(engine().playbackRate(), 1.5F);
    EXPECT_EQ(player().speedText(), QStringLiteral("1.5x"));
    EXPECT_EQ(section("speed").value(), QStringLiteral("1.5x"));
    EXPECT_FALSE(sheet().expandedSection());
    player().retry();
    scheduler.runPending();
    EXPECT_FLOAT_EQ(engine().playbackRate(), 1.0F) << "a new engine starts at its normal rate";
    EXPECT_EQ(player().speedText(), QStringLiteral("1.5x"));
}

TEST_F(SettingsSheetTest, ASkipIntervalOfSixtyIsAcceptedAndDrawnAsFortyFive) {
    playFilm();
    open();
    EXPECT_THAT(options("skip"), ElementsAre("5s", "[10s]", "15s", "30s", "60s"));
    choose("skip", 4);
    EXPECT_EQ(section("skip").value(), QStringLiteral("60s"));
    EXPECT_EQ(player().skips()->forwardSymbol(), QStringLiteral("goforward.45"));
    EXPECT_FALSE(sheet().expandedSection());
}

TEST_F(SettingsSheetTest, WithoutAnEngineItsChoicesChangeTheScreenOnly) {
    playFilm();
    offerTracks();
    open();
    playerManager.stop();
    journal.clear();
    sheet().choose(QStringLiteral("audio"), 1);
    sheet().choose(QStringLiteral("subtitles"), 1);
    sheet().choose(QStringLiteral("speed"), 0);
    sheet().choose(QStringLiteral("audio"), 1);
    sheet().choose(QStringLiteral("nothing"), 0);
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(player().speedText(), QStringLiteral("0.5x"));
    EXPECT_EQ(section("audio").value(), QStringLiteral("Nao disponivel"));
}

TEST(SpeedLabel, HasAtMostTwoDigits) {
    const std::pair<float, const char*> cases[] = {{0.5F, "0.5x"},  {0.75F, "0.75x"}, {1.0F, "1x"},
                                                   {1.25F, "1.2x"}, {1.5F, "1.5x"},   {2.0F, "2x"}};
    for (const auto& [speed, label] : cases) {
        EXPECT_EQ(speedLabel(speed), QLatin1String(label));
    }
}

class SubtitleOverlayTest : public PlayerFixture {
protected:
    void SetUp() override {
        playFilm();
        playerManager.setCurrentSubtitleTrack(
            SubtitleTrack{"srt-1", std::nullopt, "Português", "http://tv.example/pt.srt",
                          std::vector<SubtitleCue>{{10, 12, "Uma linha\nOutra"}, {14, 16, "Segunda"}}});
        reach(11, 100);
    }
    [[nodiscard]] SubtitleOverlayModel& overlay() { return *player().subtitles(); }
};

TEST_F(SubtitleOverlayTest, StaysOffUntilTheScreensDrawTheSubtitles) {
    EXPECT_FALSE(overlay().isShown());
    scheduler.advance(1);
    EXPECT_EQ(overlay().activeText(), QString());
    playerManager.setUseCustomSubtitleOverlay(true);
    EXPECT_TRUE(overlay().isShown());
    EXPECT_EQ(overlay().activeText(), QStringLiteral("Uma linha\nOutra")) << "at once, with its line break";
}

TEST_F(SubtitleOverlayTest, LooksTenTimesASecond) {
    playerManager.setUseCustomSubtitleOverlay(true);
    reach(13, 100);
    EXPECT_EQ(overlay().activeText(), QStringLiteral("Uma linha\nOutra"));
    scheduler.advance(0.1);
    EXPECT_EQ(overlay().activeText(), QString()) << "between two lines there is none";
    reach(15, 100);
    scheduler.advance(0.1);
    EXPECT_EQ(overlay().activeText(), QStringLiteral("Segunda"));
    scheduler.advance(60);
    EXPECT_EQ(overlay().activeText(), QStringLiteral("Segunda")) << "a paused film keeps its line";
}

TEST_F(SubtitleOverlayTest, TakesAnotherTrackAtTheNextLook) {
    playerManager.setUseCustomSubtitleOverlay(true);
    playerManager.setCurrentSubtitleTrack(
        SubtitleTrack{"srt-2", std::nullopt, "English", "", std::vector<SubtitleCue>{{10, 12, "A line"}}});
    scheduler.advance(0.1);
    EXPECT_EQ(overlay().activeText(), QStringLiteral("A line"));
    playerManager.setCurrentSubtitleTrack(std::nullopt);
    scheduler.advance(0.1);
    EXPECT_EQ(overlay().activeText(), QString());
}

} // namespace
} // namespace ondavia::testing
