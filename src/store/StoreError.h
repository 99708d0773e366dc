#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace ondavia {

enum class StoreFailure {
    /// The file was written by a later version of the application. It is left untouched.
    NewerSchema,
    /// The file is no database, or its structure is broken.
    Damaged,
    /// No room is left on the device, or the file's own bound is reached.
    Full,
    /// Another process held the file for longer than the store waits.
    Busy,
    /// Folder or file cannot be opened, read or written.
    Inaccessible,
    /// The rows are for somebody whose the store is not any more.
    NotOwner,
    Other,
};

/// A failed operation of the store. `what()` names the file and the cause; it never holds the value of a
/// row, and its URLs are masked.
class StoreError final : public std::runtime_error {
public:
    StoreError(StoreFailure failure, std::string_view description);

    [[nodiscard]] StoreFailure failure() const { return m_failure; }

private:
    StoreFailure m_failure;
};

/// What an error number of the system's means for a file.
[[nodiscard]] StoreFailure storeFailureForSystem(int number);

/// The error for an error number of the system's on the file called `fileName`; `text` says what failed.
[[nodiscard]] StoreError storeErrorForSystem(int number, std::string_view fileName, std::string_view text);

/// The error for a result code of SQLite (extended or not) on the file called `fileName`.
[[nodiscard]] StoreError storeErrorForCode(int sqliteCode, std::string_view fileName);

} // namespace ondavia
