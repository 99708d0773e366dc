#include "platform/linux/QtPathMonitor.h"

#include <QNetworkInformation>

namespace ondavia {
namespace {

class QtPathMonitor final : public NWPathMonitor {
public:
    void setPathUpdateHandler(UpdateHandler handler) override { m_handler = std::move(handler); }

    void start() override {
        if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability)) {
            m_handler({});
            return;
        }
        const QNetworkInformation* network = QNetworkInformation::instance();
        QObject::connect(network, &QNetworkInformation::reachabilityChanged, &m_context,
                         [this] { report(); });
        QObject::connect(network, &QNetworkInformation::isMeteredChanged, &m_context, [this] { report(); });
        report();
    }

private:
    void report() const {
        const QNetworkInformation* network = QNetworkInformation::instance();
        // A back end that cannot tell must not keep a download back.
        const bool satisfied = network->reachability() != QNetworkInformation::Reachability::Disconnected;
        m_handler({satisfied, network->isMetered()});
    }

    UpdateHandler m_handler;
    QObject m_context;
};

} // namespace

std::unique_ptr<NWPathMonitor> makeQtPathMonitor() {
    return std::make_unique<QtPathMonitor>();
}

} // namespace ondavia
