#include "ScreensWindow.h"
#include "screens/player/PlayerViewModel.h"

#include <QQmlComponent>
#include <QQmlEngine>

namespace ondavia::testing {
namespace {

class LookTest : public ScreensTest, public ::testing::WithParamInterface<QSize> {};

/// Walks through every screen in every state; the pictures are for the eye, the absence of warnings for
/// the machine.
TEST_P(LookTest, DrawsWithoutAWarning) {
    const QSize size = GetParam();
    show(size.width(), size.height());
    shoot("home-welcome");
    models->signIn()->open();
    shoot("signin-empty");
    models->signIn()->setServer(QStringLiteral("tv.exemplo-com-um-nome-muito-comprido.example.pt:8080"));
    models->signIn()->setUsername(QStringLiteral("ana.marques"));
    models->signIn()->setPassword(QStringLiteral("segredo"));
    models->signIn()->test();
    ASSERT_TRUE(waitUntil([this] { return !models->signIn()->isChecking(); }));
    QTest::keyClick(window, Qt::Key_Tab);
    shoot("signin-error");
    models->signIn()->close();
    appState.setSelectedTab(AppTab::live);
    shoot("live-empty");
    appState.setSelectedTab(AppTab::favorites);
    shoot("favorites");

    signInWithCatalogue();
    models->content()->start();
    drainEvents();
    appState.setSelectedTab(AppTab::home);
    appState.showToast("Sem internet — a usar dados em cache", ToastType::warning);
    shoot("home");
    appState.showToast("Erro ao carregar conteúdo. Verifica a tua ligação.", ToastType::error);
    appState.setSelectedTab(AppTab::live);
    shoot("live");
    appState.setToastMessage(std::nullopt);
    click("Notícias e Atualidade Internacional em Português, 23");
    shoot("live-category");
    appState.setSelectedTab(AppTab::movies);
    settle();
    ASSERT_TRUE(waitUntil([this] { return posters.served() > 8; }));
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    shoot("movies");
    click("Drama");
    ASSERT_TRUE(waitUntil([this] { return posters.served() > 20; }));
    shoot("movies-category");
    EXPECT_THAT(messages, ::testing::IsEmpty());
}

/// The player in every state, over a picture of one colour.
class PlayerLookTest : public ScreensTest,
                       public ::testing::WithParamInterface<std::tuple<QSize, const char*>> {
protected:
    void play(const char* colour) {
        QQmlComponent component(&m_engine);
        component.setData(QByteArray("import QtQuick; Rectangle { color: '") + colour + "' }", {});
        m_picture.reset(qobject_cast<QQuickItem*>(component.create()));
        picture = m_picture.get();
        appState.playSeriesEpisode(episode(), std::vector<XtreamEpisode>(3), 0, episode());
        scheduler.runPending();
    }
    void reach(double position) {
        const auto engine = lastEngine.lock();
        engine->time = position;
        engine->length = 6300;
        playerManager.setDuration(6300);
        playerManager.setCurrentTime(position);
    }
    [[nodiscard]] static Channel episode() {
        Channel channel = title(9001, "series", "Drama", "O Faroleiro - Ep. 3");
        channel.seriesName = "O Faroleiro da Ilha de São Jorge e Outras Histórias de Mar";
        channel.episodeTitle = "A noite em que o farol se apagou e ninguém deu por nada";
        return channel;
    }
    [[nodiscard]] PlayerViewModel& player() {
        return dynamic_cast<PlayerViewModel&>(*models->player()->player());
    }
    void shootState(const std::string& state) { shoot("player-" + state + "-" + std::get<1>(GetParam())); }
    void shootSections() {
        const auto engine = lastEngine.lock();
        const auto stream = [](int index, const char* type, const char* codec, const char* language) {
            return QVariantMap{{QStringLiteral("stream_idx"), index},
                               {QStringLiteral("type"), QLatin1String(type)},
                               {QStringLiteral("codec_name"), QLatin1String(codec)},
                               {QStringLiteral("language"), QLatin1String(language)}};
        };
        engine->meta.mediaMeta = {
            {QStringLiteral("streams"),
             QVariantList{stream(1, "audio", "aac", "por"), stream(2, "audio", "eac3", "eng"),
                          stream(3, "timedtext", "subrip", "por"), stream(4, "timedtext", "subrip", "eng")}}};
        engine->meta.audioMeta = {{QStringLiteral("stream_idx"), 1}};
        player().openSettings();
        shootState("sheet");
        for (const char* key : {"audio", "subtitles", "aspect", "speed", "skip"}) {
            player().sheet()->toggleSection(QLatin1String(key));
            shootState(std::string("sheet-") + key);
        }
        player().closeSettings();
    }

private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_picture;
};

TEST_P(PlayerLookTest, DrawsEveryStateWithoutAWarning) {
    const auto [size, colour] = GetParam();
    show(size.width(), size.height());
    play(colour);
    shootState("waiting");
    playerManager.setIsBuffering(false);
    playerManager.setIsPlaying(true);
    reach(1875);
    shootState("playing");
    playerManager.setIsBuffering(true);
    shootState("stalled");
    playerManager.setIsBuffering(false);
    player().togglePlayPause();
    press(Qt::Key_Return);
    shootState("paused-keyboard");
    player().togglePlayPause();
    player().levels()->volume()->tap();
    player().levels()->brightness()->tap();
    shootState("sliders");
    player().seekBar()->drag(30, 100);
    shootState("seeking");
    player().seekBar()->cancelDrag();
    scheduler.advance(8);
    player().choices().setPlaybackSpeed(1.5F);
    player().levels()->changeVolume(3);
    player().skips()->step(true);
    player().skips()->step(true);
    shootState("badges");
    scheduler.advance(2);
    playerManager.setUseCustomSubtitleOverlay(true);
    playerManager.setCurrentSubtitleTrack(SubtitleTrack{
        "srt-1", std::nullopt, "", "",
        std::vector<SubtitleCue>{{0, 6300, "— Quem está aí?\nÉ o mar, só o mar, que bate à porta."}}});
    scheduler.advance(0.1);
    shootState("subtitles");
    playerManager.setUseCustomSubtitleOverlay(false);
    player().controls()->wake();
    shootSections();
    player().information()->toggle();
    shootState("information");
    player().information()->toggle();
    player().setShowKeys(true);
    shootState("keys");
    player().setShowKeys(false);
    playerManager.setError("Erro de reproducao");
    shootState("error");
    playerManager.setError(std::nullopt);
    player().minimizeToMini();
    shootState("mini");
    playerManager.setIsBuffering(true);
    playerManager.setIsPlaying(false);
    shootState("mini-waiting");
    EXPECT_THAT(messages, ::testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sizes, PlayerLookTest,
                         ::testing::Combine(::testing::Values(QSize(1280, 800), QSize(412, 892)),
                                            ::testing::Values("white", "#101418")));

INSTANTIATE_TEST_SUITE_P(Sizes, LookTest,
                         ::testing::Values(QSize(1280, 800), QSize(412, 892), QSize(360, 640),
                                           QSize(3840, 2160)));

} // namespace
} // namespace ondavia::testing
