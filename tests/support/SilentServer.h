#pragma once

#include "support/TestSupport.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace ondavia::testing {

/// A server on a socket of the file system that takes callers in, hears them out, and never says a word.
class SilentServer final {
public:
    SilentServer()
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path().c_str(), sizeof address.sun_path - 1);
        if (bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            listen(m_socket, SOMAXCONN) != 0) {
            throw std::runtime_error("no socket for a silent server");
        }
    }
    ~SilentServer() {
        close(m_socket);
        for (const Caller& caller : m_callers) {
            close(caller.socket);
        }
    }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    [[nodiscard]] std::string path() const { return (m_folder.path() / "socket").string(); }

    /// Waits until somebody has called and said something.
    [[nodiscard]] bool isCalled() {
        return waitUntil([this] { return std::ranges::any_of(said(), std::not_fn(&std::string::empty)); });
    }
    /// What each caller has said until now.
    [[nodiscard]] std::vector<std::string> said() {
        hear();
        std::vector<std::string> all;
        std::ranges::transform(m_callers, std::back_inserter(all), &Caller::said);
        return all;
    }
    /// Whether a caller has not given up yet.
    [[nodiscard]] bool isWaitedFor() {
        hear();
        return std::ranges::any_of(m_callers, &Caller::waits);
    }

private:
    struct Caller final {
        int socket = -1;
        std::string said;
        bool waits = true;
    };

    void hear() {
        for (int caller = 0;
             (caller = accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK)) >= 0;) {
            m_callers.push_back({caller, {}, true});
        }
        for (Caller& caller : m_callers) {
            char words[1024];
            ssize_t heard = 0;
            while ((heard = recv(caller.socket, words, sizeof words, 0)) > 0) {
                caller.said.append(words, static_cast<std::size_t>(heard));
            }
            caller.waits = heard < 0 && errno == EAGAIN;
        }
    }

    TemporaryFolder m_folder;
    int m_socket;
    std::vector<Caller> m_callers;
};

} // namespace ondavia::testing
