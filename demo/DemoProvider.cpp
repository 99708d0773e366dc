#include "demo/DemoProvider.h"

#include "demo/Service.h"

#include <stdexcept>
#include <thread>

namespace ondavia::demo {
namespace {

/// Endless streams and idle connections each hold one.
constexpr std::size_t workerThreads = 64;
/// A paused player reads nothing for a long time and is still there.
constexpr time_t writeTimeoutSeconds = 3600;

} // namespace

class DemoProvider::Running final {
public:
    explicit Running(DemoOptions options)
        : m_options(std::move(options))
        , m_media(m_options.mediaFolder) {}
    ~Running() { stop(); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    std::string start() {
        m_server.new_task_queue = [] { return new httplib::ThreadPool(workerThreads); };
        m_server.set_keep_alive_max_count(100000);
        m_server.set_tcp_nodelay(true);
        m_server.set_write_timeout(writeTimeoutSeconds);
        const char* host = "127.0.0.1";
        const int port = m_options.port == 0                           ? m_server.bind_to_any_port(host)
                         : m_server.bind_to_port(host, m_options.port) ? m_options.port
                                                                       : -1;
        if (port <= 0) {
            throw std::runtime_error("port " + std::to_string(m_options.port) + " cannot be listened on");
        }
        m_service = std::make_unique<Service>(m_options, port, faults, m_media, m_pictures);
        addApiRoutes(m_server, *m_service);
        addMediaRoutes(m_server, *m_service);
        addPictureRoutes(m_server, *m_service);
        m_listener = std::jthread([this] { m_server.listen_after_bind(); });
        while (!m_server.is_running()) {
            std::this_thread::yield();
        }
        if (m_options.warmUp == MediaWarmUp::fromStart) {
            m_media.warmUp();
        }
        return m_service->baseUrl;
    }

    void stop() {
        if (!m_listener.joinable()) {
            return;
        }
        m_service->stopping.request_stop();
        m_media.stop();
        m_server.stop();
        std::jthread waker([this](const std::stop_token& done) {
            // The library ends its workers only when their clients let it, which an idle or paused one does
            // not.
            while (!done.stop_requested()) {
                shutConnections(m_service->port);
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
        });
        m_listener.join();
    }

    [[nodiscard]] int openStreams() const { return m_service ? m_service->openStreams.count() : 0; }
    [[nodiscard]] int mostStreams() const { return m_service ? m_service->openStreams.most() : 0; }
    [[nodiscard]] std::string lastStream() const {
        return m_service ? m_service->openStreams.lastPath() : std::string();
    }

    Faults faults;

private:
    DemoOptions m_options;
    MediaFactory m_media;
    Pictures m_pictures;
    std::unique_ptr<Service> m_service;
    httplib::Server m_server;
    std::jthread m_listener;
};

DemoProvider::DemoProvider(DemoOptions options)
    : m_running(std::make_unique<Running>(std::move(options))) {}
DemoProvider::~DemoProvider() = default;

std::string DemoProvider::start() {
    return m_running->start();
}
void DemoProvider::stop() {
    m_running->stop();
}
void DemoProvider::setFault(std::string_view faults) {
    m_running->faults.set(faults);
}
void DemoProvider::clearFaults() {
    m_running->faults.clear();
}
int DemoProvider::openStreams() const {
    return m_running->openStreams();
}
int DemoProvider::mostStreams() const {
    return m_running->mostStreams();
}
std::string DemoProvider::lastStream() const {
    return m_running->lastStream();
}

} // namespace ondavia::demo
