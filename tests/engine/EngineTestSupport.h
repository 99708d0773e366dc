#pragma once

#include "platform/FSPlayer.h"
#include "platform/NotificationCenter.h"
#include "playback/engine/MpvPlayerFactory.h"
#include "support/TestSupport.h"

#include <QStringList>
#include <QTimer>

#include <httplib.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace ondavia::testing {

/// Runs ffmpeg within `folder`. Raises std::runtime_error with what it said where it fails.
void runFfmpeg(const std::filesystem::path& folder, const QStringList& arguments);

/// `text` cut at its blanks.
[[nodiscard]] QStringList words(const char* text);

/// Small films made once for each test program.
struct Media final {
    /// 12 s, 320x180 at 25 pictures a second, H.264 and AAC.
    std::string transportStream;
    /// The same, for seeking.
    std::string movie;
    /// Two audio streams (aac por, mp3 eng) and a subtitle (por, "Forced").
    std::string tracks;
    /// 12 s of AAC alone.
    std::string radio;
    std::string subtitles;
    /// Folder of all the files above, with their bytes under "<name>.<ext>".
    std::filesystem::path folder;

    static const Media& shared();
};

/// What providers do, on a free port of the loopback interface.
///
/// /file/<any>/<any>/<name>  a file of Media, with ranges
/// /cut/<percent>/<name>     announces the whole file, sends this much of it, closes; with ranges
/// /whole/<name>             the whole file, in chunks, without a length and without ranges
/// /broken/<percent>/<name>  as /whole, but closed after this much
/// /closing/<name>           the whole file, its end marked by nothing but closing
/// /live/<any>/<any>/<name>  the file at its own pace, without a length; closes at its end
/// /short/<name>             as /live, closed after three seconds
/// /page                     HTML with status 200
/// /text                     whatever `setText` was given
/// All else is 404.
class MediaServer final {
public:
    MediaServer();
    ~MediaServer();
    MediaServer(const MediaServer&) = delete;
    MediaServer& operator=(const MediaServer&) = delete;

    [[nodiscard]] std::string url(const std::string& path) const;
    void setText(std::string text) { m_text = std::move(text); }
    [[nodiscard]] int requests() const { return m_requests; }

private:
    httplib::Server m_server;
    int m_port;
    std::string m_text;
    std::atomic<int> m_requests = 0;
    std::atomic<bool> m_stopping = false;
    std::thread m_thread;
};

/// Takes connections and never says a word.
class SilentServer final {
public:
    SilentServer();
    ~SilentServer();
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    [[nodiscard]] std::string url(const std::string& path) const;

private:
    int m_socket;
    int m_port;
};

/// Where engines follow one another, as in the application.
struct EngineRoom final {
    explicit EngineRoom(MpvOutputs outputs)
        : makePlayer(makeMpvPlayerFactory(center, outputs)) {}

    NotificationCenter center;
    FSPlayerFactory makePlayer;
};

/// One engine and what it posted. "finish:<reason>", "state:<n>", "load:<bits>", "prepared",
/// "firstFrame" and "streams".
class Engine final {
public:
    /// In a room of its own.
    Engine(MpvOutputs outputs, const std::string& url);
    Engine(std::shared_ptr<EngineRoom> room, const std::string& url);
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    FSPlayer* operator->() const { return m_player.get(); }
    [[nodiscard]] const std::vector<std::string>& events() const { return m_events; }
    [[nodiscard]] bool has(const std::string& event) const { return indexOf(event) >= 0; }
    [[nodiscard]] int count(const std::string& event) const;
    /// -1 when it was not posted.
    [[nodiscard]] int indexOf(const std::string& event) const;
    [[nodiscard]] bool await(const std::string& event,
                             std::chrono::milliseconds timeout = std::chrono::seconds(20)) const;
    /// Runs the event loop until the position is past `seconds`.
    [[nodiscard]] bool awaitPosition(double seconds) const;

    /// The options that the system sets, in its order.
    static FSOptions systemOptions();

private:
    void observe(const char* name, std::function<std::string(const Notification&)> describe);

    const std::shared_ptr<EngineRoom> m_room;
    std::shared_ptr<FSPlayer> m_player;
    std::vector<std::string> m_events;
};

/// The last event of an engine that was given this address to play, once it has finished.
[[nodiscard]] std::string outcomeOf(const std::string& url);

/// The longest time between two turns of the main loop while it lives.
class MainThreadWatch final {
public:
    MainThreadWatch();
    [[nodiscard]] double longestGapMilliseconds();

private:
    using Clock = std::chrono::steady_clock;
    void tick();

    QTimer m_timer;
    Clock::time_point m_last = Clock::now();
    double m_longest = 0;
};

[[nodiscard]] int threadCount();

/// The system's numbers of this process's threads of that name.
[[nodiscard]] std::set<std::string> threadsNamed(const std::string& name);

} // namespace ondavia::testing
