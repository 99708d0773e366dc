#include "platform/URLSession.h"
#include "support/HttpServer.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace ondavia {
namespace {

using testing::HttpServer;
using testing::ServerCertificate;
using testing::TestAuthority;

std::string outputOf(QStringList command) {
    QProcess process;
    const QString program = command.takeFirst();
    process.start(program, command);
    EXPECT_TRUE(process.waitForFinished(120'000));
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput().toStdString();
}

std::string error(URLError::Kind kind) {
    return "error " + std::to_string(static_cast<int>(kind));
}

class Tls : public ::testing::Test {
protected:
    static QStringList fetch(const std::string& url) {
        return {QStringLiteral(FETCH_PROBE), QString::fromStdString(url)};
    }

    TestAuthority authority;
};

/// What the transport makes of a server when the system's store holds the test's authority.
class TrustedTls : public Tls {
protected:
    void SetUp() override {
        if (!TestAuthority::canBeTrusted()) {
            GTEST_SKIP() << "this machine lets no process have a certificate store of its own";
        }
    }

    std::string resultWith(const ServerCertificate& certificate) {
        HttpServer https(certificate);
        https.server.Get("/a", [](const auto&, auto& reply) { reply.set_content("corpo", "text/plain"); });
        https.start();
        return outputOf(authority.trusting(fetch(https.url("/a"))));
    }
};

TEST_F(Tls, RefusesACertificateOfAnUnknownAuthority) {
    HttpServer https(authority.issue());
    bool wasAsked = false;
    https.server.Get("/a", [&wasAsked](const auto&, auto&) { wasAsked = true; });
    https.start();
    EXPECT_EQ(outputOf(fetch(https.url("/a"))), error(URLError::Kind::Untrusted));
    EXPECT_FALSE(wasAsked) << "the request itself holds the account";
}

TEST_F(TrustedTls, AcceptsACertificateOfAnAuthorityInTheSystemsStore) {
    EXPECT_EQ(resultWith(authority.issue()), "status 200: corpo");
}

TEST_F(TrustedTls, RefusesACertificateForAnotherHost) {
    EXPECT_EQ(resultWith(authority.issue("DNS:tv.example")), error(URLError::Kind::Untrusted));
}

TEST_F(TrustedTls, RefusesACertificateThatHasEnded) {
    EXPECT_EQ(resultWith(authority.issue("IP:127.0.0.1", -1)), error(URLError::Kind::Untrusted));
}

TEST_F(TrustedTls, RefusesACertificateOfAnotherAuthority) {
    TestAuthority other;
    EXPECT_EQ(resultWith(other.issue()), error(URLError::Kind::Untrusted));
}

TEST_F(TrustedTls, FollowsNoRedirectFromAnEncryptedAddressToAPlainOne) {
    HttpServer http;
    bool wasAsked = false;
    http.server.Get("/b", [&wasAsked](const auto&, auto&) { wasAsked = true; });
    http.start();
    HttpServer https(authority.issue());
    https.server.Get("/plain", [&http](const auto&, auto& reply) { reply.set_redirect(http.url("/b")); });
    https.server.Get("/own", [](const auto&, auto& reply) { reply.set_redirect("/end"); });
    https.server.Get("/end", [](const auto&, auto& reply) { reply.set_content("fim", "text/plain"); });
    https.start();
    EXPECT_EQ(outputOf(authority.trusting(fetch(https.url("/plain")))), error(URLError::Kind::Other));
    EXPECT_FALSE(wasAsked);
    EXPECT_EQ(outputOf(authority.trusting(fetch(https.url("/own")))), "status 200: fim");
}

TEST_F(TrustedTls, FollowsARedirectFromAPlainAddressToAnEncryptedOne) {
    HttpServer https(authority.issue());
    https.server.Get("/end", [](const auto&, auto& reply) { reply.set_content("fim", "text/plain"); });
    https.start();
    HttpServer http;
    http.server.Get("/a", [&https](const auto&, auto& reply) { reply.set_redirect(https.url("/end")); });
    http.start();
    EXPECT_EQ(outputOf(authority.trusting(fetch(http.url("/a")))), "status 200: fim");
}

} // namespace
} // namespace ondavia
