#include "MediaServer.h"

#include <QProcess>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace ondavia::testing {
namespace {

constexpr std::size_t pieceSize = 16384;

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

MediaServer::MediaServer(const std::filesystem::path& clip)
    : m_clip(contentOf(clip))
    , m_end(m_clip.size())
    , m_hold(m_clip.size()) {
    m_server.Get(R"(/(movie|series)/.*)", [this](const httplib::Request& request,
                                                 httplib::Response& response) { answer(request, response); });
    m_port = m_server.bind_to_any_port("127.0.0.1");
    m_thread = std::thread([this] { m_server.listen_after_bind(); });
}

MediaServer::~MediaServer() {
    m_server.stop();
    m_thread.join();
}

std::string MediaServer::server() const {
    return "http://127.0.0.1:" + std::to_string(m_port);
}

std::string MediaServer::url() const {
    return server() + "/movie/maria/s3cr3t-word/7.mp4";
}

void MediaServer::cutAt(double fraction) {
    m_end = static_cast<std::size_t>(static_cast<double>(m_clip.size()) * fraction);
}

void MediaServer::holdAt(double fraction) {
    m_hold = static_cast<std::size_t>(static_cast<double>(m_clip.size()) * fraction);
}

void MediaServer::mend() {
    m_refuses = false;
    m_end = m_clip.size();
    m_hold = m_clip.size();
}

void MediaServer::answer(const httplib::Request& /*request*/, httplib::Response& response) {
    ++m_requests;
    if (m_refuses) {
        response.status = 404;
        return;
    }
    if (!m_tellsSize) {
        response.set_chunked_content_provider(
            "video/mp4", [this](std::size_t offset, httplib::DataSink& sink) {
                const std::size_t end = m_end;
                if (offset >= m_clip.size()) {
                    sink.done();
                    return true;
                }
                return offset < end && sink.write(m_clip.data() + offset, std::min(end - offset, pieceSize));
            });
        return;
    }
    response.set_content_provider(
        m_clip.size(), "video/mp4", [this](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            const std::size_t end = m_end;
            if (offset >= end) {
                return false;
            }
            if (offset >= m_hold) {
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
                return !m_refuses;
            }
            sink.write(m_clip.data() + offset, std::min({length, pieceSize, end - offset}));
            return true;
        });
}

bool makeClip(const std::filesystem::path& file, int seconds) {
    const QString length = QString::number(seconds);
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"), {QStringLiteral("-v"),
                                            QStringLiteral("error"),
                                            QStringLiteral("-f"),
                                            QStringLiteral("lavfi"),
                                            QStringLiteral("-i"),
                                            QStringLiteral("testsrc2=size=320x180:rate=25"),
                                            QStringLiteral("-f"),
                                            QStringLiteral("lavfi"),
                                            QStringLiteral("-i"),
                                            QStringLiteral("sine=frequency=330"),
                                            QStringLiteral("-t"),
                                            length,
                                            QStringLiteral("-c:v"),
                                            QStringLiteral("libx264"),
                                            QStringLiteral("-preset"),
                                            QStringLiteral("ultrafast"),
                                            QStringLiteral("-g"),
                                            QStringLiteral("25"),
                                            QStringLiteral("-pix_fmt"),
                                            QStringLiteral("yuv420p"),
                                            QStringLiteral("-c:a"),
                                            QStringLiteral("aac"),
                                            QStringLiteral("-movflags"),
                                            QStringLiteral("+faststart"),
                                            QString::fromStdString(file.string())});
    return ffmpeg.waitForFinished(60000) && ffmpeg.exitStatus() == QProcess::NormalExit &&
           ffmpeg.exitCode() == 0;
}

} // namespace ondavia::testing
