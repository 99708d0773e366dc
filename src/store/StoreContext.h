#pragma once

#include "store/EntityTraits.h"
#include "store/Query.h"
#include "store/RowBinding.h"
#include "store/RowInsertion.h"
#include "store/SqlText.h"
#include "store/StoreError.h"

#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace ondavia {

class Connection;
class LibraryStore;

/// The key of a row and some of its members.
template<class... Members> struct PartialRow final {
    std::int64_t key = 0;
    std::tuple<Members...> members;
};

/// The rows that have one value in a text member: how many there are, and the keys of the first of them.
struct KeyGroup final {
    std::string value;
    std::int64_t count = 0;
    std::vector<std::int64_t> firstKeys;

    bool operator==(const KeyGroup&) const = default;
};

/// What becomes of the changes of a save that fails.
enum class OnFailure {
    Drop,
    /// They go along with the context's later saves of their file, until one succeeds.
    Keep
};

/// One thread's handle on the store. `LibraryStore::mainContext` belongs to the main thread; one made by
/// `LibraryStore::makeContext` to the thread that uses it first. Must not outlive the store.
///
/// Reads see what has been committed, by whatever thread or process, and never part of a save or of a
/// replacement. They do not see this context's own changes before `save`. A read never waits for a
/// writer. Every operation raises StoreError.
class StoreContext final {
public:
    explicit StoreContext(LibraryStore& store);
    ~StoreContext();
    StoreContext(const StoreContext&) = delete;
    StoreContext& operator=(const StoreContext&) = delete;

    template<Entity T> [[nodiscard]] std::vector<T> fetch(const Query<T>& query = {}) {
        std::vector<T> rows;
        forEach<T>(query, [&rows](T row) { rows.push_back(std::move(row)); });
        return rows;
    }

    /// The first row of `query`; absent when there is none.
    template<Entity T> [[nodiscard]] std::optional<T> fetchFirst(Query<T> query = {}) {
        query.limit = 1;
        std::vector<T> rows = fetch(query);
        return rows.empty() ? std::optional<T>() : std::optional<T>(std::move(rows.front()));
    }

    /// Hands the rows of `query` over one by one, without ever holding them all. `receive` must not use
    /// this context.
    template<Entity T> void forEach(const Query<T>& query, const std::function<void(T)>& receive) {
        read(EntityTraits<T>::file, selectText(columnList<T>(), query),
             [&receive](SQLite::Statement& row) { receive(readEntity<T>(row, 0)); });
    }

    template<Entity T> [[nodiscard]] std::int64_t count(const Predicate<T>& where = {}) {
        SqlText text = fromClause(where);
        text.sql.insert(0, "SELECT count(*)");
        std::int64_t result = 0;
        read(EntityTraits<T>::file, text,
             [&result](SQLite::Statement& row) { result = row.getColumn(0).getInt64(); });
        return result;
    }

    /// The different values of a member, ascending; absent ones are left out.
    template<Entity T, class Member>
    [[nodiscard]] auto distinct(Member T::*member, const Predicate<T>& where = {}) {
        std::vector<typename PlainMember<Member>::type> values;
        for (auto& [value, rows] : countsBy(member, where)) {
            values.push_back(std::move(value));
        }
        return values;
    }

    /// The different values of a member, ascending, each with its number of rows; absent ones are left
    /// out.
    template<Entity T, class Member>
    [[nodiscard]] auto countsBy(Member T::*member, const Predicate<T>& where = {}) {
        using Value = typename PlainMember<Member>::type;
        const std::string column = quotedName(columnName(member));
        SqlText text = fromClause(where && field(member).isNotNull());
        text.sql = "SELECT " + column + ", count(*)" + text.sql + " GROUP BY 1 ORDER BY 1";
        std::vector<std::pair<Value, std::int64_t>> counts;
        read(EntityTraits<T>::file, text, [&counts](SQLite::Statement& row) {
            counts.emplace_back(readMember<Value>(row.getColumn(0)), row.getColumn(1).getInt64());
        });
        return counts;
    }

