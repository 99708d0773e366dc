// The live player's guide: what is on now, when it is loaded anew, and what it plays of the past.
#include "LivePlayerFixture.h"
#include "personal/FavoritesService.h"
#include "support/HttpServer.h"

#include <atomic>

namespace ondavia::testing {
namespace {

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

const char* const lastLoadKey = "ondavia_last_epg_load";

class LiveGuideTest : public LivePlayerFixture {
protected:
    /// Serves a guide in which channel 1 shows `Novo` now.
    void serveGuide(bool works = true) {
        http.server.Get("/xmltv.php", [this, works](const httplib::Request&, httplib::Response& reply) {
            ++requests;
            if (works) {
                reply.set_content("<tv><programme start=\"20200101000000 +0000\" stop=\"20990101000000 "
                                  "+0000\" channel=\"guia.1\"><title>Novo</title></programme></tv>",
                                  "application/xml");
            }
        });
        http.start();
        signIn(works ? http.url() : "http://127.0.0.1:1");
    }
    void loadedAgo(std::chrono::microseconds age) { defaults.setDate(lastLoadKey, now - age); }
    void toggleAndWait() {
        player().toggleView();
        ASSERT_TRUE(waitUntil([this] { return !player().isLoadingEPG(); }));
    }
    [[nodiscard]] EPGProgram past(microseconds length) const {
        return {"p-1",        "guia.1",        "Ontem à Noite",
                std::nullopt, now - hours(20), now - hours(20) + length,
                std::nullopt};
    }

