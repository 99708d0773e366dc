#include "DetailFixture.h"
#include "screens/details/MovieDetailViewModel.h"
#include "store/StoreSamples.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MovieDetailTest : public DetailFixture {
protected:
    static constexpr const char* question = "get_vod_info 7";

    [[nodiscard]] static Channel film() { return title(7, "movie", "Drama", "Uma Longa Noite"); }
    [[nodiscard]] MovieDetailViewModel make(const Channel& movie) { return {detailServices(), movie}; }
    [[nodiscard]] std::vector<std::string> badgesOf(const Channel& movie) {
        return texts(make(movie).badges());
    }
    void listSubtitles() {
        provider.answer(R"({"info":{"subtitles":["/pt.srt","http://s.example/en.srt"]}})");
    }
    [[nodiscard]] std::vector<std::string> listed() const {
        return {provider.url() + "/pt.srt", "http://s.example/en.srt"};
    }
};

TEST_F(MovieDetailTest, BeginsWithNothingKnown) {
    MovieDetailViewModel model(detailServices(), film());
    EXPECT_EQ(model.movie(), film());
    EXPECT_FALSE(model.isSeries());
    EXPECT_FALSE(model.isFavorite());
    EXPECT_FALSE(model.showFullPlot());
    EXPECT_FALSE(model.watchHistory());
    EXPECT_THAT(model.subtitleURLs(), IsEmpty());
    EXPECT_EQ(model.playText(), QStringLiteral("Reproduzir"));
    EXPECT_TRUE(model.canPlay());
}

TEST_F(MovieDetailTest, TheFactsStandInTheirOrder) {
    Channel movie = film();
    EXPECT_THAT(badgesOf(movie), IsEmpty());
    movie.year = "1999";
    movie.rating = "7.8";
    movie.duration = "2h 05m";
    movie.genre = "Drama, Crime";
    movie.releaseDate = "1999-03-31";
    EXPECT_THAT(badgesOf(movie), ElementsAre("1999", "!★ 7.8", "2h 05m", "Drama"));
}

TEST_F(MovieDetailTest, EmptyFactsAndARatingOfZeroHaveNoBadge) {
    Channel movie = film();
    movie.year = "";
    movie.rating = "0";
    movie.duration = "";
    movie.genre = "";
    EXPECT_THAT(badgesOf(movie), IsEmpty());
    movie.rating = "";
    EXPECT_THAT(badgesOf(movie), IsEmpty());
    movie.rating = "0.0";
    movie.duration = "0";
    EXPECT_THAT(badgesOf(movie), ElementsAre("!★ 0.0", "0"));
}

TEST_F(MovieDetailTest, OfSeveralGenresTheFirstIsShown) {
    Channel movie = film();
    movie.genre = "Ação";
    EXPECT_THAT(badgesOf(movie), ElementsAre("Ação"));
    movie.genre = "Ação / Aventura,Comédia,Drama";
    EXPECT_THAT(badgesOf(movie), ElementsAre("Ação / Aventura"));
    movie.genre = ",Drama";
    EXPECT_THAT(badgesOf(movie), IsEmpty()) << "an empty badge says nothing";
}

TEST_F(MovieDetailTest, APlotOf151CharactersCanBeShownInTwoWays) {
    Channel movie = film();
    EXPECT_FALSE(make(movie).hasPlotToggle());
    movie.plot = std::string(150, 'x');
    EXPECT_FALSE(make(movie).hasPlotToggle());
    movie.plot = std::string(151, 'x');
    EXPECT_TRUE(make(movie).hasPlotToggle());
}

TEST_F(MovieDetailTest, ThePlotsCharactersAreThoseOfAReader) {
    Channel movie = film();
    movie.plot = std::string();
    for (int letter = 0; letter < 150; ++letter) {
        // An e, and an accent over it.
        *movie.plot += "e\xcc\x81";
    }
    EXPECT_FALSE(make(movie).hasPlotToggle());
    *movie.plot += "e\xcc\x81";
    EXPECT_TRUE(make(movie).hasPlotToggle());
}

TEST_F(MovieDetailTest, TheToggleSaysWhatItWouldDo) {
    MovieDetailViewModel model(detailServices(), film());
    EXPECT_EQ(model.plotToggleText(), QStringLiteral("Ler mais"));
    model.togglePlot();
    EXPECT_TRUE(model.showFullPlot());
    EXPECT_EQ(model.plotToggleText(), QStringLiteral("Menos"));
    model.togglePlot();
    EXPECT_FALSE(model.showFullPlot());
}

