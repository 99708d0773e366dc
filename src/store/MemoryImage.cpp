#include "store/MemoryImage.h"

#include "store/StoreError.h"

#include <sqlite3.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>

namespace ondavia {

namespace {

constexpr std::size_t smallestPage = 512;

struct SqliteFree final {
    void operator()(unsigned char* bytes) const { sqlite3_free(bytes); }
};

} // namespace

std::string imageOf(SQLite::Database& database) {
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, SqliteFree> bytes(
        sqlite3_serialize(database.getHandle(), "main", &size, 0));
    if (!bytes) {
        throw SQLite::Exception(database.getHandle(), SQLITE_NOMEM);
    }
    return {reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size)};
}

SQLite::Database openImage(std::string image) {
    if (image.size() < smallestPage) {
        throw SQLite::Exception("no database", SQLITE_NOTADB);
    }
    image.replace(journalBytes, 2, 2, withoutLogFile);
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    auto* bytes = static_cast<unsigned char*>(sqlite3_malloc64(image.size()));
    if (bytes == nullptr) {
        throw SQLite::Exception(database.getHandle(), SQLITE_NOMEM);
    }
    std::memcpy(bytes, image.data(), image.size());
    const auto size = static_cast<sqlite3_int64>(image.size());
    const int code = sqlite3_deserialize(database.getHandle(), "main", bytes, size, size,
                                         SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE);
    if (code != SQLITE_OK) {
        throw SQLite::Exception(database.getHandle(), code);
    }
    return database;
}

std::string readWholeFile(const std::filesystem::path& file) {
    try {
        std::ifstream stream(file, std::ios::binary);
        std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        if (stream.eof() || !stream.fail()) {
            return bytes;
        }
    } catch (const std::ios_base::failure&) {
        // Such as for a folder; told below.
    }
    throw StoreError(StoreFailure::Inaccessible, file.filename().string() + " cannot be read");
}

} // namespace ondavia
