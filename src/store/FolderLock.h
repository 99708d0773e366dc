#pragma once

#include <filesystem>
#include <mutex>

namespace ondavia {

/// The locks by which the stores that have one folder open, in whatever processes, agree. They belong to
/// the open file `store.lock` and end with the process, however it ends. Any thread.
class FolderLock final {
public:
    /// Raises StoreError if the lock file cannot be made.
    explicit FolderLock(const std::filesystem::path& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// Held while the files of the folder are opened, or while one of them is exchanged.
    class Section final {
    public:
        explicit Section(FolderLock& lock);
        ~Section();
        Section(const Section&) = delete;
        Section& operator=(const Section&) = delete;

    private:
        FolderLock& m_lock;
    };

    /// Takes part from now on, and tells whether nobody else does. Within a Section.
    [[nodiscard]] bool join();
    /// Lets others join that asked whether they are alone. Within the same Section as `join`.
    void share();

private:
    int m_file;
    std::mutex m_mutex;
};

} // namespace ondavia
