// What an engine may open by the word of a server, and what it may not.
#include "engine/EngineTestSupport.h"

#include <gmock/gmock.h>

#include <fstream>
#include <netinet/in.h>
#include <set>
#include <sys/socket.h>
#include <unistd.h>

namespace ondavia::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::IsEmpty;

/// Inodes of this process's own sockets.
std::set<std::string> ownSockets() {
    std::set<std::string> inodes;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string target = std::filesystem::read_symlink(entry.path(), gone);
        constexpr std::string_view prefix = "socket:[";
        if (target.starts_with(prefix)) {
            inodes.insert(target.substr(prefix.size(), target.size() - prefix.size() - 1));
        }
    }
    return inodes;
}

/// What this process would take strangers' bytes from: TCP sockets that listen, and every UDP socket.
std::set<std::string> openDoors() {
    const auto own = ownSockets();
    std::set<std::string> doors;
    for (const std::string table : {"tcp", "tcp6", "udp", "udp6"}) {
        std::ifstream lines("/proc/self/net/" + table);
        std::string line;
        std::getline(lines, line);
        while (std::getline(lines, line)) {
            std::istringstream words(line);
            std::string number, local, remote, state, queues, timer, retransmits, user, timeout, inode;
            words >> number >> local >> remote >> state >> queues >> timer >> retransmits >> user >>
                timeout >> inode;
            constexpr const char* listening = "0A";
            if ((table.starts_with("udp") || state == listening) && own.contains(inode)) {
                doors.insert(table + " " + local);
            }
        }
    }
    return doors;
}

/// A TCP port that notes whether somebody calls, and hangs up.
class Reception final {
public:
    Reception()
        : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* const address = reinterpret_cast<sockaddr*>(&m_address);
        socklen_t size = sizeof m_address;
        if (bind(m_socket, address, size) != 0 || listen(m_socket, SOMAXCONN) != 0 ||
            getsockname(m_socket, address, &size) != 0) {
            throw std::runtime_error("no port to be called at");
        }
    }
    ~Reception() { close(m_socket); }
    Reception(const Reception&) = delete;
    Reception& operator=(const Reception&) = delete;

    [[nodiscard]] int port() const { return ntohs(m_address.sin_port); }
    [[nodiscard]] bool hasCaller() const {
        const int caller = accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
        return caller >= 0 && close(caller) == 0;
    }

private:
    sockaddr_in m_address{};
    int m_socket;
};

TEST(EngineAccess, ReplyOpensNoDoorAndNoFile) {
    MediaServer server;
    const std::string path = Media::shared().folder / "film.ts";
    const auto hls = [](const std::string& address) {
        return "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:12\n#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:12,\n" +
               address + "\n#EXT-X-ENDLIST\n";
    };
    const std::vector<std::string> contents = {
        "v=0\r\no=- 0 0 IN IP4 127.0.0.1\r\ns=x\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\nm=video 42424 RTP/AVP "
        "33\r\n",
        hls("file://" + path),
        hls(path),
        hls("rtp://127.0.0.1:42424"),
        hls("udp://127.0.0.1:42424"),
        hls("tcp://0.0.0.0:42424?listen=1"),
        hls("concat:" + path + "|" + path),
        "#EXTM3U\n#EXTINF:12,x\n" + path + "\n",
        "#EXTM3U\nfile://" + path + "\n",
        "#EXTM3U\nedl://" + path + "\n",
        "#EXTM3U\nudp://127.0.0.1:42424\n",
        "# mpv EDL v0\n" + path + "\n",
        "[playlist]\nFile1=" + path + "\nNumberOfEntries=1\n",
        "ffconcat version 1.0\nfile '" + path + "'\n",
        "ffconcat version 1.0\nfile 'tcp://0.0.0.0:42424?listen=1'\n",
        "FILE \"" + path + "\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n",
        "RTSPtext\nrtsp://127.0.0.1:42424/x\n",
    };
    const auto doors = openDoors();
    ASSERT_FALSE(doors.empty()) << "the media server's own shows";
    for (const auto& content : contents) {
        server.setText(content);
        Engine engine(MpvOutputs::Null, server.url("/text"));
        engine->prepareToPlay();
        bool opensDoor = false;
        EXPECT_TRUE(waitUntil(
            [&] {
                opensDoor = opensDoor || openDoors() != doors;
                return engine.has("finish:1");
            },
            60s))
            << content;
        EXPECT_FALSE(opensDoor) << content;
        EXPECT_FALSE(engine.has("firstFrame")) << content;
    }
}

TEST(EngineAccess, AddressesOfMpvsOwnAreRefused) {
    const std::string film = Media::shared().movie.substr(std::string("file://").size());
    const std::vector<std::string> urls = {
        "edl://" + film, "av://lavfi:testsrc", "memory://#EXTM3U", film, "lavf://" + film, "-",
        "ondavia://1",   "mmsh://127.0.0.1/x"};
    for (const std::string& url : urls) {
        EXPECT_EQ(outcomeOf(url), "finish:1") << url;
    }
}

TEST(EngineAccess, UsersOwnAddressMayBeAnyNetworks) {
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "FFmpeg cancels its receiving thread, which the thread sanitizer takes for a fault";
#endif
    // Nobody sends anything there: that it listens is all that can be seen.
    for (const char* url : {"udp://127.0.0.1:0", "rtp://127.0.0.1:0"}) {
        Engine engine(MpvOutputs::Null, url);
        const auto doors = openDoors();
        engine->prepareToPlay();
        // The door of the engine before may close meanwhile.
        EXPECT_TRUE(waitUntil([&] { return !std::ranges::includes(doors, openDoors()); }, 60s)) << url;
    }
}

TEST(EngineAccess, UsersOwnAddressMayBeAnRtspServer) {
    Reception reception;
    Engine engine(MpvOutputs::Null, "rtsp://127.0.0.1:" + std::to_string(reception.port()) + "/x");
    engine->prepareToPlay();
    EXPECT_TRUE(waitUntil([&] { return reception.hasCaller(); }, 60s));
}

} // namespace
} // namespace ondavia::testing
