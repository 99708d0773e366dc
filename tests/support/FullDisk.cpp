#include "support/FullDisk.h"

#include <csignal>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace ondavia::testing {
namespace {

constexpr const char* ballast = "ballast";

bool mountMemory(const std::filesystem::path& folder, std::size_t bytes, std::size_t files) {
    const std::string options =
        "mode=0700,size=" + std::to_string(bytes) + ",nr_inodes=" + std::to_string(files);
    return ::mount("tmpfs", folder.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

} // namespace

FileSizeLimit::FileSizeLimit(rlim_t bytes)
    : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{bytes, m_before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

FileSizeLimit::~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &m_before);
    (void)std::signal(SIGXFSZ, m_handler);
}

SmallFilesystem::SmallFilesystem(std::size_t bytes, std::size_t files)
    : m_isMounted(mountMemory(m_folder.path(), bytes, files)) {}

SmallFilesystem::~SmallFilesystem() {
    if (m_isMounted) {
        ::umount2(path().c_str(), MNT_DETACH);
    }
}

void SmallFilesystem::fill(std::size_t spare) const {
    struct statvfs status {};
    ::statvfs(path().c_str(), &status);
    const auto free = static_cast<off_t>(status.f_bavail * status.f_frsize);
    const int file = ::open((path() / ballast).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ::posix_fallocate(file, 0, free - static_cast<off_t>(spare));
    ::close(file);
}

void SmallFilesystem::makeRoom() const {
    std::filesystem::remove(path() / ballast);
}

} // namespace ondavia::testing
