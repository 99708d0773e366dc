#include "app/QtMessages.h"
#include "app/Services.h"
#include "base/Redaction.h"
#include "cli/Arguments.h"
#include "cli/Failures.h"
#include "cli/Interruption.h"
#include "cli/Output.h"
#include "cli/PasswordInput.h"

#include <QCoreApplication>

#include <clocale>
#include <cstdio>

namespace {

using namespace ondavia;
using namespace ondavia::cli;

constexpr int failureStatus = 1;

void reportFailure(const std::exception& error) {
    std::fflush(stdout);
    std::fprintf(stderr, "error: %s\n", explain(error).c_str());
}

/// Ends the event loop when the command has ended. In a later turn: a command that waits for nothing ends
/// before the loop begins.
QCoro::Task<void> runToTheEnd(CommandContext context) {
    int status = 0;
    try {
        co_await context.arguments.command(context);
        context.output.finish();
    } catch (const std::exception& error) {
        reportFailure(error);
        status = failureStatus;
    }
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [status] { QCoreApplication::exit(status); }, Qt::QueuedConnection);
}

int runCommand(const Arguments& arguments, Interruption& interruption) {
    const std::string password = arguments.wantsPassword ? readPassword(interruption) : std::string();
    registerSecret(password);
    interruption.endProcess();
    Services services(MpvOutputs::Null);
    Output output(arguments.format);
    output.setPassword(arguments.wantsPassword ? password : services.appState.password());
    registerSecret(services.appState.password());
    const CommandContext context{services, output, arguments, password};
    const auto running = runToTheEnd(context);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    const ParsedArguments parsed = parseArguments(argc, argv);
    if (parsed.exitStatus) {
        return *parsed.exitStatus;
    }
    routeQtMessages();
    Interruption interruption;
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ondavia"));
    // libmpv reads and writes numbers by the C locale.
    std::setlocale(LC_NUMERIC, "C");
    try {
        return runCommand(parsed.arguments, interruption);
    } catch (const Interrupted& interrupted) {
        return 128 + interrupted.signal;
    } catch (const std::exception& error) {
        reportFailure(error);
        return failureStatus;
    }
}
