#pragma once

#include "library/RunStops.h"
#include "protocol/XtreamAPIClient.h"
#include "store/Replacement.h"
#include "store/StoreError.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <span>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace ondavia {

/// The three lists, in the order in which their rows stand in the catalogue.
enum class CatalogueSection { Live = 0, Movies = 1, Series = 2 };

/// The first of the errors that the writing of a catalogue met; those after it only follow from it. Any
/// thread.
class FirstFailure final {
public:
    void keep(std::exception_ptr failure) {
        const std::lock_guard lock(m_mutex);
        if (!m_failure) {
            m_failure = std::move(failure);
        }
    }
    [[nodiscard]] bool isKept() const {
        const std::lock_guard lock(m_mutex);
        return m_failure != nullptr;
    }
    void rethrow() const {
        const std::lock_guard lock(m_mutex);
        if (m_failure) {
            std::rethrow_exception(m_failure);
        }
    }

private:
    mutable std::mutex m_mutex;
    std::exception_ptr m_failure;
};

/// Takes the rows of one stream list as they arrive, normalises them and puts them aside for the new
/// catalogue, so that download, decoding and writing overlap. Rows that come before the categories are
/// known wait here; when many wait, `take` does too, and with it the server that sends them. An account that
/// is in use no longer ends both: `take` raises std::system_error then.
///
/// `restart`, `take` and `finish` write, and run on worker threads; `setCategories` may be called from any.
/// The others belong to whoever waited for those. A failed write is kept in the catalogue's `FirstFailure`:
/// it is no fault of the server and must not start another download.
template<class Row> class SectionIntake final {
public:
    /// Batches that wait for their categories at the most: about 128 MB of the server's text, so that
    /// categories that are slow to come hold up only the very largest list.
    static constexpr std::size_t maximumWaitingBatches = 512;

    using Normalize = std::vector<Channel> (XtreamAPIClient::*)(std::span<Row>, const std::string&,
                                                                const CategoryMap&) const;

    SectionIntake(std::shared_ptr<const XtreamAPIClient> client,
                  std::shared_ptr<Replacement<Channel>> catalogue, FirstFailure& failure,
                  CatalogueSection section, Normalize normalize, std::stop_token account = {})
        : m_client(std::move(client))
        , m_catalogue(std::move(catalogue))
        , m_failure(failure)
        , m_section(static_cast<int>(section))
        , m_normalize(normalize)
        , m_account(std::move(account)) {}

    /// Forgets every row: a download begins, or the last one failed.
    void restart() {
        const std::lock_guard lock(m_mutex);
        m_waiting.clear();
        guarded([this] { m_catalogue->discard(m_section); });
    }

    /// Never waits for a write that is going on.
    void setCategories(CategoryMap categories) {
        const std::lock_guard lock(m_categoriesMutex);
        m_categories = std::make_shared<const CategoryMap>(std::move(categories));
        m_categoriesCame.notify_all();
    }

    /// On the transfer's own thread, which it may hold up until the categories are there.
    void take(std::vector<Row>&& rows) {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(rows));
        if (m_waiting.size() >= maximumWaitingBatches) {
            waitForCategories();
        }
        requireWanted(m_account);
        writeWaitingRows();
    }

    /// Writes what still waited for its categories.
    void finish() {
        const std::lock_guard lock(m_mutex);
        writeWaitingRows();
    }

    /// Rows that were fit for the catalogue.
    [[nodiscard]] std::int64_t normalizedCount() const { return m_catalogue->rowCount(m_section); }

private:
    void writeWaitingRows() {
        const auto known = categories();
        if (!known) {
            return;
        }
        for (auto& rows : m_waiting) {
            if (!m_failure.isKept()) {
                const auto channels = ((*m_client).*m_normalize)(rows, "main", *known);
                guarded([&] { m_catalogue->append(m_section, channels); });
            }
        }
        m_waiting.clear();
    }

    void waitForCategories() {
        std::unique_lock lock(m_categoriesMutex);
        m_categoriesCame.wait(lock, m_account, [this] { return m_categories != nullptr; });
    }

    std::shared_ptr<const CategoryMap> categories() {
        const std::lock_guard lock(m_categoriesMutex);
        return m_categories;
    }

    template<class Work> void guarded(const Work& work) {
        try {
            work();
        } catch (const StoreError&) {
            m_failure.keep(std::current_exception());
        }
    }

    std::shared_ptr<const XtreamAPIClient> m_client;
    std::shared_ptr<Replacement<Channel>> m_catalogue;
    FirstFailure& m_failure;
    int m_section;
    Normalize m_normalize;
    std::mutex m_categoriesMutex;
    std::stop_token m_account;
    std::condition_variable_any m_categoriesCame;
    std::shared_ptr<const CategoryMap> m_categories;
    std::mutex m_mutex;
    std::vector<std::vector<Row>> m_waiting;
};

} // namespace ondavia
