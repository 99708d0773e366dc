#pragma once

#include "library/RunStops.h"
#include "platform/Scheduler.h"
#include "state/AppState.h"

#include "base/AppLogger.h"
#include "base/LocalizedText.h"

#include <cmath>
#include <functional>
#include <optional>
#include <string>

namespace ondavia {

/// Runs `operation` until it succeeds, `retries` more times at the most, after 2, 4, 8 ... seconds. What
/// goes on shows in the state's loading text; the last failure in a toast, and the result is absent then.
/// Every failure counts the same. Main thread; nothing is raised.
template<class Value>
QCoro::Task<std::optional<Value>> fetchWithRetry(std::function<QCoro::Task<Value>()> operation, int retries,
                                                 AppState& appState, Scheduler& scheduler, RunStops stops) {
    for (int attempt = 0;; ++attempt) {
        try {
            co_return co_await operation();
        } catch (const std::exception& error) {
            AppLogger::network.error("catalogue: %s", {error.what()});
        }
        if (stops.account.stop_requested()) {
            co_return std::nullopt;
        }
        if (attempt == retries) {
            appState.showToast(
                localizedText("sync.error.generic",
                              "Erro ao sincronizar. Verifica a tua ligação e tenta novamente."),
                ToastType::warning);
            co_return std::nullopt;
        }
        appState.setLoadingMessage("Tentativa " + std::to_string(attempt + 2) + "/" +
                                   std::to_string(retries + 1) + "...");
        co_await scheduler.sleep(std::pow(2.0, attempt + 1), stops.waits);
        if (stops.account.stop_requested()) {
            co_return std::nullopt;
        }
    }
}

} // namespace ondavia
