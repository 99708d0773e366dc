#include "store/LibraryOwner.h"

#include "store/StoreError.h"

namespace ondavia {

namespace fs = std::filesystem;

namespace {

constexpr const char* linkName = "owner";

} // namespace

std::optional<std::string> ownerOf(const fs::path& folder) {
    std::error_code error;
    const fs::path owner = fs::read_symlink(folder / linkName, error);
    if (error && error != std::errc::no_such_file_or_directory && error != std::errc::invalid_argument) {
        throw StoreError(StoreFailure::Inaccessible, "the store's owner cannot be read: " + error.message());
    }
    // What is no link was not written by us and names nobody.
    return error ? std::nullopt : std::optional(owner.string());
}

void writeOwner(const fs::path& folder, const std::string& owner, const FolderLock::Section&) {
    if (ownerOf(folder) == owner) {
        return;
    }
    // The section keeps everybody else from this name; one that was killed may have left it.
    const fs::path next = folder / "owner.new";
    std::error_code error;
    fs::remove(next, error);
    fs::create_symlink(owner, next, error);
    if (!error) {
        fs::rename(next, folder / linkName, error);
    }
    if (error) {
        throw StoreError(StoreFailure::Inaccessible,
                         "the store's owner cannot be written: " + error.message());
    }
}

void requireOwner(const fs::path& folder, const std::string& owner) {
    if (ownerOf(folder).value_or(owner) != owner) {
        throw StoreError(StoreFailure::NotOwner,
                         "the account has changed meanwhile, so nothing was stored for the one of before");
    }
}

} // namespace ondavia
