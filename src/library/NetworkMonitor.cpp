#include "library/NetworkMonitor.h"

#include "platform/NWPathMonitor.h"

#include <QCoreApplication>
#include <QPointer>

namespace ondavia {

NetworkMonitor::NetworkMonitor(std::unique_ptr<NWPathMonitor> monitor)
    : m_monitor(std::move(monitor)) {
    m_monitor->setPathUpdateHandler([weak = QPointer(this)](const NWPath& path) {
        QMetaObject::invokeMethod(
            qApp,
            [weak, path] {
                if (weak) {
                    weak->setIsConnected(path.satisfied);
                    weak->setIsExpensive(path.isExpensive);
                }
            },
            Qt::QueuedConnection);
    });
    m_monitor->start();
}

NetworkMonitor::~NetworkMonitor() = default;

} // namespace ondavia
