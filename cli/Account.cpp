#include "cli/Account.h"

#include "base/Redaction.h"
#include "cli/Command.h"
#include "protocol/XtreamAPIClient.h"
#include "state/AppState.h"

namespace ondavia::cli {
namespace {

std::string refusal(const XtreamAPIClient& client) {
    const auto& account = client.userInfo();
    if (!account) {
        return "the reply to the log-in holds no account: this is no provider of this kind";
    }
    std::string text = "the provider refuses this account: wrong user name or password, or it has ended";
    for (const auto& reason : {account->status, account->message}) {
        if (reason && !reason->empty()) {
            text += "; it says \"" + maskSecrets(*reason) + "\"";
        }
    }
    return text;
}

} // namespace

std::shared_ptr<XtreamAPIClient> requireClient(const AppState& appState) {
    auto client = appState.makeXtreamClient();
    if (!client) {
        throw CommandError("nobody is signed in: ondavia-cli signin --server ADDRESS --username NAME");
    }
    return client;
}

QCoro::Task<XtreamUserInfo> logIn(std::shared_ptr<XtreamAPIClient> client) {
    try {
        const XtreamAuthResponse reply = co_await client->authenticate();
        co_return *reply.userInfo;
    } catch (const XtreamError& error) {
        if (error.kind() != XtreamError::Case::authFailed) {
            throw;
        }
    }
    throw CommandError(refusal(*client));
}

} // namespace ondavia::cli
