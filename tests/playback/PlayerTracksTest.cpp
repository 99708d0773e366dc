#include "playback/PlayerTracks.h"

#include "PlayerManagerFixture.h"

#include <QFuture>
#include <QPromise>
#include <QUrl>
#include <qcoro/qcorofuture.h>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Kind = OndaviaMediaTrack::Kind;

QVariantMap stream(const char* type, const QVariant& index, const QVariantMap& more = {}) {
    QVariantMap map{{QStringLiteral("type"), QString::fromLatin1(type)},
                    {QStringLiteral("stream_idx"), index}};
    map.insert(more);
    return map;
}

QVariantMap texts(std::initializer_list<std::pair<const char*, const char*>> entries) {
    QVariantMap map;
    for (const auto& [key, value] : entries) {
        map.insert(QString::fromLatin1(key), QString::fromUtf8(value));
    }
    return map;
}

QVariantMap media(const QVariant& streams) {
    return {{QStringLiteral("streams"), streams}};
}

QVariantMap active(const QVariant& index) {
    return {{QStringLiteral("stream_idx"), index}};
}

SubtitleTrack external(const std::string& name) {
    return {"srt-" + name, std::nullopt, name, "http://tv.example/" + name + ".srt",
            std::vector<SubtitleCue>{{1, 2, name}}};
}

OndaviaMediaTrack externalChoice(const std::string& name) {
    return {.id = "srt-" + name,
            .kind = Kind::subtitle,
            .name = name,
            .isEnabled = false,
            .audioStreamIndex = {},
            .subtitleURL = "http://tv.example/" + name + ".srt",
            .subtitleStreamIndex = {}};
}

std::vector<std::string> namesOf(const std::vector<OndaviaMediaTrack>& tracks) {
    std::vector<std::string> names;
    for (const auto& track : tracks) {
        names.push_back(track.name + (track.isEnabled ? " *" : ""));
    }
    return names;
}

/// Answers when the test says so.
class HeldSession final : public URLSession {
public:
    QCoro::Task<URLResponse> data(QUrl /*url*/, std::vector<Header> /*headers*/) override {
        co_return URLResponse();
    }
    URLResponse fetch(const QUrl& /*url*/, std::size_t /*limit*/, const std::atomic_bool& /*stop*/) override {
        return {};
    }
    QCoro::Task<void> stream(QUrl url, std::shared_ptr<URLBodyReader> reader,
                             std::vector<Header> /*headers*/) override {
        asked.push_back(url.toString().toStdString());
        const QFuture<void> allowed = m_allowed.future();
        co_await allowed;
        reader->begin(200);
        reader->receive("00:00:01,000 --> 00:00:02,000\nOlá");
        reader->finish();
    }
    void answer() { m_allowed.finish(); }

    HeldSession() { m_allowed.start(); }

    std::vector<std::string> asked;

private:
    QPromise<void> m_allowed;
};

class PlayerTracksTest : public PlayerManagerTest {
protected:
    /// Plays a file with these streams.
    FakePlayer& startWith(const QVariantList& streams) {
        auto& running = start(movie());
        running.meta.mediaMeta = media(streams);
        journal.clear();
        return running;
    }
    std::vector<std::string> audioNames() { return namesOf(manager->availableAudioTracks()); }
    std::vector<std::string> subtitleNames() { return namesOf(manager->availableSubtitleTracks()); }

    /// Has every load given a session that waits.
    void holdSessions() {
        makeSession = [this](const URLSessionConfiguration&) {
            sessions.push_back(std::make_shared<HeldSession>());
            return sessions.back();
        };
    }

    /// The later load ends, and then the one that it replaced.
    void finishLate(std::size_t replaced, std::size_t later) {
        sessions.at(later)->answer();
        ASSERT_TRUE(waitUntil([this] { return !manager->loadedSubtitles().empty(); }));
        sessions.at(replaced)->answer();
        ASSERT_TRUE(waitUntil([&] { return sessions.at(replaced).use_count() == 1; }));
    }

    /// One for each load, in order.
    std::vector<std::shared_ptr<HeldSession>> sessions;
};

