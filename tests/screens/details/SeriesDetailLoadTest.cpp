// What the page of a series learns from the provider, and how it shows it.
#include "SeriesFixture.h"

#include <QAbstractItemModelTester>

namespace ondavia::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SeriesDetailLoadTest : public SeriesFixture {
protected:
    SeriesDetailViewModel model{detailServices(), series()};
    QAbstractItemModelTester seasons{model.seasonList(),
                                     QAbstractItemModelTester::FailureReportingMode::Fatal};
    QAbstractItemModelTester episodes{model.episodeList(),
                                      QAbstractItemModelTester::FailureReportingMode::Fatal};

    [[nodiscard]] std::vector<std::string> titles() {
        return column(*model.episodeList(), EpisodeListModel::TitleRole);
    }
    [[nodiscard]] std::vector<std::string> seasonNames() {
        return column(*model.seasonList(), SeasonListModel::NameRole);
    }
    [[nodiscard]] std::vector<std::string> selection() {
        return column(*model.seasonList(), SeasonListModel::IsSelectedRole);
    }
};

TEST_F(SeriesDetailLoadTest, BeginsWithoutAnAnswer) {
    EXPECT_EQ(model.series(), series());
    EXPECT_TRUE(model.isSeries());
    EXPECT_FALSE(model.seriesInfo());
    EXPECT_EQ(model.selectedSeason(), 1);
    EXPECT_TRUE(model.isLoading());
    EXPECT_FALSE(model.isFavorite());
    EXPECT_FALSE(model.showFullPlot());
    EXPECT_FALSE(model.lastWatchedEpisode());
    EXPECT_THAT(model.currentEpisodes(), IsEmpty());
    EXPECT_THAT(model.allEpisodesSorted(), IsEmpty());
    EXPECT_FALSE(model.canPlay());
}

TEST_F(SeriesDetailLoadTest, TheFirstSeasonOfTheListIsSelected) {
    load(model);
    EXPECT_THAT(seasonNames(), ElementsAre("T2", "T1", "T1"));
    EXPECT_EQ(model.selectedSeason(), 2);
    EXPECT_EQ(model.seasonList()->selectedRow(), 0);
    EXPECT_THAT(titles(), ElementsAre("Regresso"));
    EXPECT_TRUE(model.canPlay());
}

TEST_F(SeriesDetailLoadTest, ASeasonShowsItsEpisodesInTheProvidersOrder) {
    load(model);
    model.chooseSeason(1);
    EXPECT_EQ(model.selectedSeason(), 1);
    EXPECT_THAT(titles(), ElementsAre("Nevoeiro", "Chegada"));
    EXPECT_THAT(selection(), ElementsAre("false", "true", "true")) << "one without a number is the first";
    EXPECT_EQ(model.seasonList()->selectedRow(), 1);
    model.chooseSeason(9);
    model.chooseSeason(-1);
    EXPECT_EQ(model.selectedSeason(), 1);
}

TEST_F(SeriesDetailLoadTest, AnEpisodeHasNumberTitleLengthAndPicture) {
    provider.answer(R"({"episodes": {"1": [
        {"id": "1", "episode_num": 3, "title": "Chegada",
         "info": {"duration": "00:42:10", "movie_image": "http://p.example/1.jpg"}},
        {"id": "2", "title": "", "info": {"duration": ""}},
        {"id": "3", "episode_num": "4"}]}})");
    load(model);
    const EpisodeListModel& list = *model.episodeList();
    EXPECT_THAT(column(list, EpisodeListModel::LabelRole), ElementsAre("Ep. 3", "Ep. 0", "Ep. 4"));
    EXPECT_THAT(titles(), ElementsAre("Chegada", "", "Episodio")) << "only one that is absent is made up";
    EXPECT_THAT(column(list, EpisodeListModel::DurationRole), ElementsAre("00:42:10", "", ""));
    EXPECT_FALSE(list.index(0).data(EpisodeListModel::PictureRole).toUrl().isEmpty());
    EXPECT_TRUE(list.index(2).data(EpisodeListModel::PictureRole).toUrl().isEmpty());
}

TEST_F(SeriesDetailLoadTest, WithoutSeasonsTheFirstOneShows) {
    provider.answer(R"({"seasons": [], "episodes": {"1": [{"id": "1", "title": "Chegada"}]}})");
    load(model);
    EXPECT_EQ(model.selectedSeason(), 1);
    EXPECT_THAT(seasonNames(), IsEmpty());
    EXPECT_EQ(model.seasonList()->selectedRow(), -1);
    EXPECT_THAT(titles(), ElementsAre("Chegada"));
}

