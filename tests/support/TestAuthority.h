#pragma once

#include "support/TestSupport.h"

#include <QStringList>

#include <filesystem>
#include <string>

namespace ondavia::testing {

/// A server's certificate and its private key, as PEM files of their authority's folder.
struct ServerCertificate final {
    std::filesystem::path certificate;
    std::filesystem::path key;
};

/// A certificate authority of one's own, made by openssl. Every failure fails the test.
class TestAuthority final {
public:
    TestAuthority();

    /// For "localhost" and 127.0.0.1 unless `subjectAltName` says otherwise, as openssl writes it. With -1
    /// `days` it has ended yesterday.
    [[nodiscard]] ServerCertificate issue(const std::string& subjectAltName = "IP:127.0.0.1,DNS:localhost",
                                          int days = 2);

    /// A command that runs `command` with a system whose certificate store holds this authority alone: the
    /// store's folder is another one in the program's own view of the file system.
    [[nodiscard]] QStringList trusting(const QStringList& command) const;
    /// Whether this machine lets a process have such a view.
    [[nodiscard]] static bool canBeTrusted();

private:
    TemporaryFolder m_folder;
    std::filesystem::path m_store;
    int m_issued = 0;
};

} // namespace ondavia::testing
