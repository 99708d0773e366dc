// Files with every kind of sound, picture and subtitles that providers send.
#include "engine/EngineScene.h"
#include "engine/EngineTestSupport.h"

#include <QProcess>

#include <gmock/gmock.h>

#include <fstream>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

constexpr int width = 320;
constexpr int height = 180;
/// Where the subtitles made of a picture are.
constexpr QRect bitmapArea(60, 140, 200, 30);

std::string number(std::uint32_t value, int bytes) {
    std::string text;
    for (int byte = bytes - 1; byte >= 0; --byte) {
        text += static_cast<char>(value >> (8 * byte));
    }
    return text;
}

std::string segment(char kind, const std::string& content) {
    constexpr std::uint32_t tenthOfASecond = 9000;
    return "PG" + number(tenthOfASecond, 4) + number(0, 4) + kind +
           number(static_cast<std::uint32_t>(content.size()), 2) + content;
}

std::string numbers(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text += number(static_cast<std::uint32_t>(value), 2);
    }
    return text;
}

std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text += static_cast<char>(value);
    }
    return text;
}

/// One white box as subtitles of a disc have it, which FFmpeg makes others of: it makes none of text.
std::string whiteBox() {
    const QRect& area = bitmapArea;
    const std::string place = numbers({area.x(), area.y()});
    const std::string size = numbers({area.width(), area.height()});
    const std::string row = bytes({0, 0xC0, area.width(), 1, 0, 0});
    std::string rows;
    for (int line = 0; line < area.height(); ++line) {
        rows += row;
    }
    const auto picture = number(static_cast<std::uint32_t>(size.size() + rows.size()), 3) + size + rows;
    return segment(0x16, numbers({width, height}) + bytes({0x10, 0, 0, 0x80, 0, 0, 1, 0, 0, 0, 0}) + place) +
           segment(0x17, bytes({1, 0}) + place + size) + segment(0x14, bytes({0, 0, 1, 235, 128, 128, 255})) +
           segment(0x15, bytes({0, 0, 0, 0xC0}) + picture) + segment('\x80', {});
}

/// Bars on their way to the right, two moments in every picture, one on the even and one on the odd lines.
QStringList woven(const char* flags, const char* file) {
    return words("-f lavfi -i color=black:size=320x180:rate=50:duration=12 -vf") +
           QStringList{QStringLiteral("drawbox=x=40:y=0:w=40:h=180:color=white:t=fill,scroll=h=0.0375,"
                                      "format=yuv420p,interlace=scan=tff:lowpass=off%1")
                           .arg(QLatin1String(flags))} +
           words("-c:v mpeg2video -q:v 2 -g 12") +
           (*flags == '\0' ? words("-flags +ildct+ilme") : QStringList()) +
           QStringList{QString::fromLatin1(file)};
}

/// Files of this test program alone, in the folder that the server shows.
void makeFiles() {
    static const bool made = [] {
        const auto folder = Media::shared().folder;
        std::ofstream(folder / "box.sup", std::ios::binary) << whiteBox();
        runFfmpeg(folder,
                  words("-i film.ts -f lavfi -i sine=f=880:d=12 -f lavfi -i sine=f=1320:d=12 -i legenda.srt "
                        "-i box.sup -map 0:v -map 0:a -map 1:a -map 2:a -map 3:s -map 4:s -c:v copy -c:a:0 "
                        "copy -c:a:1 ac3 -c:a:2 eac3 -c:s:0 srt -c:s:1 dvdsub -metadata:s:s:0 language=por "
                        "-metadata:s:s:1 language=eng many.mkv"));
        runFfmpeg(folder, words("-f lavfi -i testsrc2=size=320x180:rate=25:duration=12 -c:v libx265 -preset "
                                "ultrafast -x265-params log-level=none hevc.mkv"));
        runFfmpeg(folder, woven("", "interlaced.ts"));
        runFfmpeg(folder, woven(",setfield=prog", "progressive.ts"));
        return true;
    }();
    ASSERT_TRUE(made);
}

/// How much every other line differs from those between, from 0 to 255: what a picture of two moments shows.
double combing(const QImage& picture) {
    double sum = 0;
    for (int y = 0; y + 2 < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const auto grey = [&](int line) { return qGray(picture.pixel(x, line)); };
            sum += std::max(0, std::abs(grey(y) - grey(y + 1)) - std::abs(grey(y) - grey(y + 2)));
        }
    }
    return sum / picture.width() / picture.height();
}

int indexIn(const QVariantMap& map) {
    return map.value(QStringLiteral("stream_idx"), -1).toInt();
}

std::vector<std::string> codecsOf(const FSMonitor& monitor) {
    std::vector<std::string> codecs;
    for (const auto& stream : monitor.mediaMeta.value(QStringLiteral("streams")).toList()) {
        codecs.push_back(stream.toMap().value(QStringLiteral("codec_name")).toString().toStdString());
    }
    return codecs;
}

class EngineTracks : public ::testing::Test {
protected:
    static void SetUpTestSuite() { makeFiles(); }

    /// Plays `file` in a window, from the server.
    std::unique_ptr<Engine> play(const char* file) {
        auto engine =
            std::make_unique<Engine>(MpvOutputs::Window, server.url("/file/user/word/" + std::string(file)));
        scene.large()->setSize({width, height});
        Scene::host(*engine, scene.large());
        (*engine)->prepareToPlay();
        EXPECT_TRUE(engine->await("state:1", std::chrono::minutes(1)));
        EXPECT_TRUE(showsPicture(scene, scene.large()));
        return engine;
    }
    QImage picture() { return scene.grab(*scene.large()); }
    /// Waits until nothing in the picture moves any more.
    QImage pictureAtRest() {
        QImage last;
        int timesUnchanged = 0;
        EXPECT_TRUE(waitUntil([&] {
            const QImage before = std::exchange(last, picture());
            timesUnchanged = last == before ? timesUnchanged + 1 : 0;
            return timesUnchanged > 20;
        }));
        return last;
    }

