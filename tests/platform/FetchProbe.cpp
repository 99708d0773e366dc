#include "platform/linux/CurlURLSession.h"
#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QUrl>

#include <cstdio>

/// Fetches one address over the system's own transport, and prints the status or the number of the
/// transport's failure.
int main(int argc, char** argv) {
    using namespace ondavia;
    const QCoreApplication application(argc, argv);
    const auto session = makeCurlURLSession();
    try {
        const auto response = testing::resultOf(session->data(makeURL(argv[argc - 1]).value()));
        std::printf("status %d: %s", response.statusCode.value_or(0), response.body.c_str());
    } catch (const URLError& error) {
        std::printf("error %d", static_cast<int>(error.kind()));
    }
    return 0;
}
