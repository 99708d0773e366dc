#pragma once

#include "support/TestSupport.h"

#include <cstddef>
#include <filesystem>
#include <sys/resource.h>

namespace ondavia::testing {

/// Lets no file of this process grow past a size while it lives.
class FileSizeLimit final {
public:
    explicit FileSizeLimit(rlim_t bytes);
    ~FileSizeLimit();
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_before{};
};

/// A small file system in memory, for tests that fill it; unmounted with the object. Only the administrator
/// may mount, which whoever runs all tests is: everybody else skips.
class SmallFilesystem final {
public:
    static constexpr const char* whyNotMounted = "this process may not mount a file system";

    /// `files` bounds the number of files in it, its own folder among them; 0 for no bound.
    explicit SmallFilesystem(std::size_t bytes = std::size_t{8} << 20, std::size_t files = 0);
    ~SmallFilesystem();
    SmallFilesystem(const SmallFilesystem&) = delete;
    SmallFilesystem& operator=(const SmallFilesystem&) = delete;

    [[nodiscard]] bool isMounted() const { return m_isMounted; }
    [[nodiscard]] std::filesystem::path path() const { return m_folder.path(); }

    /// Takes all the room that is left but `spare` bytes.
    void fill(std::size_t spare = 0) const;
    /// Gives the room back.
    void makeRoom() const;

private:
    TemporaryFolder m_folder;
    bool m_isMounted;
};

} // namespace ondavia::testing