TEST_F(PlayerTracksTest, AreNoneWithoutAnEngineOrWithoutAListOfStreams) {
    EXPECT_THAT(manager->availableAudioTracks(), IsEmpty());
    EXPECT_THAT(manager->availableSubtitleTracks(), IsEmpty());
    auto& running = start(movie());
    for (const QVariant& unusable :
         {QVariant(), QVariant(3), QVariant(QVariantList{stream("audio", 1), 3})}) {
        running.meta.mediaMeta = media(unusable);
        EXPECT_THAT(manager->availableAudioTracks(), IsEmpty());
        EXPECT_THAT(manager->availableSubtitleTracks(), IsEmpty());
    }
}

TEST_F(PlayerTracksTest, AreCalledAfterTheirSoundsCodec) {
    startWith(
        {stream("video", 0, texts({{"codec_name", "h264"}})),
         stream("audio", 1, texts({{"codec_name", "aac"}, {"codec_profile", "LC"}, {"language", "por"}})),
         stream("audio", 2, texts({{"codec_name", "aac"}, {"codec_profile", ""}})),
         stream("audio", 3, texts({{"codec_name", "eac3"}})), stream("audio", 4), stream("timedtext", 5)});
    EXPECT_THAT(audioNames(), ElementsAre("AAC LC", "AAC", "EAC3", "Track 5"));
}

TEST_F(PlayerTracksTest, CountASoundWithoutIndexAndCodec) {
    startWith({stream("audio", 0, texts({{"codec_name", "aac"}})), stream("audio", QStringLiteral("1")),
               stream("audio", -1), stream("audio", {}), QVariantMap{{QStringLiteral("stream_idx"), 9}}});
    EXPECT_THAT(audioNames(), ElementsAre("AAC", "Track 2", "Track 3", "Track 4"));
    const auto tracks = manager->availableAudioTracks();
    EXPECT_EQ(tracks[2].id, "audio--1");
    EXPECT_EQ(tracks[2].audioStreamIndex, -1);
    EXPECT_EQ(tracks[1], (OndaviaMediaTrack{.id = "audio-1",
                                            .kind = Kind::audio,
                                            .name = "Track 2",
                                            .isEnabled = false,
                                            .audioStreamIndex = 1,
                                            .subtitleURL = {},
                                            .subtitleStreamIndex = {}}));
}

TEST_F(PlayerTracksTest, PassOverWhatIsNoText) {
    const auto number = [](const char* key) { return QVariantMap{{QString::fromLatin1(key), 7}}; };
    startWith({stream("audio", 1, number("codec_name")),
               stream("audio", 2,
                      QVariantMap{{QStringLiteral("codec_name"), QStringLiteral("aac")},
                                  {QStringLiteral("codec_profile"), 2}}),
               stream("audio", 3, number("type")), stream("timedtext", 4, number("language")),
               stream("timedtext", 5, number("title")), stream("timedtext", 6, number("codec_name")),
               stream("timedtext", 7, number("type"))});
    EXPECT_THAT(audioNames(), ElementsAre("Track 2", "AAC"));
    EXPECT_THAT(subtitleNames(), ElementsAre("Track 4", "Track 5", "Track 6"));
}

TEST_F(PlayerTracksTest, CountTheGreatestIndexToo) {
    startWith({stream("audio", QVariant::fromValue<qlonglong>(INT64_MAX))});
    EXPECT_THAT(audioNames(), ElementsAre("Track 9223372036854775808"));
}

TEST_F(PlayerTracksTest, TellTheActiveSoundInEveryFormOfNumber) {
    auto& running = startWith({stream("audio", 3), stream("audio", -1)});
    for (const QVariant& index : {QVariant(3), QVariant(QStringLiteral("3")), QVariant(3.0)}) {
        running.meta.audioMeta = active(index);
        EXPECT_THAT(audioNames(), ElementsAre("Track 4 *", "Track 2"));
    }
    running.meta.audioMeta = active(-1);
    EXPECT_THAT(audioNames(), ElementsAre("Track 4", "Track 2")) << "below 0 nothing is active";
}

