#include "store/FolderLock.h"

#include "store/StoreError.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace ondavia {

namespace {

// Bytes of the lock file.
constexpr off_t sectionByte = 0;
constexpr off_t presenceByte = 1;

/// Locks of the open file description, which threads of other stores in this process respect too.
bool setLock(int file, off_t byte, short type, int command) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = byte;
    lock.l_len = 1;
    int result = 0;
    do {
        result = ::fcntl(file, command, &lock);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

} // namespace

FolderLock::FolderLock(const std::filesystem::path& folder)
    : m_file(::open((folder / "store.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (m_file < 0) {
        throw storeErrorForSystem(errno, "store.lock", "the file cannot be opened for writing");
    }
}

FolderLock::~FolderLock() {
    ::close(m_file);
}

FolderLock::Section::Section(FolderLock& lock)
    : m_lock(lock) {
    m_lock.m_mutex.lock();
    if (!setLock(m_lock.m_file, sectionByte, F_WRLCK, F_OFD_SETLKW)) {
        const int number = errno;
        m_lock.m_mutex.unlock();
        throw storeErrorForSystem(number, "store.lock", "the file cannot be locked");
    }
}

FolderLock::Section::~Section() {
    setLock(m_lock.m_file, sectionByte, F_UNLCK, F_OFD_SETLK);
    m_lock.m_mutex.unlock();
}

bool FolderLock::join() {
    return setLock(m_file, presenceByte, F_WRLCK, F_OFD_SETLK);
}

void FolderLock::share() {
    setLock(m_file, presenceByte, F_RDLCK, F_OFD_SETLK);
}

} // namespace ondavia
