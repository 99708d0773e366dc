#include "app/Services.h"
#include "protocol/XtreamAPIClient.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <unistd.h>

// Starts a synchronisation and a guide's load from the given server, and ends in the middle of both once
// something comes on standard input.

namespace {

QCoro::Task<void> untilItEnds(QCoro::Task<void> task) {
    try {
        co_await task;
    } catch (const std::exception&) {
        // It is never to end.
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    ondavia::Services services(ondavia::MpvOutputs::Null);
    const auto client =
        std::make_shared<ondavia::XtreamAPIClient>(argv[1], "ana", "word", services.makeSession);
    const auto synchronising = untilItEnds(services.refresh.synchronise(client));
    const auto loading = untilItEnds(services.refresh.loadGuide(client));
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