TEST_F(PlayerTracksTest, AreCalledAfterTheirSubtitlesLanguageTitleOrCodec) {
    auto& running = startWith(
        {stream("timedtext", 1, texts({{"language", "por"}, {"title", "Forced"}, {"codec_name", "ass"}})),
         stream("timedtext", 2, texts({{"language", "eng"}, {"title", ""}})),
         stream("timedtext", 3, texts({{"title", "Comentários"}, {"codec_name", "ass"}})),
         stream("timedtext", QStringLiteral("4"), texts({{"codec_name", "subrip"}})), stream("timedtext", 5),
         stream("timedtext", -2), stream("timedtext", {}), stream("audio", 6)});
    running.meta.subtitleMeta = active(QStringLiteral("4"));
    EXPECT_THAT(subtitleNames(), ElementsAre("POR — Forced", "ENG", "Comentários", "SUBRIP #4 *", "Track 5"));
    EXPECT_EQ(manager->availableSubtitleTracks()[3], (OndaviaMediaTrack{.id = "embsub-4",
                                                                        .kind = Kind::subtitle,
                                                                        .name = "SUBRIP #4",
                                                                        .isEnabled = true,
                                                                        .audioStreamIndex = {},
                                                                        .subtitleURL = {},
                                                                        .subtitleStreamIndex = 4}));
}

TEST_F(PlayerTracksTest, PutExternalFilesFirst) {
    manager->setLoadedSubtitles({external("b"), external("a")});
    EXPECT_THAT(subtitleNames(), ElementsAre("b", "a")) << "without an engine too";
    EXPECT_EQ(manager->availableSubtitleTracks()[0], externalChoice("b"));
    start(movie());
    manager->setLoadedSubtitles({external("b"), external("a")});
    manager->setCurrentSubtitleTrack(external("a"));
    engine().meta.mediaMeta = media(QVariantList{stream("timedtext", 2)});
    engine().meta.subtitleMeta = active(2);
    EXPECT_THAT(subtitleNames(), ElementsAre("b", "a *", "Track 2 *"));
}

TEST_F(PlayerTracksTest, SwitchSubtitlesOff) {
    manager->selectSubtitleTrack(std::nullopt);
    start(movie());
    manager->setCurrentSubtitleTrack(external("a"));
    journal.clear();
    manager->selectSubtitleTrack(std::nullopt);
    EXPECT_EQ(manager->currentSubtitleTrack(), std::nullopt);
    EXPECT_THAT(journal, ElementsAre("close timedtext"));
}

