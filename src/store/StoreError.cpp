#include "store/StoreError.h"

#include "base/Redaction.h"

#include <sqlite3.h>

#include <cerrno>
#include <system_error>

namespace ondavia {

namespace {

struct Meaning final {
    StoreFailure failure;
    std::string_view text;
};

Meaning meaningOf(int sqliteCode) {
    switch (sqliteCode & 0xff) {
    case SQLITE_FULL:
        return {StoreFailure::Full, "no room is left for it (device full, or its size limit reached)"};
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return {StoreFailure::Damaged, "the file is damaged"};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {StoreFailure::Busy, "another process has held the file for too long"};
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_READONLY:
        return {StoreFailure::Inaccessible, "the file cannot be opened for writing"};
    case SQLITE_IOERR:
        return {StoreFailure::Inaccessible, "reading or writing the file failed"};
    default:
        return {StoreFailure::Other, "the database refused the operation"};
    }
}

} // namespace

StoreError::StoreError(StoreFailure failure, std::string_view description)
    : std::runtime_error(maskSecrets(description))
    , m_failure(failure) {}

StoreFailure storeFailureForSystem(int number) {
    return number == ENOSPC || number == EDQUOT ? StoreFailure::Full : StoreFailure::Inaccessible;
}

StoreError storeErrorForSystem(int number, std::string_view fileName, std::string_view text) {
    return StoreError(storeFailureForSystem(number), std::string(fileName) + ": " + std::string(text) + ": " +
                                                         std::generic_category().message(number));
}

StoreError storeErrorForCode(int sqliteCode, std::string_view fileName) {
    const Meaning meaning = meaningOf(sqliteCode);
    std::string text(fileName);
    text.append(": ").append(meaning.text).append(" (").append(sqlite3_errstr(sqliteCode));
    text.append(", code ").append(std::to_string(sqliteCode)).append(")");
    return StoreError(meaning.failure, text);
}

} // namespace ondavia
