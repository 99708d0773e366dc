#include "CommandLine.h"

namespace ondavia::cli::testing {
namespace {

TEST(Usage, WhatMakesNoCommandEndsWithTwoAndSaysWhy) {
    CommandLine cli;
    for (const char* line : {"--json",
                             "nonsense",
                             "list",
                             "list radio",
                             "list live --limit 0",
                             "list live --limit many",
                             "show",
                             "signin --server http://x.test",
                             "url main_1 --catchup 2026-03-01T21:05",
                             "url main_1 --catchup yesterday 90",
                             "url main_1 --catchup 2026-03-01T21:05 0",
                             "url main_1 --catchup 2026-03-01T21:05 long",
                             "play main_1 --for 0",
                             "play main_1 --from -1",
                             "zap",
                             "zap main_1 main_2 --for 0",
                             "favorites toggle",
                             "favorites nonsense",
                             "history remove",
                             "history clear",
                             "history clear live",
                             "history clear films",
                             "history nonsense",
                             "tracks",
                             "subtitles",
                             "subtitles parse",
                             "subtitles find",
                             "guide",
                             "guide now",
                             "guide day main_1",
                             "guide day main_1 ",
                             "guide day main_1 tomorrow",
                             "guide day main_1 2026-02-30",
                             "guide day main_1 2026-03-01T10:00"}) {
        const auto result = cli.run(words(line));
        EXPECT_EQ(result.status, 2) << line << ": " << result.errors;
        EXPECT_EQ(result.output, "") << line;
        EXPECT_TRUE(result.errors.starts_with("error: ")) << line << ": " << result.errors;
    }
}

TEST(Usage, ATypeThatIsNoneIsAnsweredWithThoseThatAre) {
    CommandLine cli;
    const auto result = cli.run(words("categories radio"));
    EXPECT_NE(result.errors.find("live, movies or series, not radio"), std::string::npos) << result.errors;
}

TEST(Usage, APasswordOnTheCommandLineIsNeitherTakenNorRepeated) {
    CommandLine cli;
    const auto result = cli.run(words("signin --server http://x.test --username ana --password typed-4711"));
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors.find("typed-4711"), std::string::npos) << result.errors;
}

TEST(Usage, HelpNamesEveryCommand) {
    CommandLine cli;
    const auto result = cli.run(words("--help"));
    EXPECT_EQ(result.status, 0);
    for (const char* command :
         {"signin", "signout", "account", "sync", "categories", "list", "show", "series", "url", "play",
          "zap", "tracks", "subtitles", "favorites", "history", "guide", "doctor"}) {
        EXPECT_NE(result.output.find(std::string("\n  ") + command + " "), std::string::npos) << command;
    }
}

TEST(Usage, CommandsThatNeedTheAccountSayHowToSignIn) {
    CommandLine cli;
    for (const char* line : {"account", "sync", "doctor", "guide load"}) {
        const auto result = cli.run(words(line));
        EXPECT_EQ(result.status, 1) << line;
        EXPECT_NE(result.errors.find("error: nobody is signed in: ondavia-cli signin"), std::string::npos)
            << result.errors;
    }
}

TEST(Usage, OutputThatCannotBeWrittenIsAFailure) {
    demo::DemoProvider provider({});
    CommandLine cli;
    cli.setEnvironment("ONDAVIA_LOG", "");
    const std::string url = provider.start();
    const auto signedIn =
        cli.run({QStringLiteral("signin"), QStringLiteral("--server"), QString::fromStdString(url),
                 QStringLiteral("--username"), QStringLiteral("demo")},
                "demo\n");
    ASSERT_EQ(signedIn.status, 0) << signedIn.errors;
    QProcess process;
    cli.prepare(process, {QStringLiteral("account")});
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start();
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardError().contains("error: standard output cannot be written"));
}

} // namespace
} // namespace ondavia::cli::testing
