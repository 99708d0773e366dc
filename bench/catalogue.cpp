#include "BareCatalogue.h"
#include "support/BenchSupport.h"

#include "app/Services.h"
#include "protocol/XtreamAPIClient.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>

#include <cstdio>

namespace ondavia::bench {
namespace {

QCoro::Task<void> synchronize(Services& services, QEventLoop& loop, bool& succeeded) {
    try {
        const auto client = services.appState.makeXtreamClient();
        co_await services.refresh.synchronise(client);
        succeeded = true;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
    }
    loop.quit();
}

int runOurs(const QString& url, const QString& folder) {
    qputenv("ONDAVIA_DATA_DIR", folder.toUtf8());
    qputenv("ONDAVIA_VAULT", "file");
    Services services(MpvOutputs::Null);
    services.appState.saveCredentials(url.toStdString(), "demo", "demo");
    bool succeeded = false;
    const Measurement measurement = measure([&] {
        QEventLoop loop;
        const auto task = synchronize(services, loop, succeeded);
        loop.exec();
    });
    printForParent(measurement);
    return succeeded ? 0 : 1;
}

int runBare(const QString& url, const QString& folder) {
    printForParent(measure([&] {
        runBareCatalogue(url.toStdString(), std::filesystem::path(folder.toStdString()) / "bare.db");
    }));
    return 0;
}

int runComparison() {
    constexpr int rounds = 3;
    const ProviderProcess provider({QStringLiteral("--scale"), QStringLiteral("180000")});
    compare(rounds, {QStringLiteral("ours"), provider.url()}, {QStringLiteral("bare"), provider.url()})
        .print("catalogue of 180,000 rows over loopback HTTP: download, decode, store (best of 3)");
    return 0;
}

} // namespace
} // namespace ondavia::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QTemporaryDir folder;
    if (arguments.size() == 3) {
        return arguments[1] == QStringLiteral("ours") ? ondavia::bench::runOurs(arguments[2], folder.path())
                                                      : ondavia::bench::runBare(arguments[2], folder.path());
    }
    return ondavia::bench::runComparison();
}
