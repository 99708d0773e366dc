#include "DemoTestSupport.h"
#include "demo/Catalogue.h"

#include <QStringList>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <thread>

namespace ondavia::demo {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::size_t packetSize = 188;

/// Follows a transport stream and notes what a decoder would stumble over.
class StreamReader final {
public:
    void read(const char* data, std::size_t length) {
        m_pending.append(data, length);
        std::size_t start = 0;
        for (; start + packetSize <= m_pending.size(); start += packetSize) {
            packet(reinterpret_cast<const unsigned char*>(m_pending.data()) + start);
        }
        m_pending.erase(0, start);
    }

    [[nodiscard]] double seconds() const { return m_first ? (m_clock - *m_first) / 90000.0 : 0.0; }
    [[nodiscard]] int faults() const { return m_faults; }

private:
    void packet(const unsigned char* p) {
        m_faults += p[0] == 0x47 ? 0 : 1;
        const unsigned id = ((p[1] & 0x1FU) << 8U) | p[2];
        if ((p[3] & 0x10U) != 0) {
            const auto last = m_counters.find(id);
            // The tables are sent once more at the start, so that the first gap of theirs is none.
            if (last != m_counters.end() && ((last->second + 1) & 0x0FU) != (p[3] & 0x0FU) && id != 0 &&
                id != 17 && id != 4096) {
                ++m_faults;
            }
            m_counters[id] = p[3] & 0x0FU;
        }
        if ((p[3] & 0x20U) != 0 && p[4] >= 7 && (p[5] & 0x10U) != 0) {
            const double clock = static_cast<double>(
                (std::uint64_t{p[6]} << 25U) | (std::uint64_t{p[7]} << 17U) | (std::uint64_t{p[8]} << 9U) |
                (std::uint64_t{p[9]} << 1U) | (p[10] >> 7U));
            if (m_first && (clock < m_clock || clock > m_clock + 18000)) {
                ++m_faults;
            }
            m_first = m_first.value_or(clock);
            m_clock = clock;
        }
    }

