#include "demo/OpenStreams.h"

#include <dirent.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <functional>

namespace ondavia::demo {
namespace {

using NameOf = int (*)(int descriptor, sockaddr* address, socklen_t* length);

/// -1 for what is no such connection.
int portOf(int descriptor, NameOf name) {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    const bool isKnown = name(descriptor, reinterpret_cast<sockaddr*>(&address), &length) == 0;
    return isKnown && address.sin_family == AF_INET ? ntohs(address.sin_port) : -1;
}

void forEachConnection(int port, const std::function<void(int descriptor)>& act) {
    DIR* folder = opendir("/proc/self/fd");
    if (folder == nullptr) {
        return;
    }
    while (const dirent* entry = readdir(folder)) {
        const int descriptor = std::atoi(entry->d_name);
        if (descriptor > 2 && portOf(descriptor, getsockname) == port &&
            portOf(descriptor, getpeername) > 0) {
            act(descriptor);
        }
    }
    closedir(folder);
}

bool isClientThere(int descriptor) {
    char byte = 0;
    const ssize_t count = recv(descriptor, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

} // namespace

std::shared_ptr<void> OpenStreams::open(int port, int clientPort, const std::string& path) {
    int connection = -1;
    forEachConnection(port, [&](int descriptor) {
        connection = portOf(descriptor, getpeername) == clientPort ? descriptor : connection;
    });
    const std::lock_guard lock(m_mutex);
    const auto place = m_connections.insert(m_connections.end(), connection);
    m_most = std::max(m_most, countNow());
    m_lastPath = path;
    return {this, [this, place](void*) {
                const std::lock_guard again(m_mutex);
                m_connections.erase(place);
            }};
}

int OpenStreams::count() const {
    const std::lock_guard lock(m_mutex);
    return countNow();
}

int OpenStreams::most() const {
    const std::lock_guard lock(m_mutex);
    return m_most;
}

std::string OpenStreams::lastPath() const {
    const std::lock_guard lock(m_mutex);
    return m_lastPath;
}

int OpenStreams::countNow() const {
    return static_cast<int>(std::ranges::count_if(m_connections, isClientThere));
}

void shutConnections(int port) {
    forEachConnection(port, [](int descriptor) { shutdown(descriptor, SHUT_RDWR); });
}

} // namespace ondavia::demo
