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

/// Work whose result somebody waits for. The future holds that result, or raises what the work threw as the
/// type that it is (QtConcurrent would raise one of its own). What the work holds is gone before the future
/// is finished, so that whoever waited may take away what that needs.
template<class Result, class Work> class PromisedWork final {
public:
    explicit PromisedWork(Work work)
        : m_work(std::move(work)) {
        m_promise.start();
    }

    [[nodiscard]] QFuture<Result> future() const { return m_promise.future(); }

    /// To be called once, on whatever thread.
    template<class... Arguments> void run(Arguments&... arguments) {
        try {
            if constexpr (std::is_void_v<Result>) {
                (*m_work)(arguments...);
            } else {
                m_promise.addResult((*m_work)(arguments...));
            }
        } catch (...) {
            // Whatever it is belongs to whoever waits.
            m_promise.setException(std::current_exception());
        }
        m_work.reset();
        m_promise.finish();
    }

private:
    QPromise<Result> m_promise;
    std::optional<Work> m_work;
};

/// Runs `work` on a thread of `pool`. Any thread.
template<class Work>
[[nodiscard]] QFuture<std::invoke_result_t<Work&>>
runOnPool(Work work, QThreadPool& pool = *QThreadPool::globalInstance()) {
    const auto kept = std::make_shared<PromisedWork<std::invoke_result_t<Work&>, Work>>(std::move(work));
    pool.start([kept] { kept->run(); });
    return kept->future();
}

} // namespace ondavia
