// The live player's screens, without a warning; with ONDAVIA_SHOTS, a picture of each.
#include "screens/ScreensWindow.h"
#include "screens/liveplayer/LivePlayerViewModel.h"

#include <QQmlComponent>
#include <QQmlEngine>

namespace ondavia::testing {
namespace {

const char* const longGroup = "Notícias e Atualidade Internacional em Português";

class LivePlayerLookTest : public ScreensTest,
                           public ::testing::WithParamInterface<std::tuple<QSize, const char*>> {
protected:
    void open(const char* colour) {
        QQmlComponent component(&m_engine);
        component.setData(QByteArray("import QtQuick; Rectangle { color: '") + colour + "' }", {});
        m_picture.reset(qobject_cast<QQuickItem*>(component.create()));
        picture = m_picture.get();
        signInWithCatalogue();
        defaults.setDate("ondavia_last_epg_load", currentDate());
        Channel first = *store->mainContext().fetchFirst<Channel>(
            {.where = field(&Channel::groupTitle) == longGroup, .sort = {ascending(&Channel::num)}});
        first.epgChannelId = "noticias.1";
        first.tvArchive = true;
        first.tvArchiveDuration = 6;
        store->mainContext().insert(first);
        fillGuide();
        const auto [size, name] = GetParam();
        show(size.width(), size.height());
        appState.playChannel(first);
        scheduler.runPending();
    }
    void fillGuide() {
        const std::vector<std::string> names{"Telejornal",
                                             "A Noite em Que o Farol Se Apagou e Ninguém Deu por Nada: a "
                                             "Reportagem Completa sobre a Costa Atlântica",
                                             "Bom Dia", "Sociedade Civil", "Linha da Frente"};
        const Date hour = std::chrono::floor<std::chrono::hours>(currentDate());
        for (int slot = -30; slot < 30; ++slot) {
            const Date start = hour + std::chrono::minutes(45) * slot;
            store->mainContext().insert(EPGProgram{
                "p" + std::to_string(slot), "noticias.1",
                names[static_cast<std::size_t>(slot + 30) % names.size()],
                slot % 2 == 0
                    ? std::optional<std::string>(
                          "Uma equipa de reportagem percorre a costa e ouve quem lá vive todo o ano.")
                    : std::nullopt,
                start, start + std::chrono::minutes(45), std::nullopt});
        }
        store->mainContext().save();
    }
    [[nodiscard]] LivePlayerViewModel& player() {
        return dynamic_cast<LivePlayerViewModel&>(*models->player()->player());
    }
    void shootState(const std::string& state) { shoot("live-" + state + "-" + std::get<1>(GetParam())); }

private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_picture;
};

TEST_P(LivePlayerLookTest, DrawsEveryStateWithoutAWarning) {
    open(std::get<1>(GetParam()));
    shootState("waiting");
    playerManager.setIsBuffering(false);
    playerManager.setIsPlaying(true);
    shootState("list");
    press(Qt::Key_Return);
    shootState("controls-keyboard");
    player().levels()->changeVolume(2);
    shootState("volume");
    scheduler.advance(6);
    press(Qt::Key_4);
    press(Qt::Key_8);
    shootState("number");
    press(Qt::Key_9);
    shootState("number-unknown");
    player().number()->cancel();
    player().setShowCategories(true);
    shootState("categories");
    player().setShowCategories(false);
    player().toggleView();
    shootState("guide");
    player().guide()->setShowDatePicker(true);
    shootState("days");
    player().guide()->setShowDatePicker(false);
    player().setIsLoadingEPG(true);
    shootState("guide-loading");
    player().setIsLoadingEPG(false);
    player().toggleView();
    player().information()->toggle();
    shootState("information");
    player().information()->toggle();
    player().setShowKeys(true);
    shootState("keys");
    player().setShowKeys(false);
    player().openSettings();
    shootState("sheet");
    player().closeSettings();
    player().setIsFullscreen(true);
    player().controls()->wake();
    shootState("full");
    player().levels()->volume()->tap();
    player().levels()->brightness()->tap();
    shootState("full-sliders");
    scheduler.advance(8);
    playerManager.setError("Erro de reproducao");
    player().controls()->wake();
    shootState("full-error");
    player().setIsFullscreen(false);
    shootState("error");
    playerManager.setError(std::nullopt);
    player().setSelectedCategory("Sem nada");
    shootState("empty");
    player().minimizeToMini();
    shootState("mini");
    EXPECT_THAT(messages, ::testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sizes, LivePlayerLookTest,
                         ::testing::Values(std::tuple(QSize(1280, 800), "white"),
                                           std::tuple(QSize(1280, 800), "#101418"),
                                           std::tuple(QSize(412, 892), "white"),
                                           std::tuple(QSize(412, 892), "#101418"),
                                           std::tuple(QSize(800, 480), "#101418")));

} // namespace
} // namespace ondavia::testing
