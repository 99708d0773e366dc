#include "CommandLine.h"

#include "support/FullDisk.h"

#include <fstream>
#include <gmock/gmock.h>

namespace ondavia::cli::testing {
namespace {

namespace fs = std::filesystem;
using ondavia::testing::SmallFilesystem;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::Not;

TEST_F(CliTest, OnAFullDiskReadingGoesOnAndEveryCommandSaysSo) {
    const SmallFilesystem disk(std::size_t{48} << 20);
    if (!disk.isMounted()) {
        GTEST_SKIP() << SmallFilesystem::whyNotMounted;
    }
    cli.setEnvironment("ONDAVIA_DATA_DIR", (disk.path() / "data").c_str());
    cli.fill(url());
    ASSERT_EQ(cli.run({QStringLiteral("guide"), QStringLiteral("load")}).status, 0);
    const auto live =
        objectsOf(cli.run({QStringLiteral("list"), QStringLiteral("live"), QStringLiteral("--limit"),
                           QStringLiteral("1"), QStringLiteral("--json")})
                      .output);
    ASSERT_EQ(live.size(), 1U);
    const QString id = live.front()[QLatin1String("id")].toString();
    disk.fill();
    for (const QStringList& reading :
         {QStringList{QStringLiteral("list"), QStringLiteral("live")}, QStringList{QStringLiteral("account")},
          QStringList{QStringLiteral("show"), id},
          QStringList{QStringLiteral("guide"), QStringLiteral("now"), id}}) {
        SCOPED_TRACE(reading.join(QLatin1Char(' ')).toStdString());
        const RunResult result = cli.run(reading);
        EXPECT_EQ(result.status, 0);
        EXPECT_NE(result.output, "");
        EXPECT_THAT(result.errors, HasSubstr("the disk is full"));
    }
    for (const QStringList& writing : {QStringList{QStringLiteral("sync")},
                                       QStringList{QStringLiteral("guide"), QStringLiteral("load")}}) {
        SCOPED_TRACE(writing.join(QLatin1Char(' ')).toStdString());
        const RunResult result = cli.run(writing);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.errors, HasSubstr("the disk is full"));
        EXPECT_THAT(result.errors, AnyOf(HasSubstr("no room is left"), HasSubstr("No space left on device")));
    }
    ASSERT_TRUE(isPasswordStored(disk.path())) << "the catalogue's addresses";
    const RunResult signedOut = cli.run({QStringLiteral("signout")});
    EXPECT_EQ(signedOut.status, 0) << signedOut.errors;
    EXPECT_FALSE(isPasswordStored(disk.path()));
    disk.makeRoom();
    cli.signIn(url());
    const RunResult after = cli.run({QStringLiteral("sync")});
    EXPECT_EQ(after.status, 0) << after.errors;
    EXPECT_THAT(after.errors, Not(HasSubstr("the disk is full")));
}

TEST_F(CliTest, WhatWasLostIsToldOnStandardError) {
    cli.fill(url());
    const fs::path data = cli.folder();
    fs::resize_file(data / "store" / "user.db", 5000);
    const RunResult result = cli.run({QStringLiteral("list"), QStringLiteral("live")});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, HasSubstr("user.db was damaged and is kept as user.db.damaged-"));
    EXPECT_THAT(cli.run({QStringLiteral("list"), QStringLiteral("live")}).errors, Not(HasSubstr("damaged")));
    std::ofstream(data / "vault" / "vault.json", std::ios::trunc) << "{";
    const RunResult unknown = cli.run({QStringLiteral("account")});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.errors, HasSubstr("vault: the file was damaged and is kept as vault.json.damaged"));
}

} // namespace
} // namespace ondavia::cli::testing