    /// The keys of the rows of `query`: a list of 120,000 rows for the price of one index. A key names
    /// its row until the kind changes. The keys of one replacement are not those of the one before it, so
    /// that a list not yet refreshed shows nothing rather than a wrong row.
    template<Entity T> [[nodiscard]] std::vector<std::int64_t> fetchKeys(const Query<T>& query = {}) {
        std::vector<std::int64_t> keys;
        read(EntityTraits<T>::file, selectText(keyColumn, query),
             [&keys](SQLite::Statement& row) { keys.push_back(row.getColumn(0).getInt64()); });
        return keys;
    }

    /// The different values of a text member, ascending, each with its number of rows and the keys of its
    /// first ones by `order`. One pass over the rows, for the price of an index that has them in this order.
    template<Entity T, class Order>
    [[nodiscard]] std::vector<KeyGroup> groupKeys(std::string T::*member, Order T::*order,
                                                  std::size_t longest, const Predicate<T>& where = {}) {
        const SqlText text = selectText<T>(quotedName(columnName(member)).append(", ").append(keyColumn),
                                           {.where = where, .sort = {ascending(member), ascending(order)}});
        std::vector<KeyGroup> groups;
        read(EntityTraits<T>::file, text, [&groups, longest](SQLite::Statement& row) {
            const SQLite::Column column = row.getColumn(0);
            const std::string_view value(column.getText(), static_cast<std::size_t>(column.getBytes()));
            if (groups.empty() || groups.back().value != value) {
                groups.push_back({std::string(value), 0, {}});
            }
            KeyGroup& group = groups.back();
            ++group.count;
            if (group.firstKeys.size() < longest) {
                group.firstKeys.push_back(row.getColumn(1).getInt64());
            }
        });
        return groups;
    }

    /// The row of a key; absent when it is gone.
    template<Entity T> [[nodiscard]] std::optional<T> fetchByKey(std::int64_t key) {
        SqlText text = fromClause(Predicate<T>("key = ?", {key}));
        text.sql = "SELECT " + columnList<T>() + text.sql;
        std::optional<T> found;
        read(EntityTraits<T>::file, text,
             [&found](SQLite::Statement& row) { found = readEntity<T>(row, 0); });
        return found;
    }

    /// Only some members of the rows of `query`, for work over a whole catalogue that needs a name or two.
    template<Entity T, class... Members>
    [[nodiscard]] std::vector<PartialRow<Members...>> fetchMembers(const Query<T>& query,
                                                                   Members T::*... members) {
        std::vector<PartialRow<Members...>> rows;
        forEachMembers(
            query, [&rows](PartialRow<Members...>&& row) { rows.push_back(std::move(row)); }, members...);
        return rows;
    }
    /// The same one by one, without ever holding them all. `receive` must not use this context.
    template<Entity T, class Receive, class... Members>
    void forEachMembers(const Query<T>& query, Receive&& receive, Members T::*... members) {
        std::string selected(keyColumn);
        ((selected += ", " + quotedName(columnName(members))), ...);
        read(EntityTraits<T>::file, selectText(selected, query), [&receive](SQLite::Statement& row) {
            int index = 1;
            // The braces fix the order of the reads.
            receive(PartialRow<Members...>{row.getColumn(0).getInt64(),
                                           std::tuple{readMember<Members>(row.getColumn(index++))...}});
        });
    }

    /// Inserts `row` at the next save; a row of the same id is replaced then.
    template<Entity T> void insert(T row) {
        enqueue<T>([row = std::move(row)](Connection& connection) { insertRow(connection, row); });
    }

    /// Writes one member of the row of this id at the next save, if there is one then. Nobody is told that
    /// the kind changed: for what no list on show goes by.
    template<Entity T, class Member>
    void note(const std::string& id, Member T::*member, typename PlainMember<Member>::type value) {
        SqlText text{"UPDATE " + std::string(EntityTraits<T>::table) + " SET " +
                         quotedName(columnName(member)) + " = ? WHERE id = ?",
                     {toQueryValue(value), id}};
        enqueue({EntityTraits<T>::kind, EntityTraits<T>::file, false,
                 [text = std::move(text)](Connection& connection) { execute(connection, text); },
                 Telling::No});
    }

