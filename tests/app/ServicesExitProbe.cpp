#include "app/Services.h"
#include "protocol/XtreamAPIClient.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <unistd.h>

// Starts a synchronisation and a guide's load from the given server, and ends in the middle of both once
// something comes on standard input.

namespace {

QCoro::Task<void> synchronise(ondavia::DataSyncService& service) {
    try {
        co_await service.syncAll();
    } catch (const std::exception&) {
        // It is never to end.
    }
}

QCoro::Task<void> loadGuide(ondavia::EPGService service, std::string address) {
    try {
        co_await service.loadEPG(address);
    } catch (const std::exception&) {
        // Neither is this.
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    ondavia::Services services(ondavia::MpvOutputs::Null);
    const auto client =
        std::make_shared<ondavia::XtreamAPIClient>(argv[1], "ana", "word", services.makeSession);
    ondavia::DataSyncService service(client, services.syncEnvironment());
    const auto synchronising = synchronise(service);
    const auto loading = loadGuide(ondavia::EPGService(services.guideEnvironment()), client->getEpgXMLURL());
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