    const MediaServer server;
    Scene scene;
};

TEST_F(EngineTracks, EverySoundIsListedAndPlaysFromWhereTheOneBeforeWas) {
    const auto engine = play("many.mkv");
    const Engine& player = *engine;
    EXPECT_THAT(codecsOf(player->monitor()),
                ElementsAre("h264", "aac", "ac3", "eac3", "subrip", "dvd_subtitle"));
    EXPECT_EQ(indexIn(player->monitor().audioMeta), 1);
    for (const int index : {2, 3, 1}) {
        const double before = player->currentPlaybackTime();
        player->exchangeSelectedStream(index);
        ASSERT_TRUE(waitUntil([&] { return indexIn(player->monitor().audioMeta) == index; }));
        ASSERT_TRUE(engine->awaitPosition(before + 0.5));
        EXPECT_LT(player->currentPlaybackTime(), 12);
        EXPECT_TRUE(player->isPlaying());
    }
    EXPECT_EQ(engine->count("prepared"), 1);
    EXPECT_EQ(engine->count("firstFrame"), 1);
}

TEST_F(EngineTracks, EveryPictureIsListedAndShown) {
    for (const auto& [file, codec] :
         {std::pair("hevc.mkv", "hevc"), std::pair("interlaced.ts", "mpeg2video")}) {
        const auto engine = play(file);
        EXPECT_EQ((*engine)->monitor().videoMeta.value(QStringLiteral("codec_name")).toString().toStdString(),
                  codec);
        EXPECT_TRUE(pictureMoves(scene, scene.large())) << file;
    }
}

TEST_F(EngineTracks, SubtitlesOfTextAndOfPicturesShowWhenTheyArePicked) {
    const auto engine = play("many.mkv");
    const Engine& player = *engine;
    player->pause();
    ASSERT_TRUE(engine->await("state:2"));
    player->setCurrentPlaybackTime(0.5);
    const QRect text(80, 140, 160, 40);
    const QImage plain = pictureAtRest();
    EXPECT_TRUE(player->monitor().subtitleMeta.isEmpty());
    // What began before a track was picked shows after a seek to it only.
    const auto pick = [&](int index) {
        player->exchangeSelectedStream(index);
        EXPECT_TRUE(waitUntil([&] { return indexIn(player->monitor().subtitleMeta) == index; }));
        player->setCurrentPlaybackTime(0.5);
    };
    pick(4);
    EXPECT_TRUE(waitUntil([&] { return difference(picture().copy(text), plain.copy(text)) > 3; }));
    pick(5);
    const auto isBoxWhite = [&] {
        const QImage box = picture().copy(bitmapArea.adjusted(4, 4, -4, -4));
        QImage white(box.size(), QImage::Format_RGB32);
        white.fill(Qt::white);
        return difference(box, white) < 12;
    };
    EXPECT_TRUE(waitUntil(isBoxWhite)) << "drawn where it says";
    player->closeCurrentStream("timedtext");
    EXPECT_TRUE(waitUntil([&] { return difference(picture(), plain) < 1; }));
}

TEST_F(EngineTracks, InterlacedPicturesAreDeinterlacedAndOthersLeftAlone) {
    const auto meanCombing = [&](const char* file) {
        const auto engine = play(file);
        double sum = 0;
        int pictures = 0;
        EXPECT_TRUE(engine->awaitPosition(0.5));
        EXPECT_TRUE(waitUntil([&] {
            const QImage shown = picture();
            sum += isBlack(shown) ? 0 : combing(shown);
            pictures += isBlack(shown) ? 0 : 1;
            return pictures == 20;
        }));
        return sum / pictures;
    };
    const double interlaced = meanCombing("interlaced.ts");
    const double progressive = meanCombing("progressive.ts");
    std::printf("combing: %.2f where it is taken away, %.2f where it is left\n", interlaced, progressive);
    EXPECT_LT(interlaced, progressive / 4);
    EXPECT_GT(progressive, 5) << "two moments in one picture";
}

TEST_F(EngineTracks, APausedPictureTakesItsNewShape) {
    const auto engine = play("film.mp4");
    const Engine& player = *engine;
    player->pause();
    ASSERT_TRUE(engine->await("state:2"));
    const QRect top(20, 0, 280, 16);
    const QRect side(0, 20, 20, 140);
    const QImage original = pictureAtRest();
    player->view()->setDarPreference(4.0F / 3.0F);
    player->view()->setNeedsRefreshCurrentPic();
    EXPECT_TRUE(waitUntil([&] { return isBlack(picture().copy(side)); })) << "narrower than its view";
    player->view()->setDarPreference(2.35F);
    player->view()->setNeedsRefreshCurrentPic();
    EXPECT_TRUE(waitUntil([&] { return isBlack(picture().copy(top)); })) << "wider than its view";
    player->setScalingMode(FSScalingMode::Fill);
    player->view()->setNeedsRefreshCurrentPic();
    EXPECT_TRUE(waitUntil([&] { return !isBlack(picture().copy(top)); }));
    player->setScalingMode(FSScalingMode::Fit);
    player->view()->setDarPreference(0);
    player->view()->setNeedsRefreshCurrentPic();
    EXPECT_TRUE(waitUntil([&] { return difference(picture(), original) < 1; }));
}

} // namespace
} // namespace ondavia::testing
