#include "protocol/XtreamAPIClient.h"

#include "base/AppLogger.h"
#include "base/Redaction.h"
#include "base/Text.h"
#include "protocol/wire/Decoding.h"
#include "protocol/wire/ListDecoder.h"

#include <QCryptographicHash>
#include <QUrl>

namespace ondavia {
namespace {

constexpr double requestTimeout = 120;
constexpr double resourceTimeout = 600;

template<class T> constexpr bool isList = false;
template<class T> constexpr bool isList<std::vector<T>> = true;

std::string normalized(std::string_view text) {
    text = trimmedWhitespaceAndNewlines(text);
    if (text.ends_with('/')) {
        text.remove_suffix(1);
    }
    if (text.starts_with("http://") || text.starts_with("https://")) {
        return std::string(text);
    }
    AppLogger::network.error("server URL had no scheme, defaulting to http — credentials will be sent in "
                             "clear text. Consider adding https:// prefix manually.");
    return "http://" + std::string(text);
}

QUrl requiredURL(const std::string& text) {
    const auto url = makeURL(text);
    if (!url) {
        throw XtreamError::invalidURL();
    }
    return *url;
}

/// A scheme other than HTTP has no status, and nothing to object to.
void requireSuccess(std::optional<int> statusCode) {
    if (statusCode && (*statusCode < 200 || *statusCode > 299)) {
        throw XtreamError::httpError(*statusCode);
    }
}

/// Collects a whole reply and decodes it on the transfer's thread; a text stays as it is.
template<class Reply> class ReplyReader final : public URLBodyReader {
public:
    explicit ReplyReader(std::string action)
        : m_action(std::move(action)) {}

    void begin(std::optional<int> statusCode) override { requireSuccess(statusCode); }
    void receive(std::string_view bytes) override {
        requireReplyWithinBound(m_body.size() + bytes.size(), m_action);
        m_body += bytes;
    }
    void finish() override {
        const bool isEmptyList = isList<Reply> && m_body.size() < RowSplitter::shortestText;
        if constexpr (std::is_same_v<Reply, std::string>) {
            m_reply = std::move(m_body);
        } else if (!isEmptyList) {
            m_reply = decodeReply<Reply>(m_body, m_action);
        }
    }

    [[nodiscard]] Reply takeReply() { return std::move(m_reply); }

private:
    std::string m_action;
    std::string m_body;
    Reply m_reply;
};

/// Decodes a stream list on the transfer's thread.
template<class Row> class RowReader final : public URLBodyReader {
public:
    RowReader(std::string action, std::function<void(std::vector<Row>&&)> onRows)
        : m_decoder(std::move(action), std::move(onRows)) {}

    void begin(std::optional<int> statusCode) override { requireSuccess(statusCode); }
    void receive(std::string_view bytes) override { m_decoder.feed(bytes); }
    void finish() override { m_decoder.finish(); }

    [[nodiscard]] std::int64_t rowCount() const { return m_decoder.rowCount(); }

private:
    XtreamListDecoder<Row> m_decoder;
};

} // namespace

XtreamAPIClient::XtreamAPIClient(std::string_view server, std::string username, std::string password,
                                 const URLSessionFactory& makeSession)
    : m_server(normalized(server))
    , m_username(std::move(username))
    , m_password(std::move(password))
    , m_baseURL(m_server)
    , m_makeSession(makeSession)
    , m_session(makeSession({requestTimeout, resourceTimeout})) {
    registerSecret(m_username);
    registerSecret(m_password);
}

template<class Reply> QCoro::Task<Reply> XtreamAPIClient::fetch(std::string url, std::string action) {
    const auto alive = shared_from_this();
    const auto reader = std::make_shared<ReplyReader<Reply>>(std::move(action));
    co_await m_session->stream(requiredURL(url), reader);
    co_return reader->takeReply();
}

std::string XtreamAPIClient::accountMark() const {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const std::string& part : {m_server, m_username, m_password}) {
        // With its end, so that no two accounts make one text.
        hash.addData(QByteArrayView(part.c_str(), static_cast<qsizetype>(part.size() + 1)));
    }
    return hash.result().toHex().toStdString();
}

QCoro::Task<XtreamAuthResponse> XtreamAPIClient::authenticate() {
    const auto alive = shared_from_this();
    XtreamAuthResponse reply = co_await fetch<XtreamAuthResponse>(apiURL(), {});
    // Kept before the check: a refused log-in leaves its reason readable.
    m_userInfo = reply.userInfo;
    m_serverInfo = reply.serverInfo;
    if (!reply.userInfo || reply.userInfo->auth != 1) {
        throw XtreamError::authFailed();
    }
    co_return reply;
}

QCoro::Task<XtreamSeriesInfo> XtreamAPIClient::getSeriesInfo(std::int64_t seriesId) {
    const std::string action = "get_series_info";
    return fetch<XtreamSeriesInfo>(apiURL(action) + "&series_id=" + std::to_string(seriesId), action);
}

QCoro::Task<std::vector<XtreamEPGListing>> XtreamAPIClient::getEPGForStream(std::int64_t streamId) {
    const auto alive = shared_from_this();
    const std::string action = "get_simple_data_table";
    XtreamEPGResponse reply =
        co_await fetch<XtreamEPGResponse>(apiURL(action) + "&stream_id=" + std::to_string(streamId), action);
    if (!reply.epgListings) {
        co_return std::vector<XtreamEPGListing>();
    }
    co_return std::move(*reply.epgListings);
}

QCoro::Task<std::vector<XtreamCategory>> XtreamAPIClient::getCategories(std::string action) {
    return fetch<std::vector<XtreamCategory>>(apiURL(action), action);
}

QCoro::Task<std::string> XtreamAPIClient::getVodInfo(std::int64_t vodId) {
    const std::string action = "get_vod_info";
    return fetch<std::string>(apiURL(action) + "&vod_id=" + std::to_string(vodId), action);
}

template<class Row>
QCoro::Task<std::int64_t> XtreamAPIClient::fetchRows(std::function<void(std::vector<Row>&&)> onRows) {
    const auto alive = shared_from_this();
    const std::string action(listAction<Row>);
    const auto reader = std::make_shared<RowReader<Row>>(action, std::move(onRows));
    co_await m_session->stream(requiredURL(apiURL(action)), reader);
    co_return reader->rowCount();
}

template QCoro::Task<std::int64_t>
    XtreamAPIClient::fetchRows(std::function<void(std::vector<XtreamLiveStream>&&)>);
template QCoro::Task<std::int64_t>
    XtreamAPIClient::fetchRows(std::function<void(std::vector<XtreamVodStream>&&)>);
template QCoro::Task<std::int64_t>
    XtreamAPIClient::fetchRows(std::function<void(std::vector<XtreamSeriesItem>&&)>);

} // namespace ondavia
