#pragma once

#include "base/Date.h"
#include "entities/Channel.h"
#include "platform/URLSession.h"
#include "protocol/XtreamError.h"
#include "protocol/wire/AccountRecords.h"
#include "protocol/wire/CatalogueRecords.h"
#include "protocol/wire/DecodingError.h"
#include "protocol/wire/GuideRecords.h"
#include "protocol/wire/SeriesRecords.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <qcoro/qcorotask.h>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ondavia {

struct SubtitleListing;

/// Category ids to category names.
using CategoryMap = std::unordered_map<std::string, std::string>;

/// The one place that knows the provider's URLs: it fetches and decodes the provider's replies and makes
/// catalogue items of them. Cheap and short-lived; its only state is what the last `authenticate()`
/// brought back, and it retries nothing.
///
/// Owned through a shared pointer: each task keeps its client alive. Tasks are awaited on the main
/// thread and resume there; decoding runs on the transfer's thread. The URL builders and the normalisation
/// may be called from any thread, at any time.
///
/// Unless it says otherwise, a task raises XtreamError for a text that is no URL and for a status outside
/// 200...299, URLError for the transport, DecodingError for a body that isn't the expected JSON.
class XtreamAPIClient final : public std::enable_shared_from_this<XtreamAPIClient> {
public:
    /// Seconds. Kept on the object; the session's own time-outs rule.
    static constexpr double timeout = 30.0;

    /// `server` is normalised: trimmed, one slash removed from its end, and "http://" put in front where
    /// no scheme stands. The other two are taken as they are, and masked in every log line from now on.
    XtreamAPIClient(std::string_view server, std::string username, std::string password,
                    const URLSessionFactory& makeSession);

    [[nodiscard]] const std::string& server() const { return m_server; }
    [[nodiscard]] const std::string& username() const { return m_username; }
    [[nodiscard]] const std::string& password() const { return m_password; }
    /// A text that tells this account from every other and gives nothing of it away.
    [[nodiscard]] std::string accountMark() const;
    /// What every URL starts with.
    [[nodiscard]] const std::string& baseURL() const { return m_baseURL; }
    /// From the last `authenticate()`, a refused one included. Main thread.
    [[nodiscard]] const std::optional<XtreamUserInfo>& userInfo() const { return m_userInfo; }
    [[nodiscard]] const std::optional<XtreamServerInfo>& serverInfo() const { return m_serverInfo; }

    /// Raises XtreamError::authFailed when the server answers anything but `auth` 1.
    QCoro::Task<XtreamAuthResponse> authenticate();
    QCoro::Task<XtreamSeriesInfo> getSeriesInfo(std::int64_t seriesId);
    /// Empty when the reply has no listings.
    QCoro::Task<std::vector<XtreamEPGListing>> getEPGForStream(std::int64_t streamId);
    /// `action` is one of the three category actions. A body of fewer than 5 bytes is an empty list.
    QCoro::Task<std::vector<XtreamCategory>> getCategories(std::string action);
    /// The stream list of such rows, decoded while it arrives, in bounded memory: a row has at most
    /// 4 MiB. `onRows` is called on the transfer's thread, in the order of the list; when the task raises,
    /// whoever took the rows drops them. What `onRows` throws is raised too. Yields the number of rows. A
    /// body of fewer than 5 bytes is an empty list.
    ///
    /// For XtreamLiveStream, XtreamVodStream and XtreamSeriesItem.
    template<class Row> QCoro::Task<std::int64_t> fetchRows(std::function<void(std::vector<Row>&&)> onRows);
    /// The reply of `get_vod_info` as it came: it has no form that all providers keep to.
    QCoro::Task<std::string> getVodInfo(std::int64_t vodId);
    /// Addresses of the movie's external subtitle files, in the provider's order, wherever its detail record
    /// lists them. Never raises: without any, and on every failure, the list is empty, and the log says why.
    QCoro::Task<std::vector<std::string>> getSubtitleURLsForVOD(std::int64_t vodId);

    // URLs. Server, user name, password and ids stand in them as they are, without any encoding.
    [[nodiscard]] std::string getLiveStreamURL(std::int64_t streamId) const;
    [[nodiscard]] std::string getMovieStreamURL(std::int64_t streamId, std::string_view extension) const;
    [[nodiscard]] std::string getSeriesStreamURL(std::string_view episodeId,
                                                 std::string_view extension) const;
    /// The recording of a live stream from `start` on, cut down to the minute.
    [[nodiscard]] std::string getCatchupURL(std::int64_t streamId, Date start,
                                            std::int64_t durationMinutes) const;
    [[nodiscard]] std::string getEpgXMLURL() const;

    // Wire rows to catalogue items in the same order; a row without id or name yields none. Texts are
    // moved out of the rows, which are of no use afterwards.
    [[nodiscard]] std::vector<Channel> normalizeLiveStreams(std::span<XtreamLiveStream> rows,
                                                            const std::string& playlistId,
                                                            const CategoryMap& categoryMap) const;
    [[nodiscard]] std::vector<Channel> normalizeVodStreams(std::span<XtreamVodStream> rows,
                                                           const std::string& playlistId,
                                                           const CategoryMap& categoryMap) const;
    [[nodiscard]] std::vector<Channel> normalizeSeriesList(std::span<XtreamSeriesItem> rows,
                                                           const std::string& playlistId,
                                                           const CategoryMap& categoryMap) const;

private:
    /// The log-in form for an empty action.
    [[nodiscard]] std::string apiURL(std::string_view action = {}) const;
    [[nodiscard]] std::string mediaURL(std::string_view kind) const;
    /// `action` is for error texts only.
    template<class Reply> QCoro::Task<Reply> fetch(std::string url, std::string action);
    /// `detail` is the movie's detail record as it came. Any thread.
    [[nodiscard]] std::vector<std::string> subtitleURLsIn(std::string_view detail, std::int64_t vodId) const;
    /// A file that is no address of its own is the provider's. Any thread.
    [[nodiscard]] std::vector<std::string> extractSubtitleURLs(const SubtitleListing& listing) const;

    std::string m_server;
    std::string m_username;
    std::string m_password;
    std::string m_baseURL;
    URLSessionFactory m_makeSession;
    std::shared_ptr<URLSession> m_session;
    std::optional<XtreamUserInfo> m_userInfo;
    std::optional<XtreamServerInfo> m_serverInfo;
};

} // namespace ondavia