TEST_F(MovieDetailTest, AWholePlotIsShownAndOneWithoutAnEndIsNot) {
    Channel movie = film();
    movie.plot = std::string(2000, 'x');
    EXPECT_EQ(make(movie).plot().size(), 2000);
    movie.plot = std::string(1'000'000, 'x');
    EXPECT_EQ(make(movie).plot().size(), 4000);
    movie.cast = "Ana, Rui";
    movie.director = "";
    EXPECT_EQ(make(movie).cast(), QStringLiteral("Ana, Rui"));
    EXPECT_EQ(make(movie).director(), QString());
}

TEST_F(MovieDetailTest, ComingIntoSightFindsTheMarkAndTheHistory) {
    MovieDetailViewModel model(detailServices(), film());
    mark("main_7");
    watch("main_7", "movie", 600, 6000);
    EXPECT_FALSE(model.isFavorite()) << "nothing is read before";
    model.setIsInSight(true);
    ASSERT_TRUE(waitUntil([&] { return model.isFavorite(); }));
    EXPECT_TRUE(model.watchHistory());
    EXPECT_EQ(model.playText(), QStringLiteral("Continuar a ver"));
}

TEST_F(MovieDetailTest, AFilmSeenToItsEndOrHardlyBegunIsPlayedNotContinued) {
    MovieDetailViewModel model(detailServices(), film());
    watch("main_7", "movie", 5800, 6000);
    model.appear();
    EXPECT_EQ(model.playText(), QStringLiteral("Reproduzir")) << "complete";
    watch("main_7", "movie", 10, 6000);
    model.appear();
    EXPECT_EQ(model.playText(), QStringLiteral("Reproduzir")) << "ten seconds are nothing";
    watch("main_7", "movie", 10.5, 6000);
    model.appear();
    EXPECT_EQ(model.playText(), QStringLiteral("Continuar a ver"));
    EXPECT_EQ(model.watchHistory()->position, 10.5);
}

TEST_F(MovieDetailTest, TheHeartPutsTheMarkAndTakesIt) {
    MovieDetailViewModel model(detailServices(), film());
    model.toggleFavorite();
    EXPECT_TRUE(model.isFavorite());
    EXPECT_THAT(marked(), ElementsAre("main_7"));
    EXPECT_EQ(store->mainContext().fetchFirst<Favorite>({})->profileId, "main");
    model.toggleFavorite();
    EXPECT_FALSE(model.isFavorite());
    EXPECT_THAT(marked(), IsEmpty());
}

TEST_F(MovieDetailTest, TheHeartGoesByWhatItShows) {
    MovieDetailViewModel model(detailServices(), film());
    mark("main_7");
    model.appear();
    ASSERT_TRUE(model.isFavorite());
    store->mainContext().remove<Favorite>("main_main_7");
    store->mainContext().save();
    model.toggleFavorite();
    EXPECT_FALSE(model.isFavorite());
    EXPECT_THAT(marked(), IsEmpty()) << "somebody else has taken it away meanwhile";
}

TEST_F(MovieDetailTest, AMarkThatCannotBeWrittenIsShownAllTheSame) {
    MovieDetailViewModel model(detailServices(), film());
    const std::filesystem::path file = folder.path() / "store" / "user.db";
    executeRaw(file, "CREATE TRIGGER refuse BEFORE INSERT ON favorite BEGIN SELECT RAISE(ABORT, 'no'); END");
    model.toggleFavorite();
    EXPECT_TRUE(model.isFavorite());
    EXPECT_FALSE(appState.toastMessage()) << "without a word";
    executeRaw(file, "DROP TRIGGER refuse");
    EXPECT_THAT(marked(), IsEmpty());
    mark("main_8");
    EXPECT_THAT(marked(), ElementsAre("main_7", "main_8")) << "the next one takes it along";
}

TEST_F(MovieDetailTest, TheProvidersSubtitlesGoWithTheFilm) {
    signIn();
    listSubtitles();
    MovieDetailViewModel model(detailServices(), film());
    visit(model, question);
    ASSERT_TRUE(waitUntil([&] { return !model.subtitleURLs().empty(); }));
    EXPECT_EQ(model.subtitleURLs(), listed());
    model.play();
    EXPECT_EQ(appState.pendingSubtitleURLs(), listed());
    EXPECT_EQ(appState.currentChannel(), film());
    EXPECT_TRUE(appState.isPlaying());
}

