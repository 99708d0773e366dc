#include "app/Services.h"
#include "base/Redaction.h"
#include "base/Text.h"
#include "cli/Account.h"
#include "cli/Arguments.h"
#include "cli/Output.h"
#include "protocol/XtreamAPIClient.h"

#include <cstdio>

namespace ondavia::cli {
namespace {

void tell(const std::string& text) {
    std::fprintf(stderr, "%s\n", text.c_str());
}

void warnAboutExpiry(const XtreamUserInfo& account) {
    const auto expiry = expiryOf(account);
    if (expiry && *expiry < currentDate()) {
        tell("warning: the account has expired on " + isoText(*expiry) +
             ", though the provider still accepts it");
    }
}

void requireKept(KeychainService& keychain, const Credentials& credentials) {
    if (keychain.loadCredentials() != credentials) {
        throw CommandError("the account is right, but the keyring did not take it");
    }
    if (!keychain.remembers()) {
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
    const auto client = std::make_shared<XtreamAPIClient>(credentials.server, credentials.username,
                                                          credentials.password, services.makeSession);
    const XtreamUserInfo account = co_await logIn(client);
    warnAboutExpiry(account);
    services.appState.saveCredentials(credentials.server, credentials.username, credentials.password);
    requireKept(services.keychain, credentials);
    tell("signed in to " + maskSecrets(client->server()));
}

QCoro::Task<void> signOut(CommandContext context) {
    StoreContext& rows = context.services.store->mainContext();
    rows.removeAll<Channel>();
    rows.removeAll<Playlist>();
    rows.removeAll<Favorite>();
    rows.removeAll<WatchHistory>();
    rows.removeAll<EPGProgram>();
    rows.save();
    context.services.appState.logout();
    co_return;
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