    HttpServer http;
    std::atomic<int> requests = 0;
};

TEST_F(LiveGuideTest, TellsWhatIsOnNow) {
    broadcast("guia.1", "Acabou", now - hours(2), now);
    broadcast("guia.1", "Começou", now, now + hours(1));
    open(1);
    EXPECT_EQ(player().currentProgramTitle(), "Começou") << "an end is no longer on, a beginning is";
    player().switchToNextChannel();
    EXPECT_EQ(player().currentProgramTitle(), std::nullopt);
    EXPECT_EQ(player().programTitle(), QString());
}

TEST_F(LiveGuideTest, KnowsOfNoProgrammeWithoutAGuideId) {
    broadcast("", "De ninguém", now - hours(1), now + hours(1));
    for (const auto& id : {std::optional<std::string>(), std::optional<std::string>("")}) {
        Channel nameless = channel(1, "Notícias");
        nameless.epgChannelId = id;
        open(nameless);
        EXPECT_EQ(player().currentProgramTitle(), std::nullopt);
        player().close();
        drainEvents();
    }
}

TEST_F(LiveGuideTest, OpensAtOnceWhereTheGuideIsThreeDaysOldAndNotMore) {
    signIn();
    loadedAgo(seconds(259200));
    open(1);
    player().guide()->setSelectedDate(QDateTime::currentDateTime().addDays(-2));
    const QObject listener;
    note(listener, player(), &LivePlayerViewModel::isLoadingEPGChanged, "loading");
    note(listener, player(), &LivePlayerViewModel::showEPGChanged, "guide");
    note(listener, *player().guide(), &EPGPanelViewModel::selectedDateChanged, "today");
    player().toggleView();
    EXPECT_THAT(steps, ::testing::ElementsAre("loading", "loading", "guide", "today"));
    EXPECT_TRUE(player().showEPG());
    EXPECT_TRUE(player().epgLoaded());
    EXPECT_FALSE(player().isLoadingEPG());
    EXPECT_EQ(player().guide()->selectedDate().date(), QDate::currentDate());
    EXPECT_EQ(guideLoads, 0);
    player().toggleView();
    EXPECT_FALSE(player().showEPG());
}

TEST_F(LiveGuideTest, IsLoadedFirstWhereItIsOlder) {
    serveGuide();
    loadedAgo(seconds(259200) + microseconds(1));
    open(1);
    EXPECT_EQ(player().currentProgramTitle(), std::nullopt);
    player().toggleView();
    EXPECT_TRUE(player().isLoadingEPG());
    EXPECT_FALSE(player().showEPG());
    player().toggleView();
    EXPECT_EQ(guideLoads, 1) << "one load at a time";
    ASSERT_TRUE(waitUntil([this] { return player().showEPG(); }));
    EXPECT_FALSE(player().isLoadingEPG());
    EXPECT_TRUE(player().epgLoaded());
    EXPECT_EQ(player().currentProgramTitle(), "Novo");
    EXPECT_GE(*defaults.dateForKey(lastLoadKey), now);
    player().toggleView();
    toggleAndWait();
    EXPECT_EQ(guideLoads, 1);
}

TEST_F(LiveGuideTest, IsLoadedWhereItsTimeIsMissingOrOfAnotherType) {
    serveGuide();
    open(1);
    toggleAndWait();
    EXPECT_EQ(guideLoads, 1);
    player().close();
    drainEvents();
    defaults.setString(lastLoadKey, "ontem");
    open(1);
    toggleAndWait();
    EXPECT_EQ(guideLoads, 2);
}

TEST_F(LiveGuideTest, TakesNoNoticeOfTheIntervalThatIsSet) {
    signIn();
    defaults.setDouble("ondavia_epg_interval", 60);
    loadedAgo(hours(24));
    open(1);
    player().toggleView();
    EXPECT_TRUE(player().showEPG());
    EXPECT_EQ(guideLoads, 0);
}

TEST_F(LiveGuideTest, OpensAfterALoadThatFailedAndTriesAgainTheNextTime) {
    serveGuide(false);
    open(1);
    toggleAndWait();
    EXPECT_TRUE(player().showEPG());
    EXPECT_FALSE(player().epgLoaded());
    EXPECT_FALSE(defaults.dateForKey(lastLoadKey));
    EXPECT_EQ(appState.toastMessage(), std::nullopt);
    player().toggleView();
    toggleAndWait();
    EXPECT_TRUE(player().showEPG());
    EXPECT_EQ(guideLoads, 2);
}

TEST_F(LiveGuideTest, OpensWithoutAnAccount) {
    open(1);
    player().toggleView();
    EXPECT_TRUE(player().showEPG());
    EXPECT_FALSE(player().epgLoaded());
    EXPECT_EQ(guideLoads, 0);
}

TEST_F(LiveGuideTest, MayComeWhenTheViewHasGone) {
    serveGuide();
    open(1);
    player().toggleView();
    player().close();
    drainEvents();
    ASSERT_TRUE(waitUntil([this] { return defaults.dateForKey(lastLoadKey).has_value(); }));
    drainEvents();
    EXPECT_FALSE(presentation.isPresented());
}

TEST_F(LiveGuideTest, FollowsTheChannel) {
    keepGuideFresh();
    open(1);
    EXPECT_EQ(player().guide()->channel().id, "main_1");
    player().switchToNextChannel();
    EXPECT_EQ(player().guide()->channel().id, "main_2");
}

TEST_F(LiveGuideTest, AZapLeavesTheChoiceOfADayOpen) {
    keepGuideFresh();
    open(1);
    player().openGuide();
    player().guide()->setShowDatePicker(true);
    player().switchToNextChannel();
    EXPECT_FALSE(player().showEPG());
    EXPECT_TRUE(player().guide()->showDatePicker());
}

TEST_F(LiveGuideTest, PlaysARecordingWithoutLeavingTheChannel) {
    signIn();
    Channel archived = channel(1, "Notícias");
    archived.logo = "http://tv.example/1.png";
    archived.tvArchive = true;
    archived.tvArchiveDuration = 3;
    fill({archived});
    open(archived);
    const EPGProgram program = past(minutes(90) + seconds(30));
    Q_EMIT player().guide()->playCatchupRequested(program);
    const Channel& recording = *appState.currentChannel();
    EXPECT_EQ(recording.id, "main_1_catchup_p-1");
    EXPECT_EQ(recording.name, "Canal 1 — Ontem à Noite");
    EXPECT_EQ(recording.type, "live");
    EXPECT_EQ(recording.url, appState.makeXtreamClient()->getCatchupURL(1, program.start, 90));
    EXPECT_EQ(recording.playlistId, "main");
    EXPECT_EQ(recording.streamId, 1);
    EXPECT_EQ(recording.groupTitle, "Notícias");
    EXPECT_EQ(recording.logo, archived.logo);
    EXPECT_EQ(recording.addedAt, now);
    EXPECT_EQ(recording.num, 0);
    EXPECT_EQ(recording.epgChannelId, std::nullopt);
    EXPECT_FALSE(recording.tvArchive);
    EXPECT_EQ(recording.lastAccessedAt, std::nullopt);
    EXPECT_EQ(std::ranges::count(journal, "create " + recording.url), 1);
    EXPECT_TRUE(playerManager.isLive());
    EXPECT_EQ(player().currentChannel(), archived);
    EXPECT_EQ(player().currentRow(), 0);
    EXPECT_EQ(store->mainContext().count<Channel>(field(&Channel::id) == recording.id), 0);
    player().switchToNextChannel();
    EXPECT_EQ(player().currentChannel().id, "main_2") << "the zap goes by the channel";
}

TEST_F(LiveGuideTest, ARecordingLeadsBackToItsChannelsLivePicture) {
    signIn();
    open(2);
    EXPECT_FALSE(player().isRecording());
    player().playCatchup(past(minutes(30)));
    EXPECT_TRUE(player().isRecording());
    EXPECT_EQ(player().recordingTitle(), QStringLiteral("Canal 2 — Ontem à Noite"));
    player().switchToChannelBefore();
    EXPECT_EQ(plays(2), 2);
    EXPECT_FALSE(player().isRecording());
    EXPECT_EQ(player().recordingTitle(), QString());
}

TEST_F(LiveGuideTest, ARecordingFromTheMiniPlayerComesBackToItsChannel) {
    signIn();
    open(2);
    player().playCatchup(past(minutes(30)));
    run();
    player().minimizeToMini();
    drainEvents();
    journal.clear();
    appState.setShowMiniPlayer(false);
    drainEvents();
    EXPECT_TRUE(journal.empty()) << "it plays on";
    EXPECT_TRUE(player().isRecording());
    EXPECT_EQ(player().currentChannel().id, "main_2");
    EXPECT_EQ(player().currentRow(), 1);
    EXPECT_EQ(player().guide()->channel().id, "main_2");
    player().toggleFavorite();
    EXPECT_TRUE(FavoritesService(store->mainContext(), "main").isFavorite("main_2"));
    player().switchToNextChannel();
    EXPECT_EQ(player().currentChannel().id, "main_3");
}

TEST_F(LiveGuideTest, PlaysNoRecordingWithoutAnAccount) {
    open(1);
    journal.clear();
    player().playCatchup(past(minutes(30)));
    EXPECT_EQ(appState.currentChannel()->id, "main_1");
    EXPECT_TRUE(journal.empty());
}

TEST_F(LiveGuideTest, AChannelOnceMoreLeadsFromTheRecordingToTheLivePicture) {
    signIn();
    open(1);
    player().playCatchup(past(minutes(30)));
    player().chooseChannel(0);
    EXPECT_EQ(appState.currentChannel()->id, "main_1");
    EXPECT_EQ(plays(1), 2);
    player().playCatchup(past(minutes(30)));
    ASSERT_TRUE(player().isRecording());
    int told = 0;
    const QObject listener;
    QObject::connect(&player(), &LivePlayerViewModel::recordingChanged, &listener, [&told] { ++told; });
    player().retry();
    EXPECT_EQ(plays(1), 3) << "so does another try";
    EXPECT_FALSE(player().isRecording());
    EXPECT_EQ(player().recordingTitle(), QString());
    EXPECT_GT(told, 0);
}

TEST_F(LiveGuideTest, ARecordingComesBackFromTheMiniPlayerAndIsRecordedNowhere) {
    signIn();
    open(1);
    player().playCatchup(past(minutes(30)));
    run();
    player().minimizeToMini();
    drainEvents();
    journal.clear();
    appState.setShowMiniPlayer(false);
    drainEvents();
    ASSERT_TRUE(presentation.isPresented());
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(appState.currentChannel()->id, "main_1_catchup_p-1");
    EXPECT_EQ(store->mainContext().count<Channel>(field(&Channel::type) == "live"), 5);
}

} // namespace
} // namespace ondavia::testing
