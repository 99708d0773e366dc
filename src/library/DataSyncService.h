#pragma once

#include <qcoro/qcorotask.h>

#include <cstdint>
#include <memory>
#include <stop_token>

namespace ondavia {

class AppState;
class CatalogueSummary;
class LibraryStore;
class NetworkMonitor;
class Scheduler;
class UserDefaults;
class XtreamAPIClient;

/// What a synchronisation works with besides its client; all of it must outlive the run.
struct SyncEnvironment final {
    LibraryStore& store;
    CatalogueSummary& catalogue;
    AppState& appState;
    UserDefaults& defaults;
    const NetworkMonitor& network;
    Scheduler& scheduler;
    /// Stopped when the account that the run is for is in use no longer, or nobody waits for the run: it
    /// then ends as soon as it can, and shows and stores nothing any more.
    std::stop_token account = {};
};

/// Sets the totals of the state to the numbers of stored rows, if there are any; whether there are. Rows
/// that cannot be read count as none. Main thread.
bool publishStoredTotals(const SyncEnvironment& environment);

/// Brings the provider's whole catalogue into the store: six lists are fetched at once, normalised, and
/// the table of channels is replaced as a whole. Publishes categories and totals on `AppState` and keeps
/// the provider's category order in the settings. It neither authenticates nor writes the time of the
/// synchronisation: its caller does both.
///
/// One object a run, kept until the run has ended; main thread. Decoding, normalising and writing happen
/// on the pool while the lists arrive, into rows that nobody sees before the commit.
class DataSyncService final {
public:
    static constexpr const char* liveOrderKey = "ondavia_live_cat_order";
    static constexpr const char* vodOrderKey = "ondavia_vod_cat_order";
    static constexpr const char* seriesOrderKey = "ondavia_series_cat_order";

    DataSyncService(std::shared_ptr<XtreamAPIClient> client, SyncEnvironment environment);

    /// The run. Raises SyncError, DuplicateCategoryError or StoreError, and std::system_error when the
    /// account is in use no longer; the earlier catalogue stays then. Once the new one is in its place, only
    /// another owner of the store still ends the run.
    /// A requested stop ends the waits between attempts, not the attempts.
    QCoro::Task<void> syncAll(std::stop_token stop = {});

private:
    struct Run;

    void useCachedCatalogue();
    QCoro::Task<std::shared_ptr<Run>> beginRun(std::stop_token stop);
    QCoro::Task<void> carryOut(std::shared_ptr<Run> run);
    QCoro::Task<void> download(std::shared_ptr<Run> run);
    void publishCategories(const Run& run);
    void warnAboutEmptyLists(const Run& run);
    QCoro::Task<std::int64_t> writeCatalogue(std::shared_ptr<Run> run);
    void requireAccount() const;
    QCoro::Task<void> updatePlaylist(std::int64_t channelCount);

    std::shared_ptr<XtreamAPIClient> m_client;
    SyncEnvironment m_environment;
};

} // namespace ondavia