TEST_F(SeriesDetailLoadTest, SpecialsThatComeFirstAreSelected) {
    provider.answer(R"({"seasons": [{"season_number": 0}, {"season_number": 1}],
                        "episodes": {"0": [{"id": "1", "title": "Bastidores"}], "1": []}})");
    load(model);
    EXPECT_EQ(model.selectedSeason(), 0);
    EXPECT_THAT(seasonNames(), ElementsAre("T0", "T1"));
    EXPECT_THAT(titles(), ElementsAre("Bastidores"));
}

TEST_F(SeriesDetailLoadTest, AFirstSeasonWithoutANumberChangesNoSelection) {
    model.setSelectedSeason(4);
    provider.answer(R"({"seasons": [{"name": "?"}, {"season_number": 2}], "episodes": {}})");
    load(model);
    EXPECT_EQ(model.selectedSeason(), 4);
    EXPECT_THAT(model.currentEpisodes(), IsEmpty()) << "there is no such season";
}

TEST_F(SeriesDetailLoadTest, SeasonsAreSortedByNumberAndWhatIsNoneIsFirst) {
    provider.answer(R"({"episodes": {"10": [{"id": "10"}], "2": [{"id": "b"}, {"id": "a"}],
                        "Especiais": [{"id": "s"}], "1": [{"id": "1"}]}})");
    load(model);
    EXPECT_THAT(ids(model.allEpisodesSorted()), ElementsAre("s", "1", "b", "a", "10"));
}

TEST_F(SeriesDetailLoadTest, EpisodesThatMakeNoSenseLeaveTheSeasons) {
    provider.answer(R"({"seasons": [{"season_number": 3}], "episodes": "none"})");
    load(model);
    EXPECT_EQ(model.selectedSeason(), 3);
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_FALSE(model.canPlay());
    EXPECT_FALSE(appState.toastMessage());
}

