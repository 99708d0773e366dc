#pragma once

#include "entities/EPGProgram.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace ondavia {

class GuideSpool;
class LibraryStore;

/// Writes the programmes of a new guide on a thread of its own, beside the parsing. Destroyed without a
/// commit it leaves the present guide as it is. Used by one thread.
class GuideWriter final {
public:
    GuideWriter(LibraryStore& store, std::optional<std::string> owner);
    ~GuideWriter();
    GuideWriter(const GuideWriter&) = delete;
    GuideWriter& operator=(const GuideWriter&) = delete;

    /// Waits while too many programmes wait to be written. Raises StoreError for a write that failed.
    void append(std::vector<EPGProgram>&& programs);
    /// Puts the programmes in the place of the present guide. To be called once, at the end. Raises
    /// StoreError.
    void commit();

private:
    enum class End { Open, Commit, Drop };

    void write();
    [[nodiscard]] bool takeNext(std::vector<EPGProgram>& programs);
    void end(End end);

    LibraryStore& m_store;
    std::optional<std::string> m_owner;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::vector<EPGProgram>> m_waiting;
    End m_end = End::Open;
    std::exception_ptr m_failure;
    std::thread m_thread;
};

/// Parses what arrives in `spool` and replaces the guide by it, for `owner` if one is named, once the whole
/// document is there. With a failed transfer, or when `stop` is requested before, the guide stays as it is.
/// Takes as long as the transfer. Raises StoreError, std::system_error.
void storeGuide(LibraryStore& store, const std::optional<std::string>& owner, GuideSpool& spool,
                const std::stop_token& stop);

} // namespace ondavia
