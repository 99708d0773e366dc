// The player in all that it shows: over the brightest picture and over the darkest, and without any.
#include "app/Services.h"
#include "support/TestSupport.h"
#include "tour/Tour.h"

#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

#include <stdexcept>

namespace ondavia {
namespace {

/// A minute of one colour, with sound and subtitles, and its URL.
std::string makeFilm(const QTemporaryDir& folder, const QString& colour) {
    const QString file = folder.filePath(colour + QStringLiteral(".mkv"));
    const QString picture = QStringLiteral("color=c=%1:s=640x360:r=25:d=60").arg(colour);
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"),
                 {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-nostdin"),
                  QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), picture,
                  QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                  QStringLiteral("sine=f=220:d=60"), QStringLiteral("-c:v"), QStringLiteral("libx264"),
                  QStringLiteral("-preset"), QStringLiteral("ultrafast"), QStringLiteral("-c:a"),
                  QStringLiteral("aac"), file});
    if (!ffmpeg.waitForFinished() || ffmpeg.exitCode() != 0) {
        throw std::runtime_error(ffmpeg.readAllStandardError().toStdString());
    }
    return QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded).toStdString();
}

SubtitleTrack subtitles() {
    return SubtitleTrack::make(
               "http://127.0.0.1/filme.por.srt",
               "1\n00:00:00,000 --> 00:01:00,000\nUma legenda em duas linhas,\nque se lê sobre "
               "qualquer imagem.\n")
        .value();
}

/// Each remembers its own position.
Channel film(const std::string& url) {
    Channel channel;
    channel.id = "main_" + url;
    channel.type = "movie";
    channel.name = "O Estranho Caso do Homem Que Voltou Três Vezes à Mesma Praia e Nunca Aprendeu a Nadar";
    channel.url = url;
    return channel;
}

Channel episode(const std::string& url) {
    Channel channel = film(url);
    channel.id = "main_series_0_ep_1";
    channel.type = "series";
    channel.seriesName = "As Crónicas Inacabadas da Família Vasconcelos e Albuquerque";
    channel.episodeNum = 1;
    channel.episodeTitle = "Onde tudo começa outra vez";
    return channel;
}

} // namespace

void Tour::watchFilms() {
    const QTemporaryDir folder;
    PlayerManager& manager = m_services.playerManager;
    for (const char* colour : {"white", "black"}) {
        const QString name = QStringLiteral("player-") + QLatin1String(colour);
        start(film(makeFilm(folder, QLatin1String(colour))));
        manager.setLoadedSubtitles({subtitles()});
        press(Qt::Key_Space);
        waitFor(QStringLiteral("the pause"), [&manager] { return !manager.isPlaying(); });
        shoot(name + QStringLiteral("-paused"));
        press(Qt::Key_Right);
        press(Qt::Key_Right);
        shoot(name + QStringLiteral("-badge"));
        showSheet(name);
        for (const auto& [key, layer] :
             {std::pair(Qt::Key_Question, "keys"), std::pair(Qt::Key_I, "information")}) {
            press(key);
            shoot(name + QLatin1Char('-') + QLatin1String(layer));
            press(key);
            settle();
        }
        showSubtitles(name);
        leavePlayer();
    }
    showWithoutAPicture();
}

void Tour::start(const Channel& channel) {
    m_services.appState.playChannel(channel);
    const PlayerManager& manager = m_services.playerManager;
    waitFor(QStringLiteral("the picture"), [&manager] {
        return manager.isPlaying() && manager.currentTime() > 0 && manager.duration() > 0;
    });
}

void Tour::showSheet(const QString& name) {
    press(Qt::Key_S);
    settle();
    shoot(name + QStringLiteral("-sheet"));
    for (const char* key : {"audio", "subtitles", "aspect", "speed", "skip"}) {
        const QString section = QStringLiteral("section-") + QLatin1String(key);
        click(find(section));
        shoot(name + QStringLiteral("-sheet-") + QLatin1String(key));
    }
    press(Qt::Key_Escape);
    settle();
}

void Tour::showSubtitles(const QString& name) {
    PlayerManager& manager = m_services.playerManager;
    manager.setUseCustomSubtitleOverlay(true);
    manager.selectSubtitleTrack(manager.availableSubtitleTracks().front());
    shoot(name + QStringLiteral("-subtitles"));
    manager.setUseCustomSubtitleOverlay(false);
}

void Tour::showWithoutAPicture() {
    // Takes connections, and says nothing.
    QTcpServer silent;
    silent.listen(QHostAddress::LocalHost);
    m_services.appState.playChannel(
        episode("http://127.0.0.1:" + std::to_string(silent.serverPort()) + "/series/1.mkv"));
    shoot(QStringLiteral("player-waiting"));
    leavePlayer();
    m_services.appState.playChannel(film("no address"));
    shoot(QStringLiteral("player-error"));
    leavePlayer();
}

void Tour::leavePlayer() {
    press(Qt::Key_Escape);
    waitFor(QStringLiteral("the end of playback"), [this] { return !m_services.appState.isPlaying(); });
    settle();
}

} // namespace ondavia
