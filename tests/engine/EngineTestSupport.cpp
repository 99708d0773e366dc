#include "engine/EngineTestSupport.h"

#include <QProcess>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace ondavia::testing {
namespace {

constexpr double filmSeconds = 12;

Media makeMedia(const std::filesystem::path& folder) {
    std::ofstream(folder / "legenda.srt") << "1\n00:00:00,000 --> 00:00:11,000\nLegenda de teste\n";
    runFfmpeg(folder, words("-f lavfi -i testsrc2=size=320x180:rate=25:duration=12 -f lavfi -i "
                            "sine=frequency=440:duration=12 -c:v libx264 -preset ultrafast -g 25 -pix_fmt "
                            "yuv420p -c:a aac -b:a 96k -shortest film.ts"));
    runFfmpeg(folder, words("-i film.ts -c copy -movflags +faststart film.mp4"));
    runFfmpeg(folder, words("-i film.ts -f lavfi -i sine=frequency=880:duration=12 -i legenda.srt -map 0:v "
                            "-map 0:a -map 1:a -map 2:s -c:v copy -c:a:0 copy -c:a:1 libmp3lame -c:s srt "
                            "-metadata:s:a:0 language=por -metadata:s:a:1 language=eng -metadata:s:s:0 "
                            "language=por -metadata:s:s:0 title=Forced tracks.mkv"));
    runFfmpeg(folder, words("-i film.ts -map 0:a -c copy radio.ts"));
    runFfmpeg(folder, words("-i film.mp4 -c copy -movflags +frag_keyframe+empty_moov fragments.mp4"));
    std::filesystem::copy_file(folder / "film.ts", folder / "segment");
    const auto file = [&folder](const char* name) { return "file://" + (folder / name).string(); };
    return {file("film.ts"),  file("film.mp4"),    file("tracks.mkv"),
            file("radio.ts"), file("legenda.srt"), folder};
}

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

sockaddr_in loopback() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

void runFfmpeg(const std::filesystem::path& folder, const QStringList& arguments) {
    QProcess ffmpeg;
    ffmpeg.setWorkingDirectory(QString::fromStdString(folder.string()));
    ffmpeg.start(QStringLiteral("ffmpeg"),
                 QStringList{QStringLiteral("-hide_banner"), QStringLiteral("-loglevel"),
                             QStringLiteral("error"), QStringLiteral("-nostdin"), QStringLiteral("-y")} +
                     arguments);
    if (!ffmpeg.waitForFinished(60000) || ffmpeg.exitCode() != 0) {
        throw std::runtime_error(ffmpeg.readAllStandardError().toStdString());
    }
}

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

const Media& Media::shared() {
    static const TemporaryFolder folder;
    static const Media media = makeMedia(folder.path());
    return media;
}

MediaServer::MediaServer() {
    const auto folder = Media::shared().folder;
    m_server.set_pre_routing_handler([this](const httplib::Request&, httplib::Response&) {
        ++m_requests;
        return httplib::Server::HandlerResponse::Unhandled;
    });
    m_server.Get(R"(/file/[^/]+/[^/]+/([a-z.0-9]+))", [folder](const auto& request, auto& response) {
        const auto body = std::make_shared<std::string>(bytesOf(folder / request.matches[1].str()));
        response.set_content_provider(
            body->size(), "application/octet-stream",
            [body](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
                return sink.write(body->data() + offset, std::min<std::size_t>(length, 65536));
            });
    });
    m_server.Get(R"(/cut/(\d+)/([a-z.0-9]+))", [folder](const auto& request, auto& response) {
        const auto body = std::make_shared<std::string>(bytesOf(folder / request.matches[2].str()));
        const std::size_t limit = body->size() * std::stoul(request.matches[1]) / 100;
        response.set_content_provider(
            body->size(), "application/octet-stream",
            [body, limit](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
                return offset < limit && sink.write(body->data() + offset,
                                                    std::min({length, limit - offset, std::size_t{65536}}));
            });
    });
    const auto chunked = [folder](const std::string& name, unsigned long percent,
                                  httplib::Response& response) {
        const auto body = std::make_shared<std::string>(bytesOf(folder / name));
        const std::size_t end = body->size() * percent / 100;
        const bool isWhole = end == body->size();
        response.set_chunked_content_provider("video/mp4", [=](std::size_t offset, httplib::DataSink& sink) {
            if (offset >= end && isWhole) {
                sink.done();
            }
            if (offset >= end) {
                return isWhole;
            }
            return sink.write(body->data() + offset, std::min<std::size_t>(end - offset, 65536));
        });
    };
    m_server.Get(R"(/whole/([a-z.0-9]+))", [chunked](const auto& request, auto& response) {
        chunked(request.matches[1].str(), 100, response);
    });
    m_server.Get(R"(/broken/(\d+)/([a-z.0-9]+))", [chunked](const auto& request, auto& response) {
        chunked(request.matches[2].str(), std::stoul(request.matches[1]), response);
    });
    m_server.Get(R"(/closing/([a-z.0-9]+))", [folder](const auto& request, auto& response) {
        const auto body = std::make_shared<std::string>(bytesOf(folder / request.matches[1].str()));
        response.set_content_provider("video/mp2t", [body](std::size_t offset, httplib::DataSink& sink) {
            return offset < body->size() &&
                   sink.write(body->data() + offset, std::min(body->size() - offset, std::size_t{65536}));
        });
    });
    const auto paced = [this, folder](const std::string& name, double seconds, httplib::Response& response) {
        const auto body = std::make_shared<std::string>(bytesOf(folder / name));
        const auto start = std::chrono::steady_clock::now();
        response.set_content_provider("video/mp2t", [=, this](std::size_t offset, httplib::DataSink& sink) {
            const auto now = std::chrono::steady_clock::now();
            const double elapsed = std::chrono::duration<double>(now - start).count();
            // A channel's server has a second of it at hand.
            const auto due =
                static_cast<std::size_t>((elapsed + 1) / filmSeconds * static_cast<double>(body->size()));
            if (m_stopping || elapsed > seconds || offset >= body->size()) {
                return false;
            }
            if (due <= offset) {
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
                return true;
            }
            return sink.write(body->data() + offset, std::min(due, body->size()) - offset);
        });
    };
    m_server.Get(R"(/live/[^/]+/[^/]+/([a-z.0-9]+))", [paced](const auto& request, auto& response) {
        paced(request.matches[1].str(), filmSeconds, response);
    });
    m_server.Get(R"(/short/([a-z.0-9]+))", [paced](const auto& request, auto& response) {
        paced(request.matches[1].str(), 3, response);
    });
    m_server.Get("/page", [](const auto&, auto& response) {
        response.set_content("<html><body><h1>Conta expirada</h1></body></html>", "text/html");
    });
    m_server.Get("/text", [this](const auto&, auto& response) {
        response.set_content(m_text, "application/octet-stream");
    });
    m_port = m_server.bind_to_any_port("127.0.0.1");
    m_thread = std::thread([this] { m_server.listen_after_bind(); });
}

MediaServer::~MediaServer() {
    m_stopping = true;
    m_server.stop();
    m_thread.join();
}

std::string MediaServer::url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(m_port) + path;
}

