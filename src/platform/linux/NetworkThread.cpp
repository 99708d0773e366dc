#include "platform/linux/NetworkThread.h"

namespace ondavia {

NetworkThread& NetworkThread::instance() {
    static NetworkThread thread;
    return thread;
}

NetworkThread::NetworkThread()
    : m_network(new QNetworkAccessManager) {
    m_thread.setObjectName(QStringLiteral("network"));
    m_network->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_network, &QObject::deleteLater);
    m_thread.start();
}

NetworkThread::~NetworkThread() {
    m_thread.quit();
    m_thread.wait();
}

void NetworkThread::run(std::function<void(QNetworkAccessManager&)> work) {
    QMetaObject::invokeMethod(m_network, [network = m_network, work = std::move(work)] { work(*network); });
}

} // namespace ondavia
