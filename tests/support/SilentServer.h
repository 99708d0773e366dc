#pragma once

#include "support/TestSupport.h"

#include <cstring>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace ondavia::testing {

/// A server on a socket of the file system that takes a caller in, hears it out, and never says a word.
class SilentServer final {
public:
    SilentServer()
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path().c_str(), sizeof address.sun_path - 1);
        if (bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            listen(m_socket, 1) != 0) {
            throw std::runtime_error("no socket for a silent server");
        }
    }
    ~SilentServer() {
        close(m_socket);
        if (m_caller >= 0) {
            close(m_caller);
        }
    }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    [[nodiscard]] std::string path() const { return (m_folder.path() / "socket").string(); }

    /// Waits until somebody has called and said something.
    [[nodiscard]] bool isCalled() {
        return waitUntil([this] {
            if (m_caller < 0) {
                m_caller = accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
            }
            return m_caller >= 0 && hear() > 0;
        });
    }
    /// Whether that caller has not given up yet.
    [[nodiscard]] bool isWaitedFor() {
        ssize_t heard = 0;
        do {
            heard = hear();
        } while (heard > 0);
        return heard < 0 && errno == EAGAIN;
    }

private:
    ssize_t hear() {
        char words[1024];
        return recv(m_caller, words, sizeof words, 0);
    }

    TemporaryFolder m_folder;
    int m_socket;
    int m_caller = -1;
};

} // namespace ondavia::testing
