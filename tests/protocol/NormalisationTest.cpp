#include "ClientSupport.h"

#include <gtest/gtest.h>

namespace ondavia {
namespace {

const CategoryMap categories{{"5", "Noticias"}, {"9", "Acao"}};

Channel movie(XtreamVodStream row) {
    row.streamId = row.streamId.value_or(42);
    row.name = row.name ? row.name : "Filme";
    return testing::makeClient("http://h")->normalizeVodStreams({&row, 1}, "main", categories).at(0);
}

Channel movieNamed(const std::string& name) {
    XtreamVodStream row;
    row.name = name;
    return movie(row);
}

Channel live(XtreamLiveStream row) {
    row.streamId = row.streamId.value_or(17);
    row.name = row.name ? row.name : "RTP";
    return testing::makeClient("http://h")->normalizeLiveStreams({&row, 1}, "main", categories).at(0);
}

Channel series(XtreamSeriesItem row) {
    row.seriesId = row.seriesId.value_or(77);
    row.name = row.name ? row.name : "Serie";
    return testing::makeClient("http://h")->normalizeSeriesList({&row, 1}, "main", categories).at(0);
}

Channel seriesNamed(const std::string& name) {
    XtreamSeriesItem row;
    row.name = name;
    return series(row);
}

/// `channel` with the one field that no test can foretell set to `other`'s.
Channel builtLike(Channel channel, const Channel& other) {
    channel.addedAt = other.addedAt;
    return channel;
}

TEST(Playlist, isTheCallersAndStandsInEveryId) {
    const auto client = testing::makeClient("http://h");
    XtreamLiveStream liveRow;
    liveRow.streamId = 17;
    liveRow.name = "RTP";
    XtreamVodStream movieRow;
    movieRow.streamId = 42;
    movieRow.name = "Filme";
    XtreamSeriesItem seriesRow;
    seriesRow.seriesId = 77;
    seriesRow.name = "Serie";
    for (const Channel& item : {client->normalizeLiveStreams({&liveRow, 1}, "other", {}).at(0),
                                client->normalizeVodStreams({&movieRow, 1}, "other", {}).at(0),
                                client->normalizeSeriesList({&seriesRow, 1}, "other", {}).at(0)}) {
        EXPECT_EQ(item.playlistId, "other") << item.id;
        EXPECT_TRUE(item.id.starts_with("other_")) << item.id;
    }
}

TEST(LiveStream, becomesAChannel) {
    XtreamLiveStream row;
    row.num = 3;
    row.name = "RTP 1 (2020)";
    row.streamId = 17;
    row.streamIcon = "icon";
    row.epgChannelId = "rtp1.pt";
    row.added = "1609459200";
    row.isAdult = "1";
    row.categoryId = "5";
    row.tvArchive = 1;
    row.tvArchiveDuration = 7;
    Channel expected;
    expected.id = "main_17";
    expected.playlistId = "main";
    expected.streamId = 17;
    expected.num = 3;
    expected.name = "RTP 1 (2020)";
    expected.type = "live";
    expected.groupTitle = "Noticias";
    expected.logo = "icon";
    expected.url = "http://h/live/u/p/17.ts";
    expected.adult = true;
    expected.epgChannelId = "rtp1.pt";
    expected.tvArchive = true;
    expected.tvArchiveDuration = 7;
    const Channel channel = live(row);
    EXPECT_EQ(channel, builtLike(expected, channel));
}

TEST(Movie, becomesAChannel) {
    XtreamVodStream row;
    row.num = 4;
    row.name = "Matrix (1999)";
    row.streamId = 42;
    row.streamIcon = "icon";
    row._rating.value = "8.7";
    row.added = "1";
    row.isAdult = "0";
    row.categoryId = "9";
    row.containerExtension = "mkv";
    row.plot = "p";
    row.cast = "c";
    row.director = "d";
    row.genre = "g";
    row._year.value = "2000";
    row._releaseDate.value = "1999-03-31";
    row._youtubeTrailer.value = "abc";
    row._episodeRunTime.value = "136";
    Channel expected;
    expected.id = "main_42";
    expected.playlistId = "main";
    expected.streamId = 42;
    expected.num = 4;
    expected.name = "Matrix";
    expected.type = "movie";
    expected.groupTitle = "Acao";
    expected.logo = "icon";
    expected.url = "http://h/movie/u/p/42.mkv";
    expected.plot = "p";
    expected.cast = "c";
    expected.director = "d";
    expected.genre = "g";
    expected.rating = "8.7";
    expected.year = "1999";
    expected.youtubeTrailer = "abc";
    expected.releaseDate = "1999-03-31";
    expected.duration = "2h 16m";
    expected.containerExtension = "mkv";
    const Channel channel = movie(row);
    EXPECT_EQ(channel, builtLike(expected, channel));
}

TEST(Series, becomesAChannel) {
    XtreamSeriesItem row;
    row.num = 5;
    row.name = "Conta-me (2007)";
    row.seriesId = 77;
    row.cover = "cover";
    row.plot = "p";
    row.cast = "c";
    row.director = "d";
    row.genre = "g";
    row.releaseDate = "2015-03-01";
    row._rating.value = "9";
    row.backdropPath = {"b1", "b2"};
    row.youtubeTrailer = "y";
    row.categoryId = "9";
    Channel expected;
    expected.id = "main_series_77";
    expected.playlistId = "main";
    expected.streamId = 77;
    expected.num = 5;
    expected.name = "Conta-me";
    expected.type = "series";
    expected.groupTitle = "Acao";
    expected.logo = "cover";
    expected.seriesId = 77;
    expected.plot = "p";
    expected.cast = "c";
    expected.director = "d";
    expected.genre = "g";
    expected.rating = "9";
    expected.year = "2007";
    expected.backdrop = "b1";
    expected.youtubeTrailer = "y";
    expected.releaseDate = "2015-03-01";
    const Channel channel = series(row);
    EXPECT_EQ(channel, builtLike(expected, channel));
}

TEST(Normalisation, dropsRowsWithoutIdOrNameAndKeepsTheOrder) {
    const auto client = testing::makeClient("http://h");
    const auto namesOf = [](const std::vector<Channel>& channels) {
        std::vector<std::string> names;
        for (const Channel& channel : channels) {
            names.push_back(channel.name);
        }
        return names;
    };
    const std::vector<std::string> expected{"B", "", "A"};
    const auto rowsOf = [](auto row, auto id) {
        std::vector<decltype(row)> rows(5, row);
        rows[0].name = "B";
        rows[1].name = "no id";
        rows[3].name = "";
        rows[4].name = "A";
        for (const int index : {0, 2, 3, 4}) {
            rows[static_cast<std::size_t>(index)].*id = index;
        }
        return rows;
    };
    auto lives = rowsOf(XtreamLiveStream{}, &XtreamLiveStream::streamId);
    auto movies = rowsOf(XtreamVodStream{}, &XtreamVodStream::streamId);
    auto shows = rowsOf(XtreamSeriesItem{}, &XtreamSeriesItem::seriesId);
    EXPECT_EQ(namesOf(client->normalizeLiveStreams(lives, "main", {})), expected);
    EXPECT_EQ(namesOf(client->normalizeVodStreams(movies, "main", {})), expected);
    EXPECT_EQ(namesOf(client->normalizeSeriesList(shows, "main", {})), expected);
}

TEST(Normalisation, setsTheTimeOfAdditionToNow) {
    const Date before = currentDate();
    const Channel channel = movieNamed("A");
    EXPECT_GE(channel.addedAt, before);
    EXPECT_LE(channel.addedAt, currentDate());
    EXPECT_EQ(channel.lastAccessedAt, std::nullopt);
}

/// The group of what `channelOf` makes of a row under `categoryId`.
template<class Row>
std::string groupOf(Channel (*channelOf)(Row), const std::optional<std::string>& categoryId) {
    Row row;
    row.categoryId = categoryId;
    return channelOf(row).groupTitle;
}

TEST(Normalisation, groupsUnknownCategoriesTogether) {
    for (const auto& [categoryId, group] : std::vector<std::pair<std::optional<std::string>, std::string>>{
             {std::nullopt, "Sem Categoria"}, {"404", "Sem Categoria"}, {"5", "Noticias"}}) {
        EXPECT_EQ(groupOf(live, categoryId), group);
        EXPECT_EQ(groupOf(movie, categoryId), group);
        EXPECT_EQ(groupOf(series, categoryId), group);
    }
    XtreamLiveStream row;
    row.categoryId = "5";
    row.name = "A";
    row.streamId = 1;
    EXPECT_EQ(testing::makeClient("http://h")->normalizeLiveStreams({&row, 1}, "main", {}).at(0).groupTitle,
              "Sem Categoria");
}

TEST(Normalisation, looksAMissingCategoryUpUnderTheEmptyText) {
    XtreamLiveStream row;
    row.name = "A";
    row.streamId = 1;
    const auto channels =
        testing::makeClient("http://h")->normalizeLiveStreams({&row, 1}, "main", {{"", "Vazia"}});
    EXPECT_EQ(channels.at(0).groupTitle, "Vazia");
}

TEST(Normalisation, takesZeroForAMissingNumber) {
    EXPECT_EQ(live({}).num, 0);
    EXPECT_EQ(movie({}).num, 0);
    EXPECT_EQ(series({}).num, 0);
    EXPECT_EQ(live({}).tvArchiveDuration, 0);
}

TEST(Normalisation, keepsSeriesAndMoviesOfOneNumberApart) {
    XtreamVodStream row;
    row.streamId = 77;
    EXPECT_EQ(movie(row).id, "main_77");
    EXPECT_EQ(series({}).id, "main_series_77");
}

TEST(LiveStream, hasCatchUpForOneOnly) {
    XtreamLiveStream row;
    EXPECT_FALSE(live(row).tvArchive);
    row.tvArchive = 2;
    EXPECT_FALSE(live(row).tvArchive);
    row.tvArchive = 1;
    EXPECT_TRUE(live(row).tvArchive);
}

TEST(Normalisation, takesOnlyTheTextOneForAdult) {
    for (const auto& [flag, adult] : std::vector<std::pair<std::optional<std::string>, bool>>{
             {std::nullopt, false}, {"0", false}, {"", false}, {"01", false}, {"true", false}, {"1", true}}) {
        XtreamLiveStream liveRow;
        liveRow.isAdult = flag;
        EXPECT_EQ(live(liveRow).adult, adult);
        XtreamVodStream movieRow;
        movieRow.isAdult = flag;
        EXPECT_EQ(movie(movieRow).adult, adult);
    }
}

TEST(Movie, takesItsYearFromTheTitleFirst) {
    XtreamVodStream row;
    row.name = "Matrix (1999)";
    row._year.value = "2000";
    EXPECT_EQ(movie(row).year, "1999");
    row.name = "1999 Matrix";
    EXPECT_EQ(movie(row).year, "2000");
    EXPECT_EQ(movie(row).name, "1999 Matrix");
    row._year.value.reset();
    EXPECT_EQ(movie(row).year, std::nullopt);
}

TEST(Normalisation, keepsANameWhoseYearStandsElsewhere) {
    for (const char* name : {"1999 Matrix", "(1999) Matrix", "Matrix (19990)"}) {
        EXPECT_EQ(movieNamed(name).name, name);
        EXPECT_EQ(movieNamed(name).year, std::nullopt);
        EXPECT_EQ(seriesNamed(name).name, name);
        EXPECT_EQ(seriesNamed(name).year, std::nullopt);
    }
    EXPECT_EQ(movieNamed("(1999)").name, "");
    EXPECT_EQ(movieNamed("(1999)").year, "1999");
    EXPECT_EQ(seriesNamed("(1999)").name, "");
    EXPECT_EQ(seriesNamed("(1999)").year, "1999");
}

TEST(Movie, hasAnExtensionOfMp4ByDefault) {
    EXPECT_EQ(movie({}).containerExtension, "mp4");
    EXPECT_EQ(movie({}).url, "http://h/movie/u/p/42.mp4");
}

TEST(Movie, keepsAnExtensionThatIsEmpty) {
    XtreamVodStream row;
    row.containerExtension = "";
    EXPECT_EQ(movie(row).containerExtension, "");
    EXPECT_EQ(movie(row).url, "http://h/movie/u/p/42.");
}

TEST(Movie, showsItsMinutesAsHours) {
    using Duration = std::optional<std::string>;
    const auto shown = [](const Duration& runTime) {
        XtreamVodStream row;
        row._episodeRunTime.value = runTime;
        return movie(row).duration;
    };
    EXPECT_EQ(shown(std::nullopt), std::nullopt);
    EXPECT_EQ(shown("125"), "2h 05m");
    EXPECT_EQ(shown("60"), "1h 00m");
    EXPECT_EQ(shown("61"), "1h 01m");
    EXPECT_EQ(shown("70"), "1h 10m");
    EXPECT_EQ(shown("59"), "59m");
    EXPECT_EQ(shown("45"), "45m");
    EXPECT_EQ(shown("5"), "5m");
    EXPECT_EQ(shown("+5"), "5m");
    EXPECT_EQ(shown("6000"), "100h 00m");
    for (const char* text : {"", "0", "-5", "1h30", " 90", "90 min", "7.5", "99999999999999999999"}) {
        EXPECT_EQ(shown(text), text);
    }
}

TEST(Series, fallsBackToTheReleaseDateForItsYear) {
    XtreamSeriesItem row;
    row.releaseDate = "2015-03-01";
    EXPECT_EQ(series(row).year, "2015");
    row.releaseDate = "2015";
    EXPECT_EQ(series(row).year, "2015");
    row.releaseDate = "201";
    EXPECT_EQ(series(row).year, std::nullopt);
    row.releaseDate = "";
    EXPECT_EQ(series(row).year, std::nullopt);
    row.releaseDate.reset();
    EXPECT_EQ(series(row).year, std::nullopt);
    row.releaseDate = "\xC3\xA7\xC3\xA7\xC3\xA7\xC3\xA7-1";
    EXPECT_EQ(series(row).year, "\xC3\xA7\xC3\xA7\xC3\xA7\xC3\xA7");
}

TEST(Series, hasNoURLAndMayLackABackdrop) {
    XtreamSeriesItem row;
    row.backdropPath = std::vector<std::string>();
    EXPECT_EQ(series(row).backdrop, std::nullopt);
    EXPECT_EQ(series({}).backdrop, std::nullopt);
    EXPECT_EQ(series({}).url, "");
    EXPECT_EQ(series({}).containerExtension, std::nullopt);
}

} // namespace
} // namespace ondavia
