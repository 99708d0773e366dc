#include "store/Salvage.h"

#include "base/AppLogger.h"
#include "base/FileReplacement.h"
#include "base/Text.h"
#include "store/MemoryImage.h"
#include "store/RowBinding.h"
#include "store/SqlText.h"
#include "store/StoreFolder.h"

#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace ondavia {

namespace fs = std::filesystem;

namespace {

// Every file of the user's was made with SQLite's own page size.
constexpr std::size_t userPageBytes = 4096;
/// Where a file's header holds its number of pages, big-endian.
constexpr std::size_t pageCountOffset = 28;
/// What a page begins with that holds rows and leads nowhere.
constexpr char tableLeaf = '\x0D';
/// No index has more entries to its bytes.
constexpr std::size_t leastEntryBytes = 4;
/// A column that no row has. A longer row of another table shows in it.
constexpr std::string_view excessColumn = "excess";

template<class Member> bool holds(const SQLite::Column& column) {
    if constexpr (IsOptional<Member>::value) {
        return column.isNull() || holds<typename Member::value_type>(column);
    } else if constexpr (std::is_same_v<Member, std::string>) {
        // What was wiped reads as zeros, which no text of ours holds.
        const std::string text = column.isText() ? column.getString() : std::string(1, '\0');
        return text.find('\0') == std::string::npos && isValidUtf8(text);
    } else if constexpr (std::is_same_v<Member, double>) {
        // Whole numbers are stored as integers.
        return column.isInteger() || (column.isFloat() && std::isfinite(column.getDouble()));
    } else if constexpr (std::is_same_v<Member, bool>) {
        return column.isInteger() && (column.getInt64() == 0 || column.getInt64() == 1);
    } else {
        return column.isInteger();
    }
}

template<Entity T> bool holdsRow(SQLite::Statement& statement) {
    return std::apply(
        [&statement](const auto&... column) {
            int index = 0;
            const auto check = [&]<class Member>(Member T::*) {
                return holds<Member>(statement.getColumn(index++));
            };
            return (check(column.member) && ...) && statement.getColumn(index).isNull();
        },
        EntityTraits<T>::columns);
}

template<class T> bool hasItsOwnId(const T& row) {
    return row.id == row.profileId + "_" + row.channelId;
}
bool hasItsOwnId(const Playlist& row) {
    return !row.id.empty();
}

/// What reading gathers: the rows, and the keys of the favourites among them.
struct Finds final {
    UserRows rows;
    std::set<std::int64_t> favoriteKeys;
};

/// Hands over the rows of `sql` from both ends, so that a broken one in the middle costs only itself; at most
/// `bound` from either.
template<class Receive>
void readBothWays(SQLite::Database& image, const std::string& sql, const std::string& order,
                  const Receive& receive, std::size_t bound) {
    for (const char* direction : {" ASC", " DESC"}) {
        try {
            SQLite::Statement statement(image, sql + " ORDER BY " + order + direction + " LIMIT " +
                                                   std::to_string(bound));
            while (statement.executeStep()) {
                receive(statement);
            }
            return;
        } catch (const SQLite::Exception&) {
            // Here the damage begins, or the page belongs to something else.
        }
    }
}

template<Entity T> void readTable(SQLite::Database& image, Finds& finds) {
    const std::string sql = "SELECT " + columnList<T>() + ", " + std::string(excessColumn) + ", key FROM " +
                            std::string(EntityTraits<T>::table);
    const auto receive = [&finds](SQLite::Statement& statement) {
        if (!holdsRow<T>(statement)) {
            return;
        }
        T row = readEntity<T>(statement, 0);
        if (hasItsOwnId(row)) {
            if constexpr (std::is_same_v<T, Favorite>) {
                finds.favoriteKeys.insert(statement.getColumn(columnCount<T> + 1).getInt64());
            }
            finds.rows.add(std::move(row));
        }
    };
    // The rows of one page.
    readBothWays(image, sql, "key", receive, userPageBytes / leastEntryBytes);
}

/// Columns without a type show values as they are stored.
template<Entity T> std::string plainTable() {
    return "CREATE TABLE " + std::string(EntityTraits<T>::table) + "(key INTEGER PRIMARY KEY, " +
           columnList<T>() + ", " + std::string(excessColumn) + ");";
}

/// `image` under a first page of our own, which names the tables that are to be read.
std::string withPlainSchema(std::string image) {
    SQLite::Database schema(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    schema.exec(plainTable<Favorite>() + plainTable<WatchHistory>() + plainTable<Playlist>());
    image.replace(0, userPageBytes, imageOf(schema), 0, userPageBytes);
    const std::size_t pages = image.size() / userPageBytes;
    for (std::size_t index = 0; index < 4; ++index) {
        image[pageCountOffset + index] = static_cast<char>(pages >> (24 - 8 * index));
    }
    return image;
}

/// A working copy with a log beside it, gone with the object.
class WorkingCopy final {
public:
    WorkingCopy(fs::path path, const std::string& image, const fs::path& log)
        : m_path(std::move(path)) {
        deleteDatabase(m_path);
        replaceFile(m_path, image);
        replaceFile(m_path.string() + "-wal", readWholeFile(log));
    }
    ~WorkingCopy() { deleteDatabase(m_path); }
    WorkingCopy(const WorkingCopy&) = delete;
    WorkingCopy& operator=(const WorkingCopy&) = delete;

    [[nodiscard]] std::string read() const {
        SQLite::Database database(m_path, SQLite::OPEN_READWRITE);
        database.exec("PRAGMA locking_mode = EXCLUSIVE; PRAGMA writable_schema = ON");
        return imageOf(database);
    }

private:
    fs::path m_path;
};

/// `image` with the log of `file` applied, which SQLite does only to a file that it can open.
std::string withLog(const std::string& image, const fs::path& file) {
    const fs::path log = file.string() + "-wal";
    std::error_code missing;
    if (const auto size = fs::file_size(log, missing); missing || size == 0) {
        return image;
    }
    std::string openable = withPlainSchema(image);
    openable.replace(journalBytes, 2, 2, withLogFile);
    // The number of pages is the one that the log tells.
    openable.replace(pageCountOffset, 4, 4, '\0');
    const WorkingCopy copy(file.parent_path() / "user.db.working", openable, log);
    try {
        std::string applied = copy.read();
        if (applied.compare(0, userPageBytes, openable, 0, userPageBytes) == 0) {
            applied.replace(0, userPageBytes, image, 0, userPageBytes);
        }
        return applied;
    } catch (const SQLite::Exception& error) {
        AppLogger::general.error("The log of the damaged file cannot be read: %s", {error.what()});
        return image;
    }
}

/// Only leaves: what hangs on a page is read by itself, and damage may have pages lead to each other in more
/// ways than can be followed.
void readPages(const std::string& image, Finds& finds) {
    SQLite::Database pages = openImage(withPlainSchema(image));
    for (std::size_t page = 2; page <= image.size() / userPageBytes; ++page) {
        if (image[(page - 1) * userPageBytes] != tableLeaf) {
            continue;
        }
        pages.exec("PRAGMA writable_schema = ON; UPDATE sqlite_schema SET rootpage = " +
                   std::to_string(page) + "; PRAGMA writable_schema = RESET");
        readTable<Favorite>(pages, finds);
        readTable<WatchHistory>(pages, finds);
        readTable<Playlist>(pages, finds);
    }
}

/// An entry whose key has a row that can be read is that row's, or does not belong to the index at all.
void readFavoriteId(SQLite::Statement& entry, Finds& finds) {
    const bool isSound = holds<std::string>(entry.getColumn(0)) && holds<std::int64_t>(entry.getColumn(1));
    if (!isSound || finds.favoriteKeys.contains(entry.getColumn(1).getInt64())) {
        return;
    }
    const std::string id = entry.getColumn(0).getString();
    if (const std::size_t end = id.find('_'); end != std::string::npos) {
        Favorite favorite(id.substr(0, end), id.substr(end + 1));
        favorite.addedAt = Date();
        finds.rows.add(std::move(favorite));
    }
}

void readFavoriteIds(const std::string& image, Finds& finds) {
    try {
        SQLite::Database database = openImage(image);
        // Lets a file be read that is shorter than its header says.
        database.exec("PRAGMA writable_schema = ON");
        // The entries on the way to the leaves count too, so the tree is walked, but no further than a sound
        // one goes: damaged, it may lead to a page over and over.
        readBothWays(
            database, "SELECT id, key FROM favorite INDEXED BY favorite_by_id", "id",
            [&finds](SQLite::Statement& entry) { readFavoriteId(entry, finds); },
            image.size() / leastEntryBytes);
    } catch (const SQLite::Exception&) {
        // The first page is broken: where the index begins is not known.
    }
}

/// The rows of `bytes`, the last page filled up with `filler`.
UserRows readFilledUp(std::string bytes, char filler, const fs::path& file) {
    const std::size_t pages = std::max<std::size_t>((bytes.size() + userPageBytes - 1) / userPageBytes, 1);
    bytes.resize(pages * userPageBytes, filler);
    const std::string image = withLog(bytes, file);
    Finds finds;
    readPages(image, finds);
    readFavoriteIds(image, finds);
    return std::move(finds.rows);
}

} // namespace

UserRows salvageRows(const fs::path& file) {
    const std::string bytes = fs::exists(file) ? readWholeFile(file) : std::string();
    UserRows rows = readFilledUp(bytes, '\0', file);
    if (bytes.size() % userPageBytes != 0) {
        // A row that was cut off reads differently.
        rows.keepCommon(readFilledUp(bytes, '\xFF', file));
    }
    return rows;
}

} // namespace ondavia
