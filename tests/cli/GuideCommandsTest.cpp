#include "CommandLine.h"

#include <QDateTime>
#include <QFile>
#include <QTimeZone>

namespace ondavia::cli::testing {
namespace {

QDateTime timeOf(const QJsonObject& program, const char* key) {
    return QDateTime::fromString(program[QLatin1String(key)].toString(), Qt::ISODate);
}

class GuideCommands : public CliTest {
protected:
    GuideCommands() { cli.fill(url()); }

    RunResult guide(const QStringList& arguments) {
        return cli.run(QStringList{QStringLiteral("guide"), QStringLiteral("--json")} + arguments);
    }
    std::vector<QJsonObject> programs(const QStringList& arguments) {
        const auto result = guide(arguments);
        EXPECT_EQ(result.status, 0) << result.errors;
        return objectsOf(result.output);
    }
    /// The first live channel that has a guide, or has none.
    QString channel(bool withGuide) {
        const auto list = cli.run({QStringLiteral("list"), QStringLiteral("live"), QStringLiteral("--json")});
        for (const auto& row : objectsOf(list.output)) {
            if (row[QLatin1String("epgChannelId")].toString().isEmpty() != withGuide) {
                return row[QLatin1String("id")].toString();
            }
        }
        ADD_FAILURE() << "the provider has no such channel";
        return {};
    }
    QString today() { return QDate::currentDate().toString(Qt::ISODate); }
};

TEST_F(GuideCommands, LoadBringsTheGuideAndKeepsTheTime) {
    const auto loaded = programs({QStringLiteral("load")});
    EXPECT_GT(loaded.at(0)[QLatin1String("programs")].toInt(), 100);
    EXPECT_TRUE(timeOf(loaded.at(0), "lastEpgLoad").isValid());
    QFile settings(QString::fromStdString((cli.folder() / "settings/settings.json").string()));
    ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
    EXPECT_TRUE(settings.readAll().contains("ondavia_last_epg_load"));
}

TEST_F(GuideCommands, NowIsTheProgrammeThatIsOn) {
    guide({QStringLiteral("load")});
    const auto found = programs({QStringLiteral("now"), channel(true)});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_LE(timeOf(found[0], "start"), QDateTime::currentDateTimeUtc());
    EXPECT_GT(timeOf(found[0], "stop"), QDateTime::currentDateTimeUtc().addSecs(-60));
    EXPECT_FALSE(found[0][QLatin1String("title")].toString().isEmpty());
}

TEST_F(GuideCommands, DayIsADayOfTheDevicesCalendarByStart) {
    cli.setEnvironment("TZ", "America/Sao_Paulo");
    guide({QStringLiteral("load")});
    const QTimeZone zone("America/Sao_Paulo");
    const QDate day = QDateTime::currentDateTimeUtc().toTimeZone(zone).date();
    const auto found = programs({QStringLiteral("day"), channel(true), day.toString(Qt::ISODate)});
    ASSERT_GT(found.size(), 5U);
    QDateTime last = day.startOfDay(zone);
    for (const auto& program : found) {
        EXPECT_GE(timeOf(program, "start"), last);
        last = timeOf(program, "start");
    }
    EXPECT_LT(last, day.addDays(1).startOfDay(zone));
}

TEST_F(GuideCommands, ShortAddsTheProvidersListingsOnce) {
    const QString id = channel(true);
    const auto first = programs({QStringLiteral("short"), id});
    EXPECT_FALSE(first.empty());
    EXPECT_EQ(programs({QStringLiteral("short"), id}), first);
    EXPECT_FALSE(programs({QStringLiteral("day"), id, today()}).empty());
}

TEST_F(GuideCommands, AnEmptyGuideIsToldOnStandardError) {
    for (const QStringList& arguments : {QStringList{QStringLiteral("now"), channel(true)},
                                         {QStringLiteral("day"), channel(true), today()}}) {
        const auto result = guide(arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(holds(result.errors, "the guide holds nothing")) << result.errors;
    }
    provider.setFault("html-200:xmltv");
    const auto loaded = guide({QStringLiteral("load")});
    EXPECT_EQ(loaded.status, 0);
    EXPECT_TRUE(holds(loaded.errors, "warning: the provider's guide holds no programme")) << loaded.errors;
}

TEST_F(GuideCommands, WhatHasNoGuideSaysSo) {
    for (const char* command : {"now", "short"}) {
        const auto without = guide({QLatin1String(command), channel(false)});
        EXPECT_EQ(without.status, 1);
        EXPECT_TRUE(holds(without.errors, "error: the provider names no guide for")) << without.errors;
        const auto unknown = guide({QLatin1String(command), QStringLiteral("main_nothing")});
        EXPECT_EQ(unknown.status, 1);
        EXPECT_TRUE(holds(unknown.errors, "error: the catalogue has no item")) << unknown.errors;
    }
}

TEST_F(GuideCommands, AProviderThatIsAwayKeepsTheGuide) {
    guide({QStringLiteral("load")});
    const QString id = channel(true);
    provider.stop();
    const auto loaded = guide({QStringLiteral("load")});
    EXPECT_EQ(loaded.status, 1);
    EXPECT_TRUE(holds(loaded.errors, "error: nobody answers")) << loaded.errors;
    EXPECT_EQ(programs({QStringLiteral("now"), id}).size(), 1U);
    const auto shortGuide = guide({QStringLiteral("short"), id});
    EXPECT_TRUE(holds(shortGuide.errors, "the provider has no short guide")) << shortGuide.errors;
}

} // namespace
} // namespace ondavia::cli::testing
