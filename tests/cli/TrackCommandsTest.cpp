#include "CommandLine.h"

#include <QProcess>

#include <csignal>
#include <fstream>

namespace ondavia::cli::testing {
namespace {

using TrackCommands = CliTest;

TEST_F(TrackCommands, TracksListsTheSoundAndTheSubtitlesOfAFilm) {
    cli.fill(url());
    haveMade(QStringLiteral("main_100001"));
    const auto result =
        cli.run({QStringLiteral("tracks"), QStringLiteral("main_100001"), QStringLiteral("--json")});
    EXPECT_EQ(result.status, 0) << result.errors;
    const auto tracks = objectsOf(result.output);
    EXPECT_EQ(textsOf(tracks, "id"), (std::vector<std::string>{"audio-1", "audio-2", "embsub-3"}));
    EXPECT_EQ(textsOf(tracks, "kind"), (std::vector<std::string>{"audio", "audio", "subtitle"}));
    EXPECT_EQ(textsOf(tracks, "name").at(0), "AAC");
    EXPECT_TRUE(textsOf(tracks, "name").at(2).starts_with("POR")) << textsOf(tracks, "name").at(2);
    EXPECT_TRUE(tracks.at(0)[QStringLiteral("isEnabled")].toBool());
    EXPECT_FALSE(tracks.at(1)[QStringLiteral("isEnabled")].toBool());
    EXPECT_FALSE(tracks.at(2)[QStringLiteral("isEnabled")].toBool());
    EXPECT_EQ(tracks.at(2)[QStringLiteral("streamIndex")].toInt(), 3);
}

TEST_F(TrackCommands, SubtitlesOfAPipeThatNeverEndsCanBeInterrupted) {
    QProcess process;
    cli.prepare(process,
                {QStringLiteral("subtitles"), QStringLiteral("parse"), QStringLiteral("/dev/stdin")});
    process.start();
    // More than a pipe holds: once it has gone, the file is being read.
    constexpr int written = 1 << 20;
    process.write(QByteArray(written, ' '));
    ASSERT_TRUE(ondavia::testing::waitUntil([&] { return process.bytesToWrite() == 0; }));
    kill(static_cast<pid_t>(process.processId()), SIGINT);
    ASSERT_TRUE(ondavia::testing::waitUntil([&] { return process.state() == QProcess::NotRunning; }));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 128 + SIGINT);
}

TEST_F(TrackCommands, ASeriesHasNoTracks) {
    cli.fill(url());
    const auto result = cli.run({QStringLiteral("tracks"), QStringLiteral("main_series_2001")});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, "error: a series has no stream of its own")) << result.errors;
}

class SubtitleDiscovery : public CliTest {
protected:
    SubtitleDiscovery() { cli.fill(url()); }

    RunResult find(const char* id, const QStringList& more = {}) {
        return cli.run(
            QStringList{QStringLiteral("subtitles"), QStringLiteral("find"), QString::fromUtf8(id)} + more);
    }
};

TEST_F(SubtitleDiscovery, FindPrintsAnAddressALineWhereverTheProviderListsThem) {
    EXPECT_EQ(
        linesOf(find("main_100005").output),
        (std::vector<std::string>{url() + "/subtitles/100005.por.srt", url() + "/subtitles/100005.eng.vtt"}));
    EXPECT_EQ(linesOf(find("main_100006").output),
              std::vector<std::string>{url() + "/subtitles/100006.por.srt"});
    EXPECT_EQ(
        linesOf(find("main_100007").output),
        (std::vector<std::string>{url() + "/subtitles/100007.por.srt", url() + "/subtitles/100007.eng.vtt"}));
    EXPECT_EQ(linesOf(find("main_100008").output),
              std::vector<std::string>{url() + "/subtitles/100008.eng.vtt"});
}

TEST_F(SubtitleDiscovery, FindPrintsObjectsForPrograms) {
    const auto objects = objectsOf(find("main_100006", {QStringLiteral("--json")}).output);
    EXPECT_EQ(textsOf(objects, "id"), std::vector<std::string>{"main_100006"});
    EXPECT_EQ(textsOf(objects, "url"), std::vector<std::string>{url() + "/subtitles/100006.por.srt"});
}

