#include "screens/signin/AccountCheck.h"

#include "base/AppLogger.h"
#include "base/Text.h"
#include "protocol/XtreamAPIClient.h"

namespace ondavia {

namespace {

/// The transport's numbers for a handshake that failed and for a certificate that nobody vouches for.
constexpr std::int64_t tlsHandshakeFailed = 35;
constexpr std::int64_t certificateNotTrusted = 60;

AccountVerdict verdictOf(const URLError& error) {
    return error.code() == tlsHandshakeFailed || error.code() == certificateNotTrusted
               ? AccountVerdict::Untrusted
               : AccountVerdict::Unreachable;
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
    const auto& account = reply.userInfo;
    const auto expiry =
        account && account->expDate ? parseDecimalInteger(*account->expDate) : std::optional<std::int64_t>();
    return expiry && static_cast<double>(*expiry) < secondsSince1970(now) ? AccountVerdict::Expired
                                                                          : AccountVerdict::Accepted;
}

} // namespace

QCoro::Task<AccountVerdict> checkAccount(std::shared_ptr<XtreamAPIClient> client, Date now) {
    try {
        co_return verdictOf(co_await client->authenticate(), now);
    } catch (const XtreamError& error) {
        co_return verdictOf(error, *client);
    } catch (const URLError& error) {
        AppLogger::network.debug("Account check: %s", {error.what()});
        co_return verdictOf(error);
    } catch (const DecodingError& error) {
        AppLogger::network.debug("Account check: %s", {error.what()});
        co_return AccountVerdict::NotThisProtocol;
    }
}

} // namespace ondavia