    std::string m_pending;
    std::map<unsigned, unsigned> m_counters;
    std::optional<double> m_first;
    double m_clock = 0;
    int m_faults = 0;
};

QStringList streamsOf(const std::string& url) {
    const QByteArray text =
        outputOf(QStringLiteral("ffprobe"),
                 {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                  QStringLiteral("stream=codec_name:stream_tags=language"), QStringLiteral("-of"),
                  QStringLiteral("csv=p=0"), QString::fromStdString(url)});
    return QString::fromUtf8(text).trimmed().split(QLatin1Char('\n'));
}

TEST(DemoMedia, FilmsHaveTwoLanguagesAndASubtitleInBothContainers) {
    RunningProvider demo;
    const QStringList mp4 = streamsOf(demo.url() + "/movie/demo/demo/100001.mp4");
    EXPECT_EQ(mp4, QStringList({QStringLiteral("h264,und"), QStringLiteral("aac,por"),
                                QStringLiteral("aac,eng"), QStringLiteral("mov_text,por")}));
    const QStringList mkv = streamsOf(demo.url() + "/movie/demo/demo/100001.mkv");
    ASSERT_EQ(mkv.size(), 4);
    EXPECT_EQ(mkv.at(2), QStringLiteral("aac,eng"));
    EXPECT_EQ(mkv.at(3), QStringLiteral("subrip,por"));
    const QStringList episode = streamsOf(demo.url() + "/series/demo/demo/20010101.mp4");
    EXPECT_EQ(episode, QStringList({QStringLiteral("h264,und"), QStringLiteral("aac,por")}));
}

/// The picture of a film at a second: 64 by 36 colours.
QByteArray pictureAt(const std::string& url, const char* seconds) {
    return outputOf(
        QStringLiteral("ffmpeg"),
        {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-ss"), QString::fromLatin1(seconds),
         QStringLiteral("-i"), QString::fromStdString(url), QStringLiteral("-frames:v"), QStringLiteral("1"),
         QStringLiteral("-vf"), QStringLiteral("scale=64:36:flags=area"), QStringLiteral("-pix_fmt"),
         QStringLiteral("rgb24"), QStringLiteral("-f"), QStringLiteral("rawvideo"), QStringLiteral("-")});
}

/// How far two pictures are apart, of 255.
double distance(const QByteArray& one, const QByteArray& other) {
    double sum = 0;
    for (qsizetype at = 0; at < std::min(one.size(), other.size()); ++at) {
        sum += std::abs(static_cast<unsigned char>(one[at]) - static_cast<unsigned char>(other[at]));
    }
    return sum / static_cast<double>(one.size());
}

TEST(DemoMedia, OneFilmIsFortyMinutesLongAndEverySecondOfItLooksDifferent) {
    RunningProvider demo;
    const std::string path = "/movie/demo/demo/" + std::to_string(Catalogue::longFilmId) + ".mp4";
    const QByteArray length =
        outputOf(QStringLiteral("ffprobe"),
                 {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                  QStringLiteral("format=duration"), QStringLiteral("-of"), QStringLiteral("csv=p=0"),
                  QString::fromStdString(demo.url() + path)});
    EXPECT_NEAR(length.toDouble(), 2400, 1);
    EXPECT_LT(std::stoull(demo.client().Head(path)->get_header_value("Content-Length")), 48ULL << 20)
        << "small";
    const QByteArray now = pictureAt(demo.url() + path, "1200.2");
    ASSERT_EQ(now.size(), 64 * 36 * 3);
    EXPECT_GT(distance(now, pictureAt(demo.url() + path, "1201.2")), 0.05) << "the time is in the picture";
    EXPECT_GT(distance(now, pictureAt(demo.url() + path, "1260.2")), 10) << "another minute, another colour";
    const std::string subtitles =
        demo.get("/subtitles/" + std::to_string(Catalogue::longFilmId) + ".por.srt");
    EXPECT_NE(subtitles.find("00:39:56,500 --> "), std::string::npos);
}

TEST(DemoMedia, EpisodesOfASeasonDifferAndNameTheirSubtitles) {
    RunningProvider demo;
    const QJsonObject season =
        demo.api("get_series_info", "&series_id=2001").object()[QStringLiteral("episodes")].toObject();
    const QJsonArray episodes = season[QStringLiteral("1")].toArray();
    ASSERT_GE(episodes.size(), 4);
    std::vector<QByteArray> pictures;
    for (int index = 0; index < 3; ++index) {
        const std::string id = episodes[index][QStringLiteral("id")].toString().toStdString();
        pictures.push_back(pictureAt(demo.url() + "/series/demo/demo/" + id + ".mp4", "2"));
        const QJsonArray addresses = episodes[index][QStringLiteral("subtitles")].toArray();
        ASSERT_EQ(addresses.size(), 2);
        const std::string address = addresses[0].toString().toStdString();
        ASSERT_TRUE(address.starts_with(demo.url())) << address;
        EXPECT_NE(demo.get(address.substr(demo.url().size())).find(" --> "), std::string::npos);
    }
    EXPECT_GT(distance(pictures[0], pictures[1]), 5);
    EXPECT_GT(distance(pictures[1], pictures[2]), 5);
    EXPECT_TRUE(episodes[3][QStringLiteral("subtitles")].toArray().isEmpty());
}

TEST(DemoMedia, AnswersRangesWithTheBytesOfThem) {
    RunningProvider demo;
    const std::string path = "/movie/demo/demo/100001.mp4";
    const std::string whole = demo.get(path);
    const auto part = [&](const std::string& range) { return demo.client().Get(path, {{"Range", range}}); };
    EXPECT_EQ(part("bytes=100-199")->status, 206);
    EXPECT_EQ(part("bytes=100-199")->body, whole.substr(100, 100));
    EXPECT_EQ(part("bytes=-50")->body, whole.substr(whole.size() - 50));
    EXPECT_EQ(part("bytes=1000-99999999999")->body, whole.substr(1000));
    EXPECT_EQ(part("bytes=99999999999-")->status, 416);
    demo.get("/movie/demo/demo/5.mp4", 404);
}

TEST(DemoMedia, LiveStreamsStartWithABurstAndGoOnAtRealPace) {
    RunningProvider demo;
    StreamReader reader;
    std::optional<Clock::time_point> started;
    double early = 0;
    demo.client().Get("/live/demo/demo/1001.ts", [&](const char* data, std::size_t length) {
        started = started.value_or(Clock::now());
        reader.read(data, length);
        const auto elapsed = Clock::now() - *started;
        early = elapsed < 300ms ? reader.seconds() : early;
        return elapsed < 11s;
    });
    EXPECT_NEAR(early, 3.0, 0.8);
    // Eleven seconds and the burst: the seam between two rounds of the loop lies in between.
    EXPECT_NEAR(reader.seconds(), 14.0, 1.0);
    EXPECT_EQ(reader.faults(), 0);
    EXPECT_TRUE(ondavia::testing::waitUntil([&] { return demo.provider().openStreams() == 0; }));
}

TEST(DemoMedia, ChannelsShowPicturesOfTheirOwn) {
    RunningProvider demo;
    const auto firstBytes = [&](const std::string& id) {
        std::string bytes;
        demo.client().Get("/live/demo/demo/" + id + ".ts", [&](const char* data, std::size_t length) {
            bytes.append(data, length);
            return bytes.size() < 60000;
        });
        return bytes;
    };
    EXPECT_NE(firstBytes("1001"), firstBytes("1002"));
    demo.get("/live/demo/demo/7.ts", 404);
}

TEST(DemoMedia, RecordingsCanBeReadAnywhereAndHaveNoSeams) {
    RunningProvider demo;
    const std::string path = "/timeshift/demo/demo/2/2026-03-01:21-05/1001.ts";
    const std::string whole = demo.get(path);
    StreamReader reader;
    reader.read(whole.data(), whole.size());
    EXPECT_NEAR(reader.seconds(), 124.8, 1.0);
    EXPECT_EQ(reader.faults(), 0);
    const auto part = demo.client().Get(path, {{"Range", "bytes=3000001-3001000"}});
    EXPECT_EQ(part->body, whole.substr(3000001, 1000));
    EXPECT_EQ(
        outputOf(QStringLiteral("ffmpeg"),
                 {QStringLiteral("-v"), QStringLiteral("warning"), QStringLiteral("-i"),
                  QString::fromStdString(demo.url() + path), QStringLiteral("-c"), QStringLiteral("copy"),
                  QStringLiteral("-f"), QStringLiteral("null"), QStringLiteral("-")}),
        QByteArray());
    demo.get("/timeshift/demo/demo/2/2026-03-01:21-05/1013.ts", 404);
}

TEST(DemoMedia, CountsOpenStreamsAndRefusesTooMany) {
    RunningProvider demo({.maxConnections = 1});
    std::string connections;
    int second = 0;
    demo.client().Get("/live/demo/demo/1001.ts", [&](const char*, std::size_t) {
        httplib::Client other(demo.url());
        const QByteArray login = QByteArray::fromStdString(other.Get(apiPath({}))->body);
        const QJsonValue user = QJsonDocument::fromJson(login).object().value(QLatin1String("user_info"));
        connections = user.toObject().value(QLatin1String("active_cons")).toString().toStdString();
        second = other.Get("/live/demo/demo/1002.ts")->status;
        return false;
    });
    EXPECT_EQ(connections, "1");
    EXPECT_EQ(second, 403);
}

TEST(DemoMedia, StopsAtOnceWhileStreamsPauseAndConnectionsIdle) {
    RunningProvider demo;
    httplib::Client idle(demo.url());
    idle.set_keep_alive(true);
    EXPECT_EQ(idle.Get(apiPath({}))->status, 200);
    std::atomic<bool> release = false;
    std::jthread paused([&] {
        httplib::Client viewer(demo.url());
        viewer.Get("/timeshift/demo/demo/600/2026-03-01:21-05/1001.ts", [&](const char*, std::size_t) {
            return ondavia::testing::waitUntil([&] { return release.load(); }) && false;
        });
    });
    EXPECT_TRUE(ondavia::testing::waitUntil([&] { return demo.provider().openStreams() == 1; }));
    const auto before = Clock::now();
    demo.provider().stop();
    EXPECT_LT(Clock::now() - before, 1s);
    release = true;
}

TEST(DemoMedia, SaysSoWhenNothingCanMakeThem) {
    const ondavia::testing::TemporaryFolder folder;
    DemoOptions options;
    options.mediaFolder = folder.path();
    RunningProvider demo(options);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/nonexistent");
    EXPECT_NE(demo.get("/live/demo/demo/1001.ts", 503).find("ffmpeg"), std::string::npos);
    qputenv("PATH", path);
}

} // namespace
} // namespace ondavia::demo
