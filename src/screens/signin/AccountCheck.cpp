#include "screens/signin/AccountCheck.h"

#include "base/AppLogger.h"
#include "protocol/AccountExpiry.h"
#include "protocol/XtreamAPIClient.h"

#include <memory>

namespace ondavia {

namespace {

AccountVerdict verdictOf(const URLError& error) {
    const bool lacksTrust =
        error.kind() == URLError::Kind::NoEncryption || error.kind() == URLError::Kind::Untrusted;
    return lacksTrust ? AccountVerdict::Untrusted : AccountVerdict::Unreachable;
}

AccountVerdict verdictOf(const XtreamError& error, const XtreamAPIClient& client) {
    switch (error.kind()) {
    case XtreamError::Case::authFailed:
        // JSON of any other kind decodes into a reply without an account.
        return client.userInfo() ? AccountVerdict::Refused : AccountVerdict::NotThisProtocol;
    case XtreamError::Case::expired:
        return AccountVerdict::Expired;
    case XtreamError::Case::invalidURL:
        return AccountVerdict::BadAddress;
    case XtreamError::Case::decodingError:
        return AccountVerdict::NotThisProtocol;
    case XtreamError::Case::httpError:
        break;
    }
    if (error.statusCode() == 401 || error.statusCode() == 403) {
        return AccountVerdict::Refused;
    }
    return error.statusCode() >= 500 ? AccountVerdict::ServerFailure : AccountVerdict::NotThisProtocol;
}

AccountVerdict verdictOf(const XtreamAuthResponse& reply, Date now) {
    const auto expiry = reply.userInfo ? expiryOf(*reply.userInfo) : std::nullopt;
    return expiry && *expiry < now ? AccountVerdict::Expired : AccountVerdict::Accepted;
}

} // namespace

QCoro::Task<AccountVerdict> checkAccount(TypedAccount account, URLSessionFactory makeSession, Date now) {
    std::shared_ptr<XtreamAPIClient> client;
    try {
        client = std::make_shared<XtreamAPIClient>(account.server, account.username, account.password,
                                                   makeSession);
        co_return verdictOf(co_await client->authenticate(), now);
    } catch (const XtreamError& error) {
        co_return verdictOf(error, *client);
    } catch (const URLError& error) {
        AppLogger::network.debug("Account check: %s", {error.what()});
        co_return verdictOf(error);
    } catch (const DecodingError& error) {
        AppLogger::network.debug("Account check: %s", {error.what()});
        co_return AccountVerdict::NotThisProtocol;
    } catch (const std::exception& error) {
        // No thread for the transfer, no memory: whoever waits must not wait for ever.
        AppLogger::network.error("Account check: %s", {error.what()});
        co_return AccountVerdict::NotAsked;
    }
}

} // namespace ondavia
