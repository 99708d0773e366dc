#include "cli/MediaHead.h"

#include "protocol/XtreamError.h"

#include <QUrl>

namespace ondavia::cli {
namespace {

/// Ends a transfer that has brought what it was asked for.
struct EnoughRead final {};

class HeadReader final : public URLBodyReader {
public:
    explicit HeadReader(std::size_t wanted)
        : m_wanted(wanted) {}

    void begin(std::optional<int> statusCode) override {
        if (statusCode && (*statusCode < 200 || *statusCode > 299)) {
            throw XtreamError::httpError(*statusCode);
        }
    }
    void receive(std::string_view bytes) override {
        m_bytes.append(bytes.substr(0, m_wanted - m_bytes.size()));
        if (m_bytes.size() == m_wanted) {
            throw EnoughRead();
        }
    }
    void finish() override {}

    [[nodiscard]] const std::string& bytes() const { return m_bytes; }

private:
    std::size_t m_wanted;
    std::string m_bytes;
};

} // namespace

QCoro::Task<std::string> fetchHead(std::shared_ptr<URLSession> session, std::string url, std::size_t bytes) {
    const auto address = makeURL(url);
    if (!address) {
        throw XtreamError::invalidURL();
    }
    const auto head = std::make_shared<HeadReader>(bytes);
    const std::shared_ptr<URLBodyReader> reader = head;
    try {
        co_await session->stream(*address, reader);
    } catch (const EnoughRead&) {
        // Nothing is missing.
    }
    co_return head->bytes();
}

} // namespace ondavia::cli
