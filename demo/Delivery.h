#pragma once

#include "demo/Service.h"

#include <chrono>
#include <filesystem>

namespace ondavia::demo {

/// Answers one request, faults included.
class Delivery final {
public:
    Delivery(Service& service, std::string action, const httplib::Request& request,
             httplib::Response& response);

    /// The faults that decide before there is a body (status, redirect, delay, silence, endless bodies).
    /// True: the request is answered.
    [[nodiscard]] bool answeredByFault();
    [[nodiscard]] const ActiveFaults& faults() const { return m_faults; }

    void send(const Body& body, const std::string& type);
    void send(std::string body, const std::string& type);
    /// With ranges. `ticket` lives until the last byte is sent.
    void sendFile(const std::filesystem::path& file, const std::string& type,
                  std::shared_ptr<void> ticket = nullptr);
    /// A body of `size` bytes that `read` appends to a text on demand (at most what fits, at least one byte).
    using Reader = std::function<void(std::string& out, std::uint64_t offset, std::size_t atMost)>;
    void sendReadable(std::uint64_t size, const std::string& type, Reader read);

    void refuse(int status, const std::string& reason);

private:
    void redirect(int hop);
    void sendEndless();
    void sendHuge();
    void pause(std::chrono::milliseconds time);
    /// A range end beyond the body counts as the body's end; a start beyond it answers 416 and false.
    bool fitRanges(std::uint64_t size);

    Service& m_service;
    std::string m_action;
    const httplib::Request& m_request;
    httplib::Response& m_response;
    ActiveFaults m_faults;
};

/// Sleeps, and wakes at once when `stop` is requested.
void interruptibleSleep(std::chrono::milliseconds time, const std::stop_token& stop);

} // namespace ondavia::demo
