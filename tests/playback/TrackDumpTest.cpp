#include "playback/TrackDump.h"

#include "support/TestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> dumped(const FSMonitor& monitor) {
    const LogCapture log;
    logTrackDump(monitor);
    return log.messages(LogCategory::player, LogLevel::Debug);
}

QVariantMap index(const QVariant& value) {
    return {{QStringLiteral("stream_idx"), value}};
}

QVariantMap streams(const QVariant& value) {
    return {{QStringLiteral("streams"), value}};
}

TEST(TrackDump, WritesEveryLineInItsForm) {
    const QVariantMap video{{QStringLiteral("stream_idx"), 0},
                            {QStringLiteral("type"), QStringLiteral("video")},
                            {QStringLiteral("codec_name"), QStringLiteral("h264")},
                            {QStringLiteral("codec_profile"), QStringLiteral("High")},
                            {QStringLiteral("width"), QStringLiteral("1920")},
                            {QStringLiteral("height"), 1080},
                            {QStringLiteral("bitrate"), 4000000}};
    const QVariantMap audio{{QStringLiteral("stream_idx"), QStringLiteral("1")},
                            {QStringLiteral("type"), QStringLiteral("audio")},
                            {QStringLiteral("codec_name"), QStringLiteral("aac")},
                            {QStringLiteral("sample_rate"), 48000.0},
                            {QStringLiteral("bitrate"), QStringLiteral("128000")}};
    const QVariantMap subtitle{{QStringLiteral("stream_idx"), 2},
                               {QStringLiteral("type"), QStringLiteral("timedtext")},
                               {QStringLiteral("codec_name"), QStringLiteral("subrip")},
                               {QStringLiteral("language"), QStringLiteral("por")},
                               {QStringLiteral("title"), QStringLiteral("Forçada")}};
    const FSMonitor monitor{index(0), index(QStringLiteral("1")), index(2),
                            streams(QVariantList{video, audio, subtitle})};
    EXPECT_THAT(dumped(monitor),
                ElementsAre("==== First frame track dump ====", "Active video stream index: 0",
                            "Active audio stream index: 1", "Active subtitle stream index: 2",
                            "Stream count: 3",
                            "  [0] type=video codec=h264 profile=High 1920x1080 bitrate=4000000",
                            "  [1] type=audio codec=aac profile= 48000Hz bitrate=128000",
                            "  [2] type=timedtext codec=subrip profile= lang=por title=Forçada bitrate=0",
                            "================================"));
}

TEST(TrackDump, FallsBackWhereKeysAreMissingOrOfAnotherType) {
    const auto ofType = [](const char* type) {
        return QVariantMap{{QStringLiteral("type"), QString::fromLatin1(type)}};
    };
    const FSMonitor monitor{
        {},
        index(QStringLiteral("one")),
        index(QVariantList{}),
        streams(QVariantList{QVariantMap{}, ofType("video"), ofType("audio"), ofType("timedtext"),
                             ofType("data"),
                             QVariantMap{{QStringLiteral("type"), 1}, {QStringLiteral("codec_name"), 2}}})};
    EXPECT_THAT(dumped(monitor),
                ElementsAre("==== First frame track dump ====", "Active video stream index: -1",
                            "Active audio stream index: -1", "Active subtitle stream index: -1",
                            "Stream count: 6", "  [-1] type=? codec=? profile=  bitrate=0",
                            "  [-1] type=video codec=? profile= 0x0 bitrate=0",
                            "  [-1] type=audio codec=? profile= 0Hz bitrate=0",
                            "  [-1] type=timedtext codec=? profile= lang= title= bitrate=0",
                            "  [-1] type=data codec=? profile=  bitrate=0",
                            "  [-1] type=? codec=? profile=  bitrate=0", "================================"));
}

TEST(TrackDump, CountsNoStreamsWhereThereIsNoListOfDictionaries) {
    for (const QVariant& value :
         {QVariant(), QVariant(3), QVariant(QVariantMap{}), QVariant(QVariantList{QVariantMap{}, 3})}) {
        EXPECT_THAT(dumped({{}, {}, {}, streams(value)}), ::testing::Contains("Stream count: 0"));
        EXPECT_EQ(dumped({{}, {}, {}, streams(value)}).size(), 6U);
    }
}

} // namespace
} // namespace ondavia::testing
