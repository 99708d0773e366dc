#include "CommandLine.h"

namespace ondavia::cli::testing {
namespace {

class ZapCommand : public CliTest {
protected:
    ZapCommand() {
        cli.fill(url());
        for (const char* id : {"main_1001", "main_1002", "main_100001"}) {
            haveMade(QLatin1String(id));
        }
    }
    RunResult zap(const QStringList& more) { return cli.run(QStringList{QStringLiteral("zap")} + more); }
};

TEST_F(ZapCommand, TellsTheTimeToTheFirstFrameOfEach) {
    const auto result = zap({QStringLiteral("main_1001"), QStringLiteral("main_1002"),
                             QStringLiteral("--for"), QStringLiteral("8"), QStringLiteral("--json")});
    EXPECT_EQ(result.status, 0) << result.errors;
    const auto zaps = objectsOf(result.output);
    EXPECT_EQ(textsOf(zaps, "id"), (std::vector<std::string>{"main_1001", "main_1002"}));
    for (const auto& object : zaps) {
        EXPECT_FALSE(object[QStringLiteral("name")].toString().isEmpty());
        EXPECT_GT(object[QStringLiteral("milliseconds")].toInt(), 0);
        EXPECT_LT(object[QStringLiteral("milliseconds")].toInt(), 8000);
    }
    EXPECT_EQ(provider.mostStreams(), 1);
}

TEST_F(ZapCommand, SaysWhichOneShowedNoFrameAndFails) {
    provider.setFault("status-403:live");
    const auto result = zap({QStringLiteral("main_1001"), QStringLiteral("main_1002"),
                             QStringLiteral("--for"), QStringLiteral("1"), QStringLiteral("--json")});
    EXPECT_EQ(result.status, 1);
    const auto zaps = objectsOf(result.output);
    ASSERT_EQ(zaps.size(), 2U);
    EXPECT_FALSE(zaps.at(0).contains(QStringLiteral("milliseconds")));
    EXPECT_TRUE(holds(result.errors, "error: 2 of 2 showed no frame")) << result.errors;
    const auto lines =
        linesOf(zap({QStringLiteral("main_1001"), QStringLiteral("--for"), QStringLiteral("1")}).output);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines.at(0).starts_with("main_1001 ")) << lines.at(0);
    EXPECT_TRUE(lines.at(0).ends_with("no frame")) << lines.at(0);
}

TEST_F(ZapCommand, FailsAlsoWhereOnlyOneOfThemShowedNoFrame) {
    provider.setFault("status-403:live");
    const auto result = zap({QStringLiteral("main_1001"), QStringLiteral("main_100001"),
                             QStringLiteral("--for"), QStringLiteral("8"), QStringLiteral("--json")});
    EXPECT_EQ(result.status, 1);
    const auto zaps = objectsOf(result.output);
    ASSERT_EQ(zaps.size(), 2U);
    EXPECT_FALSE(zaps.at(0).contains(QStringLiteral("milliseconds")));
    EXPECT_GT(zaps.at(1)[QStringLiteral("milliseconds")].toInt(), 0);
    EXPECT_TRUE(holds(result.errors, "error: 1 of 2 showed no frame")) << result.errors;
}

TEST_F(ZapCommand, PlaysNothingWhereAnIdIsNotThere) {
    const auto result = zap({QStringLiteral("main_1001"), QStringLiteral("main_9")});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.output.empty()) << result.output;
    EXPECT_TRUE(holds(result.errors, "the catalogue has no item with the id main_9")) << result.errors;
}

} // namespace
} // namespace ondavia::cli::testing
