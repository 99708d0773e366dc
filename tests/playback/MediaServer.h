#pragma once

#include <atomic>
#include <filesystem>
#include <httplib.h>
#include <memory>
#include <string>
#include <thread>

namespace ondavia::testing {

/// Serves one clip over loopback, with faults on request. Operations from any thread.
class MediaServer final {
public:
    explicit MediaServer(const std::filesystem::path& clip);
    ~MediaServer();
    MediaServer(const MediaServer&) = delete;
    MediaServer& operator=(const MediaServer&) = delete;

    /// As an account names it; every film and episode of it is the clip.
    [[nodiscard]] std::string server() const;
    /// The clip's URL; it holds a password, as a provider's does.
    [[nodiscard]] std::string url() const;
    [[nodiscard]] int requests() const { return m_requests; }

    /// Answers 404 until the server is mended.
    void refuse() { m_refuses = true; }
    /// Breaks the connection off at this fraction of the file until the server is mended.
    void cutAt(double fraction);
    /// Sends the whole clip without its length and without ranges.
    void keepSizeToItself() { m_tellsSize = false; }
    /// Sends nothing from this fraction of the file on until the server is mended.
    void holdAt(double fraction);
    void mend();

private:
    void answer(const httplib::Request& request, httplib::Response& response);

    std::string m_clip;
    std::atomic<bool> m_refuses = false;
    std::atomic<bool> m_tellsSize = true;
    std::atomic<std::size_t> m_end;
    std::atomic<std::size_t> m_hold;
    std::atomic<int> m_requests = 0;
    int m_port = 0;
    httplib::Server m_server;
    std::thread m_thread;
};

/// Makes `seconds` of moving picture and tone with FFmpeg; false when that fails.
[[nodiscard]] bool makeClip(const std::filesystem::path& file, int seconds);

} // namespace ondavia::testing
