#include "store/Replacement.h"

#include "store/GenerationFile.h"
#include "store/LibraryStore.h"
#include "store/SectionedKeys.h"

#include <mutex>

namespace ondavia {

namespace {

/// Keys that one generation may use before it could meet those of the next: 16 million rows.
constexpr int keyBitsPerGeneration = 24;

} // namespace

class ReplacementWriter final {
public:
    ReplacementWriter(LibraryStore& store, const ReplacementFormat& format)
        : m_store(store)
        , m_format(format)
        , m_generation(store.folder(), format.file, store.options().maximumDownloadBytes)
        , m_keys(generationNumber(m_generation.file()) << keyBitsPerGeneration) {}

    void append(int section, std::size_t count, const RowBinder& bind) {
        const std::lock_guard guard(m_mutex);
        Connection& connection = m_generation.connection();
        connection.guarded([&] {
            const StatementUse use(connection.statement(m_format.insertSql));
            for (std::size_t index = 0; index < count; ++index) {
                const std::string_view id = bind(use.statement(), index);
                const bool remembersId = m_format.idRule == IdRule::Indexed;
                use.statement().bind(1, remembersId ? m_keys.add(section, id) : m_keys.add(section));
                use.statement().executeStep();
                use.statement().tryReset();
            }
        });
    }

    void discard(int section) {
        const std::lock_guard guard(m_mutex);
        for (const KeyRange& range : m_keys.takeSection(section)) {
            execute(m_generation.connection(),
                    {"DELETE FROM " + m_format.table + " WHERE key BETWEEN ? AND ?",
                     {range.first, range.first + range.count - 1}});
        }
    }

    std::int64_t count(int section) {
        const std::lock_guard guard(m_mutex);
        return m_keys.count(section);
    }

    void commit() {
        const std::lock_guard guard(m_mutex);
        deleteSuperseded();
        m_generation.createIndexes();
        m_generation.publish(m_format.owner);
        m_store.announce({m_format.kind});
    }

private:
    void deleteSuperseded() {
        Connection& connection = m_generation.connection();
        const auto idOf = [&](std::int64_t key) {
            const StatementUse use(
                connection.statement("SELECT id FROM " + m_format.table + " WHERE key = ?"));
            use.statement().bind(1, key);
            use.statement().executeStep();
            return use.statement().getColumn(0).getString();
        };
        const std::vector<std::int64_t> superseded =
            connection.guarded([&] { return m_keys.supersededKeys(idOf); });
        for (const std::int64_t key : superseded) {
            execute(connection, {"DELETE FROM " + m_format.table + " WHERE key = ?", {key}});
        }
    }

    LibraryStore& m_store;
    ReplacementFormat m_format;
    std::mutex m_mutex;
    GenerationFile m_generation;
    SectionedKeys m_keys;
};

void ReplacementWriterDeleter::operator()(ReplacementWriter* writer) const {
    delete writer;
}

std::unique_ptr<ReplacementWriter, ReplacementWriterDeleter>
beginReplacement(LibraryStore& store, const ReplacementFormat& format) {
    return std::unique_ptr<ReplacementWriter, ReplacementWriterDeleter>(new ReplacementWriter(store, format));
}

void appendRows(ReplacementWriter& writer, int section, std::size_t count, const RowBinder& bind) {
    writer.append(section, count, bind);
}

void discardRows(ReplacementWriter& writer, int section) {
    writer.discard(section);
}

std::int64_t countRows(ReplacementWriter& writer, int section) {
    return writer.count(section);
}

void commitRows(ReplacementWriter& writer) {
    writer.commit();
}

} // namespace ondavia