SilentServer::SilentServer()
    : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = loopback();
    socklen_t size = sizeof address;
    // The system completes connections that nobody accepts.
    if (::bind(m_socket, reinterpret_cast<sockaddr*>(&address), size) != 0 || ::listen(m_socket, 64) != 0 ||
        ::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("no port");
    }
    m_port = ntohs(address.sin_port);
}

SilentServer::~SilentServer() {
    ::close(m_socket);
}

std::string SilentServer::url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(m_port) + path;
}

Engine::Engine(MpvOutputs outputs, const std::string& url)
    : Engine(std::make_shared<EngineRoom>(outputs), url) {}

Engine::Engine(std::shared_ptr<EngineRoom> room, const std::string& url)
    : m_room(std::move(room))
    , m_player(m_room->makePlayer(url, systemOptions())) {
    observe(FSPlayerIsPreparedToPlayNotification, [](const auto&) { return "prepared"; });
    observe(FSPlayerFirstVideoFrameRenderedNotification, [](const auto&) { return "firstFrame"; });
    observe(FSPlayerSelectedStreamDidChangeNotification, [](const auto&) { return "streams"; });
    observe(FSPlayerPlaybackStateDidChangeNotification, [this](const auto&) {
        return "state:" + std::to_string(static_cast<int>(m_player->playbackState()));
    });
    observe(FSPlayerLoadStateDidChangeNotification,
            [this](const auto&) { return "load:" + std::to_string(m_player->loadState()); });
    observe(FSPlayerDidFinishNotification, [](const Notification& notification) {
        const auto key = QString::fromLatin1(FSPlayerDidFinishReasonUserInfoKey);
        return "finish:" + notification.userInfo.value(key).toString().toStdString();
    });
    m_player->setShouldAutoplay(true);
}

