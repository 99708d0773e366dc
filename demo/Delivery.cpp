#include "demo/Delivery.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>

namespace ondavia::demo {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t pieceSize = 256U << 10U;
constexpr std::uint64_t hugeSize = 2ULL << 30U;
constexpr std::size_t bombMegabytes = 4096;
constexpr std::size_t slowPieces = 40;

class OpenFile final {
public:
    explicit OpenFile(const std::filesystem::path& file)
        : m_descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~OpenFile() { close(m_descriptor); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    void append(std::string& out, std::uint64_t offset, std::size_t atMost) const {
        const std::size_t start = out.size();
        out.resize(start + atMost);
        const ssize_t count = pread(m_descriptor, out.data() + start, atMost, static_cast<off_t>(offset));
        out.resize(start + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }

private:
    int m_descriptor;
};

} // namespace

void interruptibleSleep(std::chrono::milliseconds time, const std::stop_token& stop) {
    std::mutex mutex;
    std::condition_variable_any wake;
    std::unique_lock lock(mutex);
    wake.wait_for(lock, stop, time, [] { return false; });
}

Delivery::Delivery(Service& service, std::string action, const httplib::Request& request,
                   httplib::Response& response)
    : m_service(service)
    , m_action(std::move(action))
    , m_request(request)
    , m_response(response)
    , m_faults(service.faults.take(m_action)) {}

void Delivery::refuse(int status, const std::string& reason) {
    m_response.status = status;
    m_response.set_content(reason + "\n", "text/plain");
}

void Delivery::pause(std::chrono::milliseconds time) {
    interruptibleSleep(time, m_service.stopping.get_token());
}

void Delivery::redirect(int hop) {
    std::string target = m_request.target;
    const std::size_t old = target.find("hop=");
    target = old == std::string::npos ? target + (target.find('?') == std::string::npos ? '?' : '&')
                                      : target.substr(0, old);
    m_response.set_redirect(target + "hop=" + std::to_string(hop));
}

bool Delivery::answeredByFault() {
    if (m_faults.has("never-answers")) {
        m_service.faults.waitForChange(m_service.stopping.get_token());
        refuse(503, "waited long enough");
        return true;
    }
    if (m_faults.has("slow-first-byte")) {
        pause(3s);
    }
    if (const int status = m_faults.status(); status != 0) {
        refuse(status, "fault");
        return true;
    }
    const int hop = m_request.has_param("hop") ? std::atoi(m_request.get_param_value("hop").c_str()) : 0;
    if (m_faults.has("endless-redirect") || (m_faults.has("redirect") && hop == 0)) {
        redirect(hop + 1);
        return true;
    }
    if (m_faults.has("endless-body")) {
        sendEndless();
        return true;
    }
    if (m_faults.has("huge-body")) {
        sendHuge();
        return true;
    }
    if (m_faults.has("gzip-bomb")) {
        m_response.set_header("Content-Encoding", "gzip");
        send(gzipBomb(bombMegabytes), "application/json");
        return true;
    }
    return false;
}

void Delivery::sendEndless() {
    m_response.status = 200;
    m_response.set_chunked_content_provider(
        "application/json",
        [stop = m_service.stopping.get_token()](std::size_t offset, httplib::DataSink& sink) {
            std::string rows = offset == 0 ? "[" : ",";
            for (int i = 0; i < 500; ++i) {
                rows += i == 0 ? "" : ",";
                rows += R"({"num":1,"name":"Sem fim","stream_id":1,"category_id":"1"})";
            }
            return !stop.stop_requested() && sink.write(rows.data(), rows.size());
        });
}

void Delivery::sendHuge() {
    sendReadable(hugeSize, "application/json",
                 [](std::string& out, std::uint64_t offset, std::size_t atMost) {
                     const std::size_t start = out.size();
                     out.append(atMost, ' ');
                     if (offset == 0) {
                         out[start] = '[';
                     }
                     if (offset + atMost == hugeSize) {
                         out.back() = ']';
                     }
                 });
}

bool Delivery::fitRanges(std::uint64_t size) {
    // The library answers ranges by itself but trusts them; the request object is its own and not constant.
    for (auto& range : const_cast<httplib::Request&>(m_request).ranges) {
        if (range.first >= static_cast<ssize_t>(size)) {
            m_response.set_header("Content-Range", "bytes */" + std::to_string(size));
            refuse(416, "range");
            return false;
        }
        range.second = std::min(range.second, static_cast<ssize_t>(size) - (range.first < 0 ? 0 : 1));
    }
    return true;
}

void Delivery::sendReadable(std::uint64_t size, const std::string& type, Reader read) {
    if (!fitRanges(size)) {
        return;
    }
    m_response.set_header("Accept-Ranges", "bytes");
    const bool cut = m_faults.has("cut-connection");
    const bool slow = m_faults.has("slow-body");
    const std::uint64_t end = cut ? size / 2 : size;
    m_response.set_content_provider(
        size, type,
        [read = std::move(read), end, slow, size, stop = m_service.stopping.get_token()](
            std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            if (stop.stop_requested() || offset >= end) {
                return false;
            }
            std::size_t piece = std::min<std::uint64_t>({length, end - offset, pieceSize});
            if (slow) {
                interruptibleSleep(100ms, stop);
                piece = std::min<std::uint64_t>(piece, size / slowPieces + 1);
            }
            std::string bytes;
            read(bytes, offset, piece);
            return !bytes.empty() && sink.write(bytes.data(), bytes.size());
        });
}

void Delivery::send(const Body& body, const std::string& type) {
    const Body spoiled = spoil(body, m_action, m_faults);
    if (m_faults.has("compressed")) {
        m_response.set_header("Content-Encoding", "gzip");
    }
    if (spoiled->empty()) {
        m_response.status = 200;
        return;
    }
    const std::string shown = m_faults.has("html-200") ? "text/html; charset=utf-8" : type;
    sendReadable(spoiled->size(), shown,
                 [spoiled](std::string& out, std::uint64_t offset, std::size_t atMost) {
                     out.append(*spoiled, offset, atMost);
                 });
}

void Delivery::send(std::string body, const std::string& type) {
    send(std::make_shared<const std::string>(std::move(body)), type);
}

void Delivery::sendFile(const std::filesystem::path& file, const std::string& type,
                        std::shared_ptr<void> ticket) {
    const auto opened = std::make_shared<const OpenFile>(file);
    const std::uint64_t size = std::filesystem::file_size(file);
    sendReadable(
        m_faults.has("truncated-body") ? size / 2 : size, type,
        [opened, ticket = std::move(ticket)](std::string& out, std::uint64_t offset, std::size_t atMost) {
            opened->append(out, offset, atMost);
        });
}

} // namespace ondavia::demo