TEST_F(SubtitleDiscovery, AFilmWithoutAnyIsNoFailure) {
    const auto result = find("main_100009");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(holds(result.errors, "the provider lists no subtitle files for this film")) << result.errors;
    EXPECT_TRUE(holds(result.errors, "VOD 100009: no subtitles found. Root keys: [info, movie_data]"))
        << result.errors;
}

TEST_F(SubtitleDiscovery, OnlyAFilmHasThem) {
    for (const char* id : {"main_1001", "main_series_2001"}) {
        const auto result = find(id);
        EXPECT_EQ(result.status, 1) << id;
        EXPECT_TRUE(holds(result.errors, "is no film")) << result.errors;
    }
    EXPECT_TRUE(holds(find("main_7").errors, "error: the catalogue has no item with the id main_7"));
}

class SubtitleCommands : public ::testing::Test {
protected:
    QString write(const std::string& name, const std::string& content) {
        const auto path = folder.path() / name;
        std::ofstream(path, std::ios::binary) << content;
        return QString::fromStdString(path.string());
    }
    RunResult parse(const QString& file, const QStringList& more = {}) {
        return cli.run(QStringList{QStringLiteral("subtitles"), QStringLiteral("parse"), file} + more);
    }

    ondavia::testing::TemporaryFolder folder;
    CommandLine cli;
};

TEST_F(SubtitleCommands, ParseListsWhatAFileShowsWithoutAnAccount) {
    const auto file = write("a.srt", "\xEF\xBB\xBF"
                                     "1\r\n00:00:03,500 --> 00:00:04,750\r\n<i>Olá</i>\r\nmundo\r\n\r\n"
                                     "00:00:01.000 --> 00:00:02.000\r\n\x1b[2JAdeus\r\n");
    const auto cues = objectsOf(parse(file, {QStringLiteral("--json")}).output);
    ASSERT_EQ(cues.size(), 2U);
    EXPECT_EQ(cues[0][QStringLiteral("start")].toDouble(), 1);
    EXPECT_EQ(cues[0][QStringLiteral("text")].toString().toStdString(), "\x1b[2JAdeus");
    EXPECT_EQ(cues[1][QStringLiteral("start")].toDouble(), 3.5);
    EXPECT_EQ(cues[1][QStringLiteral("end")].toDouble(), 4.75);
    EXPECT_EQ(cues[1][QStringLiteral("text")].toString().toStdString(), "Olá\nmundo");
    const auto shown = parse(file);
    EXPECT_EQ(shown.status, 0);
    EXPECT_TRUE(holds(shown.output, "Olá\\nmundo")) << shown.output;
}

TEST_F(SubtitleCommands, ParseReadsLatin1) {
    const auto result =
        parse(write("b.srt", "00:00:01,000 --> 00:00:02,000\nA\xE7\xE3o"), {QStringLiteral("--json")});
    EXPECT_EQ(textsOf(objectsOf(result.output), "text"), std::vector<std::string>{"Ação"});
}

TEST_F(SubtitleCommands, ParseSaysWhyThereIsNothing) {
    const auto none = parse(write("c.srt", "WEBVTT\n00:00:01.000 --> 00:00:02.000\nlost"));
    EXPECT_EQ(none.status, 1);
    EXPECT_TRUE(holds(none.errors, "error: no subtitles can be read out of ")) << none.errors;
    const auto missing = parse(QStringLiteral("/nowhere/at.all"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(holds(missing.errors, "error: cannot read /nowhere/at.all: No such file")) << missing.errors;
    const auto directory = parse(QString::fromStdString(folder.path().string()));
    EXPECT_EQ(directory.status, 1);
    EXPECT_TRUE(holds(directory.errors, "error: cannot read ")) << directory.errors;
    const auto endless = parse(QStringLiteral("/dev/zero"));
    EXPECT_EQ(endless.status, 1);
    EXPECT_TRUE(holds(endless.errors, "error: /dev/zero is longer than ")) << endless.errors;
}

} // namespace
} // namespace ondavia::cli::testing