Engine::~Engine() {
    m_player->shutdown();
    // The next engine may stand at the same address.
    m_room->center.removeObserver(this, m_player.get());
}

void Engine::observe(const char* name, std::function<std::string(const Notification&)> describe) {
    m_room->center.addObserver(this, name, m_player.get(),
                               [this, describe = std::move(describe)](const Notification& notification) {
                                   m_events.push_back(describe(notification));
                               });
}

int Engine::count(const std::string& event) const {
    return static_cast<int>(std::count(m_events.begin(), m_events.end(), event));
}

int Engine::indexOf(const std::string& event) const {
    const auto found = std::find(m_events.begin(), m_events.end(), event);
    return found == m_events.end() ? -1 : static_cast<int>(found - m_events.begin());
}

bool Engine::await(const std::string& event, std::chrono::milliseconds timeout) const {
    return waitUntil([&] { return has(event); }, timeout);
}

bool Engine::awaitPosition(double seconds) const {
    return waitUntil([&] { return m_player->currentPlaybackTime() > seconds; });
}

FSOptions Engine::systemOptions() {
    FSOptions options = FSOptions::optionsByDefault();
    options.setPlayerOptionIntValue(0, "videotoolbox");
    options.setPlayerOptionIntValue(15000000, "max-buffer-size");
    options.setFormatOptionIntValue(15000000, "analyzeduration");
    options.setPlayerOptionIntValue(1, "framedrop");
    options.setPlayerOptionValue("fcc-_es2", "overlay-format");
    return options;
}

std::string outcomeOf(const std::string& url) {
    const Engine engine(MpvOutputs::Null, url);
    engine->prepareToPlay();
    waitUntil([&] { return engine.has("finish:0") || engine.has("finish:1"); });
    if (engine->isPlaying()) {
        return "plays on";
    }
    return engine.events().empty() ? "nothing" : engine.events().back();
}

MainThreadWatch::MainThreadWatch() {
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { tick(); });
    m_timer.start(1);
}

void MainThreadWatch::tick() {
    const auto now = Clock::now();
    m_longest = std::max(m_longest, std::chrono::duration<double, std::milli>(now - m_last).count());
    m_last = now;
}

double MainThreadWatch::longestGapMilliseconds() {
    tick();
    return m_longest;
}

int threadCount() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<int>(std::distance(begin(tasks), end(tasks)));
}

std::set<std::string> threadsNamed(const std::string& name) {
    std::set<std::string> numbers;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string found;
        std::getline(std::ifstream(task.path() / "comm"), found);
        if (found == name) {
            numbers.insert(task.path().filename().string());
        }
    }
    return numbers;
}

} // namespace ondavia::testing
