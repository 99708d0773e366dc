#include "screens/player/InformationModel.h"
#include "ScreensFixture.h"

#include <QAbstractItemModelTester>
#include <QLocale>

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class InformationModelTest : public ScreensFixture {
protected:
    InformationModelTest() { QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Portugal)); }
    ~InformationModelTest() override { QLocale::setDefault(QLocale::c()); }

    void play(std::int64_t number) {
        Channel film = title(number, "movie", "Drama", "Uma Longa Noite");
        film.url = "http://tv.example:8080/movie/ana/segredo/" + std::to_string(number) + ".mp4";
        playerManager.play(film, 0);
        scheduler.runPending();
    }
    void report(const FSStatistics& statistics) { lastEngine.lock()->currentStatistics = statistics; }
    [[nodiscard]] std::string value(const char* label) const {
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.index(row).data(InformationModel::LabelRole) == QString::fromUtf8(label)) {
                return model.index(row).data(InformationModel::ValueRole).toString().toStdString();
            }
        }
        return "no such line";
    }

    static FSStatistics someStatistics() {
        return {.videoCodec = "hevc",
                .audioCodec = "eac3",
                .width = 1920,
                .height = 1080,
                .frameRate = 24'000.0 / 1001,
                .bitrate = 4'250'000,
                .decoder = "software",
                .droppedFrames = 1234,
                .secondsBuffered = 8.25,
                .serverAnswer = "HTTP/1.1 206 Partial Content"};
    }

    static FSStatistics onlyAnswer(const std::string& answer) {
        FSStatistics statistics;
        statistics.serverAnswer = answer;
        return statistics;
    }
    static FSStatistics onlySound(const std::string& codec) {
        FSStatistics statistics;
        statistics.audioCodec = codec;
        return statistics;
    }

    InformationModel model{playerManager, scheduler};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(InformationModelTest, ShowsALineForEachThatIsKnown) {
    play(1);
    report(someStatistics());
    model.setIsShown(true);
    EXPECT_EQ(value("Imagem"), "hevc · 1920 × 1080 · 23,98 imagens/s");
    EXPECT_EQ(value("Som"), "eac3");
    EXPECT_EQ(value("Débito"), "4,3 Mbit/s");
    EXPECT_EQ(value("Descodificador"), "processador");
    EXPECT_EQ(value("Imagens perdidas"), QLocale().toString(1234).toStdString());
    EXPECT_EQ(value("Em memória"), "8,3 s");
    EXPECT_EQ(value("Última resposta"), "HTTP/1.1 206 Partial Content");
}

TEST_F(InformationModelTest, ShowsADashForWhatIsNotKnown) {
    play(1);
    FSStatistics few;
    few.frameRate = 25;
    few.bitrate = 96'400;
    few.decoder = "vaapi-copy";
    report(few);
    model.setIsShown(true);
    EXPECT_EQ(value("Imagem"), "25 imagens/s");
    EXPECT_EQ(value("Som"), "–");
    EXPECT_EQ(value("Débito"), "96 kbit/s");
    EXPECT_EQ(value("Descodificador"), "vaapi-copy");
    EXPECT_EQ(value("Última resposta"), "–");
    report({});
    scheduler.advance(1);
    EXPECT_EQ(value("Imagem"), "–");
    EXPECT_EQ(value("Débito"), "–");
}

TEST_F(InformationModelTest, MasksTheAccount) {
    play(1);
    report(onlyAnswer("HTTP/1.1 302 see http://tv.example/movie/ana/segredo/1.mp4 \x1b[31m"));
    model.setIsShown(true);
    EXPECT_EQ(value("Servidor"), "http://tv.example:8080/<redacted>");
    EXPECT_THAT(value("Última resposta"), HasSubstr("http://tv.example/<redacted>"));
    EXPECT_THAT(value("Última resposta"), Not(HasSubstr("\x1b")));
}

TEST_F(InformationModelTest, LooksOnceASecondWhileItShowsAndNotOtherwise) {
    play(1);
    report(onlySound("aac"));
    int looks = 0;
    QObject::connect(&model, &InformationModel::dataChanged, &model, [&looks] { ++looks; });
    scheduler.advance(5);
    EXPECT_EQ(looks, 0);
    model.toggle();
    EXPECT_TRUE(model.isShown());
    EXPECT_EQ(looks, 1) << "at once";
    report(onlySound("ac3"));
    scheduler.advance(0.9);
    EXPECT_EQ(value("Som"), "aac");
    scheduler.advance(0.1);
    EXPECT_EQ(value("Som"), "ac3");
    scheduler.advance(3);
    EXPECT_EQ(looks, 5);
    model.toggle();
    EXPECT_FALSE(model.isShown());
    scheduler.advance(5);
    EXPECT_EQ(looks, 5);
}

TEST_F(InformationModelTest, TellsWhenItAppearsAndGoes) {
    std::vector<bool> told;
    QObject::connect(&model, &InformationModel::isShownChanged, &model,
                     [this, &told] { told.push_back(model.isShown()); });
    model.setIsShown(true);
    model.setIsShown(true);
    model.setIsShown(false);
    EXPECT_THAT(told, ElementsAre(true, false));
}

TEST_F(InformationModelTest, KeepsTheLastAnswerWhileAnItemIsTriedAgainAndForgetsItWithTheItem) {
    play(1);
    report(onlyAnswer("HTTP/1.1 403 Forbidden"));
    model.setIsShown(true);
    play(1);
    scheduler.advance(1);
    EXPECT_EQ(value("Última resposta"), "HTTP/1.1 403 Forbidden");
    playerManager.stop();
    scheduler.advance(1);
    EXPECT_EQ(value("Última resposta"), "HTTP/1.1 403 Forbidden") << "nothing plays any more";
    EXPECT_EQ(value("Imagem"), "–");
    play(2);
    scheduler.advance(1);
    EXPECT_EQ(value("Última resposta"), "–");
}

} // namespace
} // namespace ondavia::testing
