#include "app/Services.h"
#include "base/Redaction.h"
#include "base/Text.h"
#include "base/VisibleText.h"
#include "cli/Account.h"
#include "cli/Arguments.h"
#include "cli/Output.h"
#include "platform/linux/DataFolders.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/SecItemStores.h"
#include "protocol/AccountExpiry.h"
#include "protocol/ServerAddress.h"
#include "protocol/XtreamAPIClient.h"

#include <qcoro/qcorofuture.h>

namespace ondavia::cli {
namespace {

void tell(const std::string& text) {
    writeLine(stderr, text);
}

/// By the rule of the client such an address has no scheme yet and gets one in front.
void warnAboutScheme(std::string_view server) {
    if (hasSchemeInCapitals(server)) {
        tell("warning: only http:// and https:// in small letters begin an address; this one is taken for a "
             "server's name");
    }
}

constexpr const char* accountKept = "the keyring did not delete the account, and still holds the password";

void warnAboutExpiry(const XtreamUserInfo& account) {
    const auto expiry = expiryOf(account);
    if (expiry && *expiry < currentDate()) {
        tell("warning: the account has expired on " + isoText(*expiry) +
             ", though the provider still accepts it");
    }
}

QCoro::Task<void> requireKept(Services& services, Credentials credentials) {
    const auto stored =
        services.keychainQueue.run([](KeychainService& keychain) { return keychain.loadCredentials(); });
    const std::optional<Credentials> kept = co_await stored;
    if (kept != credentials) {
        throw CommandError("the account is right, but the keyring did not take it");
    }
    if (!services.keychain.remembers()) {
        tell("warning: no keyring answers, so the account is forgotten as this command ends; with "
             "ONDAVIA_VAULT=file it is kept in a file that only you can read");
    }
}

Value number(const std::optional<std::string>& text) {
    return toValue(parseDecimalInteger(text.value_or(std::string())));
}

} // namespace

QCoro::Task<void> signIn(CommandContext context) {
    Services& services = context.services;
    const Credentials credentials{context.arguments.server, context.arguments.username, context.password};
    warnAboutScheme(credentials.server);
    const auto client = std::make_shared<XtreamAPIClient>(credentials.server, credentials.username,
                                                          credentials.password, services.makeSession);
    const XtreamUserInfo account = co_await logIn(client);
    warnAboutExpiry(account);
    services.appState.saveCredentials(credentials.server, credentials.username, credentials.password);
    co_await requireKept(services, credentials);
    tell("signed in to " + maskSecrets(client->server()));
}

QCoro::Task<void> signOut(CommandContext context) {
    std::exception_ptr failure;
    try {
        context.services.refresh.signOut();
    } catch (const StoreError&) {
        // Raised below.
        failure = std::current_exception();
    }
    // Once more, behind the deletion that is under way: what is left is told.
    const auto deleted = context.services.keychainQueue.run(
        [](KeychainService& keychain) { return keychain.removeCredentials(); });
    const bool isForgotten = co_await deleted;
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (!isForgotten) {
        throw CommandError(accountKept);
    }
}

void forgetAccount() {
    const DataFolders folders = DataFolders::fromEnvironment();
    JsonUserDefaults defaults(folders.settings / "settings.json");
    const auto items = makeSecItemStore(folders.vault);
    tell(KeychainService(*items, defaults).removeCredentials() ? "the account is forgotten" : accountKept);
}

QCoro::Task<void> showAccount(CommandContext context) {
    const AppState& appState = context.services.appState;
    const auto client = requireClient(appState);
    const XtreamUserInfo account = co_await logIn(client);
    warnAboutExpiry(account);
    const auto& server = client->serverInfo();
    const Record record{
        {"server", appState.server()},
        {"username", appState.username()},
        {"status", toValue(account.status)},
        {"expirationDate", toValue(expiryOf(account))},
        {"maxConnections", number(account.maxConnections)},
        {"activeConnections", number(account.activeCons)},
        {"isTrial", toValue(account.isTrial)},
        {"allowedOutputFormats", toValue(account.allowedOutputFormats)},
        {"timezone", server ? toValue(server->timezone) : Value()},
        {"message", toValue(account.message)},
    };
    context.output.print(record);
}

} // namespace ondavia::cli