TEST_F(SeriesDetailLoadTest, AFailureIsToldAndLogged) {
    provider.answer("no", 503);
    const LogCapture log;
    load(model);
    EXPECT_EQ(appState.toastMessage(), "Erro ao carregar detalhes da série.");
    EXPECT_EQ(appState.toastType(), ToastType::error);
    EXPECT_THAT(log.messages(LogCategory::network, LogLevel::Error),
                Contains("Series load error for 70 code=503 domain=XtreamError"));
    EXPECT_FALSE(model.seriesInfo());
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(SeriesDetailLoadTest, AReplyThatIsNoneIsAFailureToo) {
    provider.answer("[1]");
    const LogCapture log;
    load(model);
    EXPECT_EQ(appState.toastMessage(), "Erro ao carregar detalhes da série.");
    EXPECT_THAT(log.messages(LogCategory::network, LogLevel::Error),
                Contains("Series load error for 70 code=1 domain=DecodingError"));
}

TEST_F(SeriesDetailLoadTest, AServerThatIsNotThereIsAFailureToo) {
    appState.setServer("http://127.0.0.1:1");
    const LogCapture log;
    model.setIsInSight(true);
    ASSERT_TRUE(waitUntil([&] { return !model.isLoading(); }));
    EXPECT_EQ(appState.toastType(), ToastType::error);
    EXPECT_THAT(log.messages(LogCategory::network, LogLevel::Error),
                Contains("Series load error for 70 code=2 domain=URLError"));
}

TEST_F(SeriesDetailLoadTest, WithoutAnIdOrAnAccountNobodyIsAsked) {
    Channel nameless = series();
    nameless.seriesId.reset();
    SeriesDetailViewModel stranger(detailServices(), nameless);
    stranger.appear();
    EXPECT_FALSE(stranger.isLoading());
    appState.setPassword("");
    model.appear();
    EXPECT_FALSE(model.isLoading());
    EXPECT_THAT(provider.asked(), IsEmpty());
    EXPECT_FALSE(appState.toastMessage());
}

TEST_F(SeriesDetailLoadTest, MarkAndHistoryComeAfterTheAnswer) {
    mark("main_series_70");
    watch("main_series_70_ep_12", "series", 300, 2400, 70);
    provider.hold();
    visit(model, question);
    EXPECT_FALSE(model.isFavorite());
    EXPECT_FALSE(model.lastWatchedEpisode());
    EXPECT_EQ(model.playText(), QStringLiteral("Reproduzir"));
    provider.letGo();
    ASSERT_TRUE(waitUntil([&] { return model.isFavorite(); }));
    EXPECT_EQ(model.lastWatchedEpisode()->channelId, "main_series_70_ep_12");
    EXPECT_EQ(model.playText(), QStringLiteral("Continuar a ver"));
}

TEST_F(SeriesDetailLoadTest, MarkAndHistoryComeAlsoWhenTheQuestionFails) {
    mark("main_series_70");
    watch("main_series_70_ep_12", "series", 300, 2400, 70);
    provider.answer("no", 500);
    load(model);
    EXPECT_TRUE(model.isFavorite());
    EXPECT_TRUE(model.continues());
    EXPECT_TRUE(model.canPlay());
}

TEST_F(SeriesDetailLoadTest, TheHistoryIsThatOfThisSeries) {
    watch("main_series_71_ep_1", "series", 300, 2400, 71);
    load(model);
    EXPECT_FALSE(model.lastWatchedEpisode());
    watch("main_series_70_ep_11", "series", 2399, 2400, 70);
    load(model);
    EXPECT_FALSE(model.lastWatchedEpisode()) << "seen to its end";
}

TEST_F(SeriesDetailLoadTest, EachVisitAsksAgain) {
    load(model);
    model.chooseSeason(1);
    model.play();
    drainEvents();
    appState.playerDismissed();
    ASSERT_TRUE(waitUntil([&] { return provider.count(question) == 2; }));
    EXPECT_FALSE(model.isLoading()) << "what is known stays while the provider is asked";
    EXPECT_TRUE(waitUntil([&] { return model.selectedSeason() == 2; })) << "as at every visit";
}

TEST_F(SeriesDetailLoadTest, WhatAnEarlierVisitAskedForIsDropped) {
    provider.hold();
    visit(model, question);
    provider.answer(R"({"seasons": [{"season_number": 5}], "episodes": {"5": [{"id": "51"}]}})");
    model.setIsInSight(false);
    model.setIsInSight(true);
    ASSERT_TRUE(waitUntil([&] { return provider.count(question) == 2; }));
    provider.letGo();
    EXPECT_TRUE(waitForTransfers(std::chrono::minutes(1)));
    ASSERT_TRUE(waitUntil([&] { return !model.isLoading(); }));
    EXPECT_THAT(ids(model.currentEpisodes()), ElementsAre("51"));
    EXPECT_EQ(model.selectedSeason(), 5);
}

TEST_F(SeriesDetailLoadTest, APageThatHasGoneReportsNothing) {
    provider.answer("no", 500);
    provider.hold();
    auto leaving = std::make_unique<SeriesDetailViewModel>(detailServices(), series());
    visit(*leaving, question);
    leaving.reset();
    provider.letGo();
    EXPECT_TRUE(waitForTransfers(std::chrono::minutes(1)));
    drainEvents();
    EXPECT_FALSE(appState.toastMessage());
}

TEST_F(SeriesDetailLoadTest, TheSameEpisodesLeaveTheListAlone) {
    load(model);
    int resets = 0;
    QObject::connect(model.episodeList(), &QAbstractItemModel::modelReset, &model, [&] { ++resets; });
    load(model);
    EXPECT_EQ(resets, 0);
}

TEST_F(SeriesDetailLoadTest, TheFactsStandInTheirOrder) {
    Channel record = series();
    record.releaseDate = "2015-03-01";
    record.genre = "Drama, Mistério";
    record.rating = "8";
    record.year = "2015";
    record.duration = "42m";
    EXPECT_THAT(texts(SeriesDetailViewModel(detailServices(), record).badges()),
                ElementsAre("2015", "!★ 8", "Drama", "2015-03-01"));
    record.rating = "0";
    record.year = "";
    record.releaseDate = "";
    EXPECT_THAT(texts(SeriesDetailViewModel(detailServices(), record).badges()), ElementsAre("Drama"));
}

TEST_F(SeriesDetailLoadTest, TheHeartPutsTheMarkAndTakesIt) {
    model.toggleFavorite();
    EXPECT_THAT(marked(), ElementsAre("main_series_70"));
    load(model);
    EXPECT_TRUE(model.isFavorite());
    model.toggleFavorite();
    EXPECT_THAT(marked(), IsEmpty());
}

} // namespace
} // namespace ondavia::testing
