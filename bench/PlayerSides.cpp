#include "PlayerSides.h"

#include "platform/linux/GraphicsDriver.h"
#include "support/BenchSupport.h"

#include <QDeadlineTimer>
#include <QGuiApplication>

#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace ondavia::bench {

void await(const std::function<bool()>& condition, std::chrono::seconds patience) {
    // Events come all the time while a film plays; a paused loop is woken by this.
    QTimer pulse;
    pulse.start(1);
    for (const QDeadlineTimer deadline(patience); !condition();) {
        if (deadline.hasExpired()) {
            throw std::runtime_error("the film does not play");
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void runLoop(double seconds) {
    // Woken by nothing of its own meanwhile, which would count as the processor time of what is measured.
    QEventLoop loop;
    QTimer::singleShot(std::chrono::milliseconds(static_cast<int>(seconds * 1000)), Qt::PreciseTimer, &loop,
                       &QEventLoop::quit);
    loop.exec();
}

void drawAsTheApplication() {
    readGraphicsDriver(QGuiApplication::platformName().toStdString());
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(isOpenGlSoftware() ? QSGRendererInterface::Software
                                                        : QSGRendererInterface::OpenGL);
    }
}

Channel itemAt(const QString& url, const char* type) {
    Channel channel;
    channel.id = "main_1";
    channel.name = "Film";
    channel.type = type;
    channel.url = url.toStdString();
    return channel;
}

PlainWindow::PlainWindow() {
    m_window.setColor(Qt::black);
    m_window.resize(windowSize);
    m_window.show();
    await([this] { return m_window.isExposed(); });
}

OurPlayer::OurPlayer() {
    m_host.setManager(&m_services.playerManager);
    m_host.setParentItem(m_window.window().contentItem());
    m_host.setSize(windowSize);
    QObject::connect(&m_services.playerManager, &PlayerManager::isBufferingChanged, &m_host, [this] {
        if (!m_services.playerManager.isBuffering() && m_services.playerManager.player()) {
            m_firstFrame = Clock::now();
        }
    });
}

double OurPlayer::start(const Channel& item) {
    m_firstFrame = {};
    const auto begin = Clock::now();
    m_services.playerManager.play(item, 0);
    await([this] { return m_firstFrame != Clock::time_point(); });
    return std::chrono::duration<double>(m_firstFrame - begin).count();
}

double BarePlayer::start(const Channel& item) {
    const auto begin = Clock::now();
    stop();
    m_signs.firstFrame = 0;
    m_item = makeBareVideo(m_window.window(), item.url, m_signs);
    await([this] { return m_signs.firstFrame != 0; });
    return std::chrono::duration<double>(Clock::duration(m_signs.firstFrame) - begin.time_since_epoch())
        .count();
}

void BarePlayer::stop() {
    m_item.reset();
    await([this] { return m_signs.running == 0; });
}

Holdings Holdings::now() {
    const auto count = [](const char* folder) {
        return std::distance(std::filesystem::directory_iterator(folder),
                             std::filesystem::directory_iterator());
    };
    return {count("/proc/self/task"), count("/proc/self/fd"), residentMemory()};
}

void Holdings::print(int after) const {
    std::printf("  after %4d  %3td threads  %3td descriptors  %6.1f MiB\n", after, threads, descriptors,
                memory);
    std::fflush(stdout);
}

} // namespace ondavia::bench
