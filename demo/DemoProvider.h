#pragma once

#include "demo/DemoOptions.h"

#include <memory>
#include <string>
#include <string_view>

namespace ondavia::demo {

/// The demo provider as an object: a real HTTP server on the loopback interface, with threads of its own. For
/// the program of that name, and in-process for tests and benchmarks. Pictures carry their titles only where
/// the process has a QGuiApplication.
class DemoProvider final {
public:
    explicit DemoProvider(DemoOptions options);
    /// Stops.
    ~DemoProvider();
    DemoProvider(const DemoProvider&) = delete;
    DemoProvider& operator=(const DemoProvider&) = delete;

    /// Renders the catalogue, listens, and returns "http://127.0.0.1:PORT" when requests are answered. Throws
    /// std::runtime_error when the port is taken or a folder cannot be written. Once per object.
    std::string start();
    /// Ends every open stream and returns when all threads are gone. No effect when not started.
    void stop();

    /// NAME or NAME:ACTION, several separated by commas. Throws std::invalid_argument for an unknown one. May
    /// be called from any thread, before start() too.
    void setFault(std::string_view faults);
    void clearFaults();

    /// Streams open now. One whose client has closed its connection is not.
    [[nodiscard]] int openStreams() const;
    /// The most that were ever open at once, refused ones included.
    [[nodiscard]] int mostStreams() const;
    /// The path of the stream that was asked for last, the account in it; empty for none.
    [[nodiscard]] std::string lastStream() const;

private:
    class Running;
    std::unique_ptr<Running> m_running;
};

} // namespace ondavia::demo
