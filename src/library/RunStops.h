#pragma once

#include <stop_token>
#include <system_error>

namespace ondavia {

/// What ends a run before its time.
struct RunStops final {
    /// Ends the waits between attempts, not the attempts.
    std::stop_token waits;
    /// The account is in use no longer, or nobody waits for the run: there is no further attempt, and nobody
    /// is told of the last one.
    std::stop_token account;
};

/// Raises std::system_error when the account that something is done for is in use no longer.
inline void requireWanted(const std::stop_token& account) {
    if (account.stop_requested()) {
        throw std::system_error(std::make_error_code(std::errc::operation_canceled),
                                "the account has changed meanwhile");
    }
}

} // namespace ondavia