    /// Deletes the row of this id at the next save, if there is one then.
    template<Entity T> void remove(std::string id) { remove(field(&T::id) == id); }

    /// Deletes the rows that fulfil `where` at the next save.
    template<Entity T> void remove(const Predicate<T>& where) {
        SqlText text = fromClause(where);
        text.sql.insert(0, "DELETE");
        enqueue<T>([text = std::move(text)](Connection& connection) { execute(connection, text); });
    }

    /// Deletes all rows of the kind at the next save. Of the user's kinds it deletes the backups too. A save
    /// that does no more than this to downloaded kinds needs no room on the device for it.
    template<Entity T> void removeAll() { enqueueRemoveAll<T>(); }

    /// Commits the inserts and deletes since the last save, in their order, in one transaction a file;
    /// then the store tells that their kinds changed. On a failure nothing of them is kept in the files, nor
    /// in this context unless `onFailure` says so, and StoreError is raised. (The files are committed one
    /// after the other, the user's first: should the very commit of a later one fail, the earlier ones stay.)
    /// Without changes nothing happens.
    void save(OnFailure onFailure = OnFailure::Drop);

    /// Saves inserts and deletes of single rows for `owner`. Raises StoreError when the store is somebody
    /// else's; nothing of them is kept then.
    void saveFor(const std::string& owner);
    /// The same for whoever's the store is. Raises StoreError when it is nobody's any more.
    void saveForSomebody();

    /// Lets go of files whose rows have been replaced, to free their disk space.
    void closeReplacedFiles();

private:
    enum class Telling { No, Yes };

    /// One buffered change.
    struct Change final {
        EntityKind kind;
        StoreFile file;
        /// Whether the change leaves no row of the kind.
        bool removesAll;
        std::function<void(Connection&)> apply;
        Telling telling = Telling::Yes;
        OnFailure onFailure = OnFailure::Drop;

        /// A downloaded kind is alone in its file.
        [[nodiscard]] bool clearsFile() const { return removesAll && file != StoreFile::User; }
    };

    /// `requireOwner` raises StoreError when the store's owner is the wrong one.
    void saveWhile(const std::function<void()>& requireOwner);

    template<Entity T> void enqueue(std::function<void(Connection&)> apply) {
        enqueue({EntityTraits<T>::kind, EntityTraits<T>::file, false, std::move(apply)});
    }
    template<Entity T> void enqueueRemoveAll() {
        SqlText text = fromClause(Predicate<T>());
        text.sql.insert(0, "DELETE");
        enqueue({EntityTraits<T>::kind, EntityTraits<T>::file, true,
                 [text = std::move(text)](Connection& connection) { execute(connection, text); }});
    }

    void enqueue(Change change);
    void read(StoreFile file, const SqlText& text, const std::function<void(SQLite::Statement&)>& receive);
    void checkThread();
    Connection& connection(StoreFile file);
    /// What a save did: the kinds that have changed, and why it ended early if it did.
    struct Outcome final {
        std::vector<EntityKind> changed;
        std::exception_ptr failure;
    };

    [[nodiscard]] Outcome write(const std::vector<Change>& changes);
    void deleteFilesOf(const std::vector<Change>& changes);
    [[nodiscard]] std::vector<Change> takeChanges(OnFailure onFailure);
    void keep(const std::vector<Change>& changes, const Outcome& outcome);
    void finish(const std::vector<Change>& changes, const Outcome& outcome);
    class FileSave;
    class TransactionSave;
    class AnewSave;
    [[nodiscard]] std::unique_ptr<FileSave> beginSave(const Change& first);
    void backUp(const std::vector<Change>& changes, const Outcome& outcome);

    LibraryStore& m_store;
    std::thread::id m_thread;
    std::array<std::unique_ptr<Connection>, storeFileCount> m_connections;
    std::vector<Change> m_changes;
    /// Of failed saves.
    std::vector<Change> m_keptChanges;
};

} // namespace ondavia
