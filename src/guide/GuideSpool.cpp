#include "guide/GuideSpool.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace ondavia {
namespace {

[[noreturn]] void raiseSystemError(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// mkostemp gives mode 0600.
int openNameless(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    std::string name = folder / "guide-XXXXXX";
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) {
        raiseSystemError("the guide's download cannot be kept");
    }
    unlink(name.c_str());
    return file;
}

} // namespace

GuideSpool::~GuideSpool() {
    if (m_file >= 0) {
        close(m_file);
    }
}

void GuideSpool::receive(std::string_view bytes) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_rest == Rest::Refused) {
            throw std::runtime_error("the guide's download is not wanted any more");
        }
        if (m_rest == Rest::Dropped) {
            return;
        }
        if (m_file < 0) {
            m_file = openNameless(m_folder);
        }
    }
    write(bytes);
    const std::lock_guard lock(m_mutex);
    m_written += bytes.size();
    m_changed.notify_all();
}

/// The file's own position is the writer's; the parser reads by offset.
void GuideSpool::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_file, bytes.data(), bytes.size());
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            raiseSystemError("the guide's download cannot be kept");
        }
    }
}

void GuideSpool::finish() {
    const std::lock_guard lock(m_mutex);
    if (m_transfer == Transfer::Running) {
        m_transfer = Transfer::Whole;
    }
    m_changed.notify_all();
}

void GuideSpool::fail() {
    const std::lock_guard lock(m_mutex);
    m_transfer = Transfer::Failed;
    m_changed.notify_all();
}

std::size_t GuideSpool::read(std::span<char> block, const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, stop, [this] { return m_written > m_read || m_transfer != Transfer::Running; });
    if (stop.stop_requested() || m_transfer == Transfer::Failed || m_written == m_read) {
        return 0;
    }
    const std::uint64_t wanted = std::min<std::uint64_t>(block.size(), m_written - m_read);
    lock.unlock();
    const ssize_t count = pread(m_file, block.data(), wanted, static_cast<off_t>(m_read));
    if (count <= 0) {
        raiseSystemError("the guide's download cannot be read back");
    }
    m_read += static_cast<std::uint64_t>(count);
    return static_cast<std::size_t>(count);
}

bool GuideSpool::waitForEnd(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, stop, [this] { return m_transfer != Transfer::Running; });
    return m_transfer == Transfer::Whole && !stop.stop_requested();
}

void GuideSpool::dropRest() {
    const std::lock_guard lock(m_mutex);
    m_rest = Rest::Dropped;
}

void GuideSpool::refuseRest() {
    const std::lock_guard lock(m_mutex);
    m_rest = Rest::Refused;
}

} // namespace ondavia
