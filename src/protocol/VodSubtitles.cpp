#include "base/AppLogger.h"
#include "base/Text.h"
#include "protocol/XtreamAPIClient.h"
#include "protocol/wire/Decoding.h"
#include "protocol/wire/SubtitleListings.h"

#include <QUrl>

namespace ondavia {
namespace {

using URLTexts = std::vector<std::string>;
using FindURLs = std::function<URLTexts(std::string_view detail)>;

/// Collects a movie's detail record, and has the URLs found in it on the transfer's thread.
class DetailReader final : public URLBodyReader {
public:
    explicit DetailReader(FindURLs findURLs)
        : m_findURLs(std::move(findURLs)) {}

    void begin(std::optional<int> status) override {
        if (status && (*status < 200 || *status > 299)) {
            throw XtreamError::httpError(*status);
        }
    }
    void receive(std::string_view bytes) override {
        if (bytes.size() > maximumReplyBytes - m_body.size()) {
            throw URLError(URLError::Kind::TooLong, "The movie's details are too long");
        }
        m_body += bytes;
    }
    void finish() override { urls = m_findURLs(m_body); }

    URLTexts urls;

private:
    FindURLs m_findURLs;
    std::string m_body;
};

void logFailure(std::int64_t vodId, const std::exception& failure) {
    if (const auto* refusal = dynamic_cast<const XtreamError*>(&failure)) {
        AppLogger::subtitle.error("VOD %ld: HTTP %ld", {vodId, refusal->statusCode()});
        return;
    }
    const auto* error = dynamic_cast<const URLError*>(&failure);
    const auto kind = error != nullptr ? error->kind() : URLError::Kind::Other;
    AppLogger::subtitle.error("VOD %ld: fetch error code=%{public}ld domain=%{public}s",
                              {vodId, static_cast<int>(kind), "URLError"});
}

/// What helps to learn a form that is not known yet.
void logWhatThereIs(std::int64_t vodId, const SubtitleListings& listings) {
    AppLogger::subtitle.debug("VOD %ld: no subtitles found. Root keys: [%s]", {vodId, listings.rootKeys});
    if (listings.infoKeys) {
        AppLogger::subtitle.debug("VOD %ld: info keys: [%s]", {vodId, *listings.infoKeys});
    }
    if (listings.infoSubtitlesType) {
        AppLogger::subtitle.debug("VOD %ld: info.subtitles type=%s", {vodId, *listings.infoSubtitlesType});
    }
}

} // namespace

QCoro::Task<URLTexts> XtreamAPIClient::getSubtitleURLsForVOD(std::int64_t vodId) {
    const auto alive = shared_from_this();
    const auto url = makeURL(apiURL("get_vod_info") + "&vod_id=" + std::to_string(vodId));
    if (!url) {
        AppLogger::subtitle.debug("VOD %ld: invalid API URL", {vodId});
        co_return URLTexts();
    }
    const auto reader = std::make_shared<DetailReader>(
        [alive, vodId](std::string_view detail) { return alive->subtitleURLsIn(detail, vodId); });
    const auto session = m_makeSession({});
    try {
        co_await session->stream(*url, reader);
        co_return std::move(reader->urls);
    } catch (const std::exception& failure) {
        logFailure(vodId, failure);
    }
    co_return URLTexts();
}

URLTexts XtreamAPIClient::subtitleURLsIn(std::string_view detail, std::int64_t vodId) const {
    const auto listings = readSubtitleListings(detail);
    if (!listings) {
        AppLogger::subtitle.debug("VOD %ld: response is not a JSON object", {vodId});
        return {};
    }
    for (const SubtitleListing& listing : listings->lists) {
        if (listing.elementCount > maximumReplyElements) {
            throw URLError(URLError::Kind::TooLong, "The movie has too many subtitle files");
        }
        auto urls = extractSubtitleURLs(listing);
        AppLogger::subtitle.debug("VOD %ld: %s -> %ld raw, %ld valid URLs",
                                  {vodId, listing.place, listing.elementCount, urls.size()});
        if (!urls.empty()) {
            return urls;
        }
    }
    logWhatThereIs(vodId, *listings);
    return {};
}

URLTexts XtreamAPIClient::extractSubtitleURLs(const SubtitleListing& listing) const {
    URLTexts urls;
    for (const std::string& file : listing.files) {
        std::string text(trimmedWhitespaceAndNewlines(file));
        if (text.empty()) {
            continue;
        }
        if (!text.starts_with("http://") && !text.starts_with("https://")) {
            text.insert(0, m_baseURL + (text.starts_with('/') ? "" : "/"));
        }
        if (const auto url = makeURL(text)) {
            urls.push_back(url->toEncoded().toStdString());
        }
    }
    return urls;
}

} // namespace ondavia
