#include "guide/GuideStoring.h"

#include "guide/BodyInflater.h"
#include "guide/GuideSpool.h"
#include "guide/XMLTVParser.h"
#include "store/LibraryStore.h"

#include <optional>
#include <system_error>

namespace ondavia {
namespace {

/// Batches of the parser that may wait: about 8 MiB at most.
constexpr std::size_t maximumWaiting = 8;
constexpr std::size_t readBlock = std::size_t{256} << 10;

} // namespace

GuideWriter::GuideWriter(LibraryStore& store, std::optional<std::string> owner)
    : m_store(store)
    , m_owner(std::move(owner))
    , m_thread([this] { write(); }) {}

GuideWriter::~GuideWriter() {
    if (m_thread.joinable()) {
        end(End::Drop);
    }
}

void GuideWriter::append(std::vector<EPGProgram>&& programs) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_waiting.size() < maximumWaiting || m_failure; });
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
    m_waiting.push_back(std::move(programs));
    m_changed.notify_all();
}

void GuideWriter::commit() {
    end(End::Commit);
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
}

void GuideWriter::end(End end) {
    {
        const std::lock_guard lock(m_mutex);
        m_end = end;
        m_changed.notify_all();
    }
    m_thread.join();
}

void GuideWriter::write() {
    try {
        Replacement<EPGProgram> replacement = m_store.beginReplacement<EPGProgram>(m_owner);
        std::vector<EPGProgram> programs;
        while (takeNext(programs)) {
            replacement.append(0, programs);
        }
        // Nobody changes the end any more.
        if (m_end == End::Commit) {
            replacement.commit();
        }
    } catch (...) {
        // Raised on the parser's thread.
        const std::lock_guard lock(m_mutex);
        m_failure = std::current_exception();
        m_changed.notify_all();
    }
}

bool GuideWriter::takeNext(std::vector<EPGProgram>& programs) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_waiting.empty() || m_end != End::Open; });
    if (m_end == End::Drop || m_waiting.empty()) {
        return false;
    }
    programs = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_changed.notify_all();
    return true;
}

namespace {

void parseAndStore(LibraryStore& store, const std::optional<std::string>& owner, GuideSpool& spool,
                   const std::stop_token& stop) {
    // Not before the first programme: without a network there is nothing to write.
    std::optional<GuideWriter> writer;
    XMLTVParser parser([&](std::vector<EPGProgram>&& programs) {
        if (!writer) {
            writer.emplace(store, owner);
        }
        writer->append(std::move(programs));
    });
    BodyInflater body([&parser](std::string_view bytes) { parser.feed(bytes); });
    std::vector<char> block(readBlock);
    while (!body.isOver() && !parser.isOver()) {
        const std::size_t count = spool.read(block, stop);
        if (count == 0) {
            break;
        }
        body.feed({block.data(), count});
    }
    spool.dropRest();
    if (!spool.waitForEnd(stop)) {
        return;
    }
    body.finish();
    parser.finish();
    if (!writer) {
        writer.emplace(store, owner);
    }
    writer->commit();
}

} // namespace

void storeGuide(LibraryStore& store, const std::optional<std::string>& owner, GuideSpool& spool,
                const std::stop_token& stop) {
    try {
        parseAndStore(store, owner, spool, stop);
    } catch (...) {
        spool.refuseRest();
        throw;
    }
    if (stop.stop_requested()) {
        // Nothing was stored, and the caller must not take it for a success.
        throw std::system_error(std::make_error_code(std::errc::operation_canceled));
    }
}

} // namespace ondavia
