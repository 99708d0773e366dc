#include "demo/DemoProvider.h"
#include "demo/Faults.h"
#include "demo/MediaFactory.h"

#include <QGuiApplication>

#include <CLI/CLI.hpp>

#include <csignal>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace ondavia::demo;

struct Arguments final {
    DemoOptions options;
    std::vector<std::string> faults;
    bool listFaults = false;
    bool makeMedia = false;
    bool lazyMedia = false;
};

void describe(CLI::App& app, Arguments& arguments) {
    DemoOptions& options = arguments.options;
    app.add_option("--port", options.port, "port on 127.0.0.1; 0 takes a free one")
        ->check(CLI::Range(0, 65535));
    app.add_option("--user", options.user, "account name")->capture_default_str();
    app.add_option("--password", options.password, "account password")->capture_default_str();
    app.add_option("--seed", options.seed, "the same seed gives the same catalogue")->capture_default_str();
    app.add_option("--scale", options.scale, "catalogue rows in all; 0 is the believable catalogue")
        ->check(CLI::Range(0, 600000));
    app.add_option("--guide-programmes", options.guideProgrammes,
                   "programmes in the guide; 0 is the believable one")
        ->check(CLI::Range(0, 5000000));
    app.add_option("--max-connections", options.maxConnections, "streams at once; 0 is no limit")
        ->capture_default_str();
    app.add_option("--media-dir", options.mediaFolder, "where made media stay");
    app.add_option("--fault", arguments.faults, "NAME or NAME:ACTION; may be repeated");
    app.add_flag("--list-faults", arguments.listFaults, "print all faults and actions, and end");
    app.add_flag("--make-media", arguments.makeMedia, "make all media files, and end");
    app.add_flag("--lazy-media", arguments.lazyMedia, "make each media file only when it is asked for");
}

void printFaults() {
    for (const FaultDescription& fault : Faults::known()) {
        std::cout << fault.name << std::string(24 - fault.name.size(), ' ') << fault.effect << '\n';
    }
    std::cout << "\nactions:";
    for (const std::string_view action : Faults::actions()) {
        std::cout << ' ' << action;
    }
    std::cout << std::endl;
}

/// Runs until SIGINT or SIGTERM, which the caller has blocked for every thread.
void serve(const Arguments& arguments, const sigset_t& endings) {
    DemoProvider provider(arguments.options);
    for (const std::string& fault : arguments.faults) {
        provider.setFault(fault);
    }
    std::cout << "listening on " << provider.start() << std::endl;
    int signal = 0;
    sigwait(&endings, &signal);
    provider.stop();
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("A provider for demonstrations, tests and benchmarks");
    Arguments arguments;
    describe(app, arguments);
    CLI11_PARSE(app, argc, argv);
    arguments.options.warmUp = arguments.lazyMedia ? MediaWarmUp::onDemand : MediaWarmUp::fromStart;
    if (arguments.listFaults) {
        printFaults();
        return 0;
    }
    sigset_t endings;
    sigemptyset(&endings);
    sigaddset(&endings, SIGINT);
    sigaddset(&endings, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endings, nullptr);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication fonts(argc, argv);
    try {
        if (arguments.makeMedia) {
            MediaFactory(arguments.options.mediaFolder).makeAll();
        } else {
            serve(arguments, endings);
        }
    } catch (const std::exception& error) {
        std::cerr << "ondavia-demo-provider: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
