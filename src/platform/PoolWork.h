#pragma once

#include <QFuture>
#include <QPromise>
#include <QThreadPool>

#include <exception>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace ondavia {

/// Runs `work` on the thread pool. The future holds its result, or raises what it threw as the type that
/// it is (QtConcurrent would raise one of its own). What `work` holds is gone before the future is
/// finished, so that whoever waited may take away what that needs. Any thread.
template<class Work> [[nodiscard]] QFuture<std::invoke_result_t<Work&>> runOnPool(Work work) {
    using Result = std::invoke_result_t<Work&>;
    const auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    const auto held = std::make_shared<std::optional<Work>>(std::move(work));
    QThreadPool::globalInstance()->start([promise, held] {
        try {
            if constexpr (std::is_void_v<Result>) {
                (**held)();
            } else {
                promise->addResult((**held)());
            }
        } catch (...) {
            // Whatever it is belongs to whoever waits.
            promise->setException(std::current_exception());
        }
        held->reset();
        promise->finish();
    });
    return promise->future();
}

} // namespace ondavia
