#include "app/QtMessages.h"
#include "app/Services.h"
#include "base/Redaction.h"
#include "base/VisibleText.h"
#include "cli/Arguments.h"
#include "cli/Failures.h"
#include "cli/Interruption.h"
#include "cli/Output.h"
#include "cli/PasswordInput.h"

#include <QCoreApplication>
#include <qcoro/qcorosignal.h>

#include <clocale>
#include <cstdio>

namespace {

using namespace ondavia;
using namespace ondavia::cli;

constexpr int failureStatus = 1;

void reportFailure(const std::exception& error) {
    std::fflush(stdout);
    writeLine(stderr, "error: " + explain(error));
}

/// Waits for the keyring, which may want a password first, and says so when that takes longer than a glance.
QCoro::Task<void> awaitAccount(Services& services) {
    const AppState& state = services.appState;
    if (!state.isAwaitingAccount()) {
        co_return;
    }
    QObject listener;
    QObject::connect(&services.keychainQueue, &KeychainQueue::gaveUp, &listener, [] {
        std::fputs("warning: the keyring does not answer, so nothing is remembered\n", stderr);
    });
    const auto notice = services.scheduler->once(1, [] {
        std::fprintf(stderr, "waiting for the keyring, for %.0f seconds at the most\n",
                     KeychainQueue::patience);
    });
    co_await qCoro(&services.appState, &AppState::isAwaitingAccountChanged);
}

/// Ends the event loop when the command has ended. In a later turn: a command that waits for nothing ends
/// before the loop begins.
QCoro::Task<void> runToTheEnd(CommandContext context) {
    int status = 0;
    try {
        co_await awaitAccount(context.services);
        const std::string& password =
            context.arguments.wantsPassword ? context.password : context.services.appState.password();
        registerSecret(password);
        context.output.setPassword(password);
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
        if (parsed.arguments.command == &signOut) {
            forgetAccount();
        }
        reportFailure(error);
        return failureStatus;
    }
}
