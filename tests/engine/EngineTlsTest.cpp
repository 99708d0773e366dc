// Encrypted streams, in a system whose certificate store holds the test's authority.
#include "engine/EngineTestSupport.h"
#include "support/HttpServer.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace ondavia::testing {
namespace {

std::string outputOf(QStringList command) {
    QProcess process;
    const QString program = command.takeFirst();
    process.start(program, command);
    EXPECT_TRUE(process.waitForFinished(120'000));
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput().toStdString();
}

class EngineTls : public ::testing::Test {
protected:
    void SetUp() override {
        if (!TestAuthority::canBeTrusted()) {
            GTEST_SKIP() << "this machine lets no process have a certificate store of its own";
        }
        std::ifstream file(Media::shared().folder / "film.ts", std::ios::binary);
        m_film.assign(std::istreambuf_iterator<char>(file), {});
    }

    void serveFilm(HttpServer& server) {
        server.server.Get("/film.ts", [this](const auto&, auto& reply) {
            m_wasAsked = true;
            reply.set_content(m_film, "video/mp2t");
        });
        server.server.Get("/list.m3u8", [](const auto&, auto& reply) {
            reply.set_content("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:12\n#EXTINF:12,\nfilm.ts\n"
                              "#EXT-X-ENDLIST\n",
                              "application/vnd.apple.mpegurl");
        });
        server.start();
    }

    static std::string played(const TestAuthority& trusted, const std::string& url) {
        return outputOf(trusted.trusting({QStringLiteral(ENGINE_PLAY_PROBE), QString::fromStdString(url)}));
    }

    TestAuthority authority;
    std::atomic<bool> m_wasAsked = false;

private:
    std::string m_film;
};

TEST_F(EngineTls, PlaysFromAServerWhoseAuthorityIsInTheSystemsStore) {
    HttpServer server(authority.issue());
    serveFilm(server);
    EXPECT_EQ(played(authority, server.url("/film.ts")), "plays");
    EXPECT_EQ(played(authority, server.url("/list.m3u8")), "plays") << "through FFmpeg's own connection";
}

TEST_F(EngineTls, RefusesACertificateOfAnotherAuthority) {
    TestAuthority other;
    HttpServer server(other.issue());
    serveFilm(server);
    EXPECT_EQ(played(authority, server.url("/film.ts")), "finish:1");
    EXPECT_FALSE(m_wasAsked) << "the request itself holds the account";
}

TEST_F(EngineTls, RefusesACertificateForAnotherHost) {
    HttpServer server(authority.issue("DNS:tv.example"));
    serveFilm(server);
    EXPECT_EQ(played(authority, server.url("/film.ts")), "finish:1");
    EXPECT_FALSE(m_wasAsked);
}

TEST_F(EngineTls, RefusesSegmentsWithACertificateOfAnotherAuthority) {
    TestAuthority other;
    HttpServer segments(other.issue());
    serveFilm(segments);
    HttpServer server(authority.issue());
    server.server.Get("/list.m3u8", [&segments](const auto&, auto& reply) {
        reply.set_content("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:12\n#EXTINF:12,\n" +
                              segments.url("/film.ts") + "\n#EXT-X-ENDLIST\n",
                          "application/vnd.apple.mpegurl");
    });
    server.start();
    EXPECT_EQ(played(authority, server.url("/list.m3u8")), "finish:1");
    EXPECT_FALSE(m_wasAsked);
}

TEST_F(EngineTls, FollowsNoRedirectToAPlainAddress) {
    HttpServer plain;
    serveFilm(plain);
    HttpServer server(authority.issue());
    for (const char* path : {"/film.ts", "/list.m3u8"}) {
        server.server.Get(path,
                          [&plain, path](const auto&, auto& reply) { reply.set_redirect(plain.url(path)); });
    }
    server.start();
    EXPECT_EQ(played(authority, server.url("/film.ts")), "finish:1");
    EXPECT_EQ(played(authority, server.url("/list.m3u8")), "finish:1");
    EXPECT_FALSE(m_wasAsked);
}

TEST_F(EngineTls, FollowsARedirectToAnEncryptedAddress) {
    HttpServer server(authority.issue());
    serveFilm(server);
    HttpServer plain;
    plain.server.Get("/film.ts",
                     [&server](const auto&, auto& reply) { reply.set_redirect(server.url("/film.ts")); });
    plain.start();
    EXPECT_EQ(played(authority, plain.url("/film.ts")), "plays");
}

} // namespace
} // namespace ondavia::testing
