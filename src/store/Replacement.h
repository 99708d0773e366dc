#pragma once

#include "store/EntityTraits.h"
#include "store/RowInsertion.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ondavia {

class LibraryStore;

/// The untyped half of a replacement: the new file, its one open transaction and what is needed to find
/// rows of equal id. Not thread-safe but for `Replacement`'s use of it.
class ReplacementWriter;
struct ReplacementWriterDeleter final {
    void operator()(ReplacementWriter* writer) const;
};

/// Tells the writer how rows of one type are inserted.
struct ReplacementFormat final {
    EntityKind kind;
    StoreFile file;
    IdRule idRule;
    std::string table;
    std::string insertSql;
    /// Whose rows these are, if that is to be asked at the end.
    std::optional<std::string> owner;
};

/// Binds the row of an index from parameter 2 on and returns its id.
using RowBinder = std::function<std::string_view(SQLite::Statement&, std::size_t)>;

[[nodiscard]] std::unique_ptr<ReplacementWriter, ReplacementWriterDeleter>
beginReplacement(LibraryStore& store, const ReplacementFormat& format);
void appendRows(ReplacementWriter& writer, int section, std::size_t count, const RowBinder& bind);
void discardRows(ReplacementWriter& writer, int section);
[[nodiscard]] std::int64_t countRows(ReplacementWriter& writer, int section);
void commitRows(ReplacementWriter& writer);

/// All rows of a kind on their way to take the place of the present ones. Readers see the present rows
/// until `commit` is through and the new ones from then on, also when the process is killed in between.
///
/// The operations may be called from any thread; they run one after the other. Each is disk work and not
/// for the main thread, and each may raise StoreError, after which the replacement is good for nothing but
/// its destruction. Destruction without a commit leaves the present rows as they are. Several replacements
/// of a kind may run side by side, in several processes: the last to commit wins. Must not outlive the
/// store.
template<DownloadedEntity T> class Replacement final {
public:
    /// For the rows of `owner`, if one is named: `commit` then raises StoreError when the store is
    /// somebody else's by that time.
    explicit Replacement(LibraryStore& store, std::optional<std::string> owner = {})
        : m_writer(beginReplacement(store, {EntityTraits<T>::kind, EntityTraits<T>::file,
                                            EntityTraits<T>::idRule, std::string(EntityTraits<T>::table),
                                            insertText<T>(KeyParameter::First), std::move(owner)})) {}

    /// Adds rows after those that the section has. Where an id occurs more than once, the last row of the
    /// highest section survives, whatever the order of the calls for different sections. Guide rows are
    /// not checked for equal ids.
    void append(int section, std::span<const T> rows) {
        appendRows(*m_writer, section, rows.size(),
                   [rows](SQLite::Statement& statement, std::size_t index) -> std::string_view {
                       bindEntity(statement, 2, rows[index]);
                       return rows[index].id;
                   });
    }

    /// Throws the rows of a section away, for a list that has to be fetched again.
    void discard(int section) { discardRows(*m_writer, section); }

    /// Rows appended to a section and not discarded, those of equal id included.
    [[nodiscard]] std::int64_t rowCount(int section) const { return countRows(*m_writer, section); }

    /// Puts the rows in place of the present ones. To be called once, as the last operation.
    void commit() { commitRows(*m_writer); }

    /// Throws away what is not committed, at once and on this thread: half a catalogue is much to delete.
    /// Nothing may follow.
    void close() { m_writer.reset(); }

private:
    std::unique_ptr<ReplacementWriter, ReplacementWriterDeleter> m_writer;
};

} // namespace ondavia