TEST_F(MovieDetailTest, PlayedBeforeTheAnswerItHasNone) {
    signIn();
    listSubtitles();
    provider.hold();
    appState.setPendingSubtitleURLs({"http://s.example/of-another-film.srt"});
    MovieDetailViewModel model(detailServices(), film());
    visit(model, question);
    model.play();
    EXPECT_THAT(appState.pendingSubtitleURLs(), IsEmpty());
    EXPECT_TRUE(appState.isPlaying());
    provider.letGo();
    ASSERT_TRUE(waitUntil([&] { return !model.subtitleURLs().empty(); }));
    EXPECT_THAT(appState.pendingSubtitleURLs(), IsEmpty()) << "what plays has begun without them";
}

TEST_F(MovieDetailTest, WithoutAnIdOrAnAccountNobodyIsAsked) {
    Channel movie = film();
    MovieDetailViewModel stranger(detailServices(), movie);
    stranger.appear();
    signIn();
    movie.streamId = 0;
    MovieDetailViewModel model(detailServices(), movie);
    model.appear();
    movie.streamId = -3;
    MovieDetailViewModel negative(detailServices(), movie);
    negative.appear();
    movie.streamId = 1;
    MovieDetailViewModel first(detailServices(), movie);
    visit(first, "get_vod_info 1");
    EXPECT_THAT(provider.asked(), ElementsAre("get_vod_info 1"));
}

TEST_F(MovieDetailTest, AFailedQuestionIsNoReasonForAMessage) {
    signIn();
    provider.answer("no", 500);
    const LogCapture log;
    MovieDetailViewModel model(detailServices(), film());
    visit(model, question);
    ASSERT_TRUE(waitUntil([&] { return !log.messages(LogCategory::subtitle, LogLevel::Error).empty(); }));
    drainEvents();
    EXPECT_THAT(model.subtitleURLs(), IsEmpty());
    EXPECT_FALSE(appState.toastMessage());
    model.play();
    EXPECT_TRUE(appState.isPlaying());
}

TEST_F(MovieDetailTest, ComingBackFromThePlayerLooksAgain) {
    signIn();
    MovieDetailViewModel model(detailServices(), film());
    visit(model, question);
    EXPECT_FALSE(model.continues());
    model.play();
    drainEvents();
    watch("main_7", "movie", 600, 6000);
    EXPECT_FALSE(model.continues()) << "the player covers it";
    appState.playerDismissed();
    ASSERT_TRUE(waitUntil([&] { return provider.count(question) == 2; }));
    EXPECT_EQ(model.playText(), QStringLiteral("Continuar a ver"));
}

TEST_F(MovieDetailTest, ComingBackByTheMiniPlayerLooksAgainToo) {
    MovieDetailViewModel model(detailServices(), film());
    model.setIsInSight(true);
    drainEvents();
    model.play();
    drainEvents();
    watch("main_7", "movie", 600, 6000);
    appState.setShowMiniPlayer(true);
    ASSERT_TRUE(waitUntil([&] { return model.continues(); }));
}

TEST_F(MovieDetailTest, APageOutOfSightAsksNothing) {
    signIn();
    MovieDetailViewModel model(detailServices(), film());
    visit(model, question);
    model.setIsInSight(false);
    appState.playChannel(title(1, "live", "Desporto", "Um"));
    drainEvents();
    appState.playerDismissed();
    drainEvents();
    MovieDetailViewModel other(detailServices(), title(8, "movie", "Drama", "Sal"));
    visit(other, "get_vod_info 8");
    EXPECT_EQ(provider.count(question), 1);
}

TEST_F(MovieDetailTest, AnAnswerThatComesAfterItsPageIsDropped) {
    signIn();
    listSubtitles();
    provider.hold();
    auto model = std::make_unique<MovieDetailViewModel>(detailServices(), film());
    visit(*model, question);
    model.reset();
    provider.letGo();
    EXPECT_TRUE(waitForTransfers(std::chrono::minutes(1)));
    drainEvents();
}

} // namespace
} // namespace ondavia::testing
