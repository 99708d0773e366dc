#pragma once

#include "base/Date.h"
#include "entities/EPGProgram.h"
#include "platform/CountedThreads.h"
#include "platform/URLSession.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <qcoro/qcorotask.h>
#include <stop_token>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ondavia {

class LibraryStore;
class StoreContext;
class XtreamAPIClient;

/// What the guide's service works with. Everything referred to lives as long as the process, the workers
/// less long than the store.
struct GuideEnvironment final {
    LibraryStore& store;
    URLSessionFactory makeSession;
    /// Downloads wait here for their parser, in files without a name.
    std::filesystem::path cacheFolder;
    CountedThreads& workers;
    /// Whose guide `loadEPG` brings, if that is to be asked at the end: for somebody whose the store is no
    /// longer it stores nothing and raises StoreError.
    std::optional<std::string> owner = {};
    /// Stopped when the account that a guide is loaded for is in use no longer; the load fails then.
    std::stop_token account = {};
};

/// Titles of programmes by the channels' guide ids.
using CurrentTitles = std::unordered_map<std::string, std::string>;

/// The titles of what is on at `now`, by channel; of several on one channel, the one that began last. Empty
/// also when the store cannot be read. On the context's thread.
[[nodiscard]] CurrentTitles fetchCurrentTitles(StoreContext& guide, Date now);

/// The programme guide's store layer: fills the guide and answers what is on. Thin, made on the spot for
/// each use; its tasks go on when it is dropped. Main thread; the tasks resume there and do their work on
/// other threads. Nothing here logs anything.
///
/// Channels are named by the guide's id, `Channel::epgChannelId`.
class EPGService final {
public:
    explicit EPGService(GuideEnvironment environment)
        : m_environment(std::move(environment)) {}

    /// Replaces the whole guide by the XMLTV document at `xmlURL`, which may be gzipped. Readers see the
    /// present guide until the new one is there as a whole. A text that is no URL changes nothing and is no
    /// error; neither is a document that is malformed, cut or empty, or an HTTP error's: what could be read
    /// of it replaces the guide. Raises URLError for the transport, StoreError, and std::system_error when
    /// the download cannot be kept; the present guide stays then.
    QCoro::Task<void> loadEPG(std::string xmlURL);

    /// Adds the stream's short guide to the guide of `epgChannelId`, but for what is there already. Never
    /// raises: whatever fails, the guide stays as it is.
    QCoro::Task<void> loadEPGFromAPI(std::shared_ptr<XtreamAPIClient> client, std::int64_t streamId,
                                     std::string epgChannelId);

    /// What is on at `now`. Of several, any one. Absent also when the store cannot be read.
    [[nodiscard]] std::optional<EPGProgram> getCurrentProgram(std::string_view channelId,
                                                              Date now = currentDate()) const;

    /// What begins on the day of `date` in the device's time zone, by its start. Empty also when the store
    /// cannot be read.
    [[nodiscard]] std::vector<EPGProgram> getProgramsForChannel(std::string_view channelId, Date date) const;

    /// `fetchCurrentTitles` on the main thread.
    [[nodiscard]] CurrentTitles getCurrentTitles(Date now = currentDate()) const;

private:
    GuideEnvironment m_environment;
};

} // namespace ondavia