TEST_F(PlayerTracksTest, LeaveSoundAloneWhereSubtitlesAreChosen) {
    startWith({stream("audio", 1)});
    manager->setCurrentSubtitleTrack(external("a"));
    manager->selectSubtitleTrack(manager->availableAudioTracks().at(0));
    OndaviaMediaTrack neither = externalChoice("a");
    neither.subtitleURL.reset();
    manager->selectSubtitleTrack(neither);
    EXPECT_EQ(manager->currentSubtitleTrack(), external("a"));
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(PlayerTracksTest, ShowAnExternalFileThroughTheEngine) {
    startWith({});
    manager->setLoadedSubtitles({external("a"), external("b")});
    manager->selectSubtitleTrack(externalChoice("b"));
    EXPECT_EQ(manager->currentSubtitleTrack(), external("b"));
    EXPECT_THAT(journal, ElementsAre("show http://tv.example/b.srt"));
}

TEST_F(PlayerTracksTest, ShowAnExternalFileThatIsNotLoadedYet) {
    startWith({});
    manager->setCurrentSubtitleTrack(external("a"));
    manager->selectSubtitleTrack(externalChoice("b"));
    EXPECT_EQ(manager->currentSubtitleTrack(), std::nullopt);
    EXPECT_THAT(journal, ElementsAre("show http://tv.example/b.srt"));
}

TEST_F(PlayerTracksTest, LeaveTheEngineOutWhereTheScreenDrawsSubtitles) {
    startWith({});
    manager->setUseCustomSubtitleOverlay(true);
    manager->setLoadedSubtitles({external("a")});
    manager->selectSubtitleTrack(externalChoice("a"));
    EXPECT_EQ(manager->currentSubtitleTrack(), external("a"));
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(PlayerTracksTest, StillLeaveWhatTheEngineDrawsToItWhereTheScreenDrawsSubtitles) {
    startWith({stream("timedtext", 4)});
    manager->setUseCustomSubtitleOverlay(true);
    manager->setCurrentSubtitleTrack(external("a"));
    manager->selectSubtitleTrack(manager->availableSubtitleTracks().at(0));
    EXPECT_EQ(manager->currentSubtitleTrack(), std::nullopt);
    manager->selectSubtitleTrack(std::nullopt);
    EXPECT_THAT(journal, ElementsAre("exchange 4", "close timedtext"));
}

TEST_F(PlayerTracksTest, AreChosenWithoutAnEngineToo) {
    manager->setLoadedSubtitles({external("a")});
    manager->selectSubtitleTrack(externalChoice("a"));
    EXPECT_EQ(manager->currentSubtitleTrack(), external("a"));
    OndaviaMediaTrack embedded = externalChoice("a");
    embedded.subtitleURL.reset();
    embedded.subtitleStreamIndex = 4;
    manager->selectSubtitleTrack(embedded);
    EXPECT_EQ(manager->currentSubtitleTrack(), std::nullopt);
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(PlayerTracksTest, ShowASubtitleOfTheFile) {
    startWith({stream("timedtext", 4)});
    manager->setCurrentSubtitleTrack(external("a"));
    manager->selectSubtitleTrack(manager->availableSubtitleTracks().at(0));
    EXPECT_EQ(manager->currentSubtitleTrack(), std::nullopt);
    EXPECT_THAT(journal, ElementsAre("exchange 4"));
}

TEST_F(PlayerTracksTest, LoadExternalFilesWithoutShowingOne) {
    holdSessions();
    startWith({});
    manager->setLoadedSubtitles({external("old")});
    manager->setCurrentSubtitleTrack(external("old"));
    manager->setSubtitleURLs({"http://tv.example/b.srt", "http://tv.example/a.srt"});
    EXPECT_THAT(manager->loadedSubtitles(), IsEmpty());
    EXPECT_EQ(manager->currentSubtitleTrack(), std::nullopt);
    EXPECT_THAT(journal, ElementsAre("add http://tv.example/b.srt", "add http://tv.example/a.srt"));
    ASSERT_EQ(sessions.size(), 1U);
    EXPECT_EQ(sessions[0]->asked.size(), 2U);
    sessions[0]->answer();
    ASSERT_TRUE(waitUntil([this] { return manager->loadedSubtitles().size() == 2; }));
    EXPECT_THAT(subtitleNames(), ElementsAre("a", "b"));
    EXPECT_EQ(manager->currentSubtitleTrack(), std::nullopt);
}

TEST_F(PlayerTracksTest, LoadExternalFilesWithoutAnEngineToo) {
    holdSessions();
    manager->setSubtitleURLs({"http://tv.example/a.srt"});
    sessions.at(0)->answer();
    EXPECT_TRUE(waitUntil([this] { return manager->loadedSubtitles().size() == 1; }));
}

TEST_F(PlayerTracksTest, AreClearedByAnEmptyListOfFiles) {
    startWith({});
    manager->setLoadedSubtitles({external("old")});
    manager->setCurrentSubtitleTrack(external("old"));
    manager->setSubtitleURLs({});
    EXPECT_THAT(manager->loadedSubtitles(), IsEmpty());
    EXPECT_EQ(manager->currentSubtitleTrack(), std::nullopt);
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(PlayerTracksTest, DropTheLoadOfBeforeAndThatOfAStoppedItem) {
    holdSessions();
    startWith({});
    manager->setSubtitleURLs({"http://tv.example/first.srt"});
    manager->setSubtitleURLs({"http://tv.example/second.srt"});
    finishLate(0, 1);
    EXPECT_THAT(subtitleNames(), ElementsAre("second"));

    manager->setSubtitleURLs({"http://tv.example/third.srt"});
    manager->stop();
    start(movie());
    manager->setSubtitleURLs({"http://tv.example/fourth.srt"});
    finishLate(2, 3);
    EXPECT_THAT(subtitleNames(), ElementsAre("fourth"));
}

TEST_F(PlayerTracksTest, DropTheLoadUnderWayForAnEmptyListOfFiles) {
    holdSessions();
    startWith({});
    manager->setSubtitleURLs({"http://tv.example/a.srt"});
    manager->setSubtitleURLs({});
    sessions.at(0)->answer();
    ASSERT_TRUE(waitUntil([this] { return sessions.at(0).use_count() == 1; }));
    EXPECT_THAT(manager->loadedSubtitles(), IsEmpty());
}

TEST_F(PlayerTracksTest, MayGoAwayDuringALoad) {
    holdSessions();
    manager->setSubtitleURLs({"http://tv.example/a.srt"});
    manager.reset();
    sessions.at(0)->answer();
    EXPECT_TRUE(waitUntil([this] { return sessions.at(0).use_count() == 1; }));
}

TEST(AspectRatio, IsReadWithEitherSeparator) {
    EXPECT_EQ(parseDisplayAspectRatio("16:9"), 16.0F / 9.0F);
    EXPECT_EQ(parseDisplayAspectRatio("16/9"), 16.0F / 9.0F);
    EXPECT_EQ(parseDisplayAspectRatio(" 4:3\t"), 4.0F / 3.0F);
    EXPECT_EQ(parseDisplayAspectRatio("2.35:1"), 2.35F);
    for (const char* none : {"", "  ", "Original", "Preencher", "16:0", "0:9", "-16:9", "16", ":9",
                             "16:", "16:9:4", "16 : 9", "16:9x", "a/b", "16//9"}) {
        EXPECT_EQ(parseDisplayAspectRatio(none), std::nullopt) << none;
    }
}

TEST_F(PlayerTracksTest, FillOrFitOrStretchThePicture) {
    auto& running = startWith({});
    const auto set = [&](const std::optional<std::string>& label) {
        journal.clear();
        manager->setAspectRatio(label);
        return journal.empty() ? std::string("nothing") : journal.back();
    };
    EXPECT_EQ(set("16:9"), "scalingMode 0");
    EXPECT_EQ(running.fakeView().darPreference(), 16.0F / 9.0F);
    EXPECT_EQ(manager->selectedAspectRatio(), "16:9");
    EXPECT_EQ(set("Preencher"), "scalingMode 1");
    EXPECT_EQ(running.fakeView().darPreference(), 0.0F);
    EXPECT_TRUE(manager->aspectFill());
    EXPECT_EQ(set("4:3"), "scalingMode 0");
    EXPECT_EQ(running.fakeView().darPreference(), 4.0F / 3.0F);
    EXPECT_FALSE(manager->aspectFill());
    EXPECT_EQ(set("Original"), "scalingMode 0");
    EXPECT_EQ(running.fakeView().darPreference(), 0.0F);
    set("16:9");
    EXPECT_EQ(set(std::nullopt), "scalingMode 0");
    EXPECT_EQ(running.fakeView().darPreference(), 0.0F);
    EXPECT_EQ(manager->selectedAspectRatio(), "Original");
}

TEST_F(PlayerTracksTest, DrawAPictureThatStandsStillAgain) {
    auto& running = startWith({});
    running.state = FSPlaybackState::Playing;
    manager->setAspectRatio("16:9");
    EXPECT_EQ(running.fakeView().refreshes, 0);
    running.state = FSPlaybackState::Paused;
    manager->setAspectRatio("Preencher");
    manager->setAspectRatio("4:3");
    EXPECT_EQ(running.fakeView().refreshes, 2);
}

TEST_F(PlayerTracksTest, KeepTheFillAndTheLabelForTheNextItemButNotTheRatio) {
    manager->setAspectRatio("Preencher");
    EXPECT_TRUE(manager->aspectFill());
    start(movie());
    EXPECT_THAT(journal, ::testing::Contains("scalingMode 1"));
    manager->setAspectRatio("16:9");
    start(movie());
    EXPECT_EQ(engine().fakeView().darPreference(), 0.0F);
    EXPECT_EQ(manager->selectedAspectRatio(), "16:9");
    EXPECT_FALSE(manager->aspectFill());
}

TEST_F(PlayerTracksTest, SetTheFillAloneWithoutAnEngine) {
    manager->setAspectRatio("Preencher");
    EXPECT_TRUE(manager->aspectFill());
    manager->setAspectRatio("4:3");
    EXPECT_FALSE(manager->aspectFill());
    EXPECT_EQ(manager->selectedAspectRatio(), "4:3");
    EXPECT_THAT(journal, IsEmpty());
}

} // namespace
} // namespace ondavia::testing
