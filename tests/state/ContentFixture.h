#pragma once

#include "SyncFixture.h"
#include "library/LibraryRefresh.h"
#include "screens/shell/ContentViewModel.h"

namespace ondavia::testing {

inline constexpr const char* lastSync = "ondavia_last_sync";
inline constexpr const char* lastGuideLoad = "ondavia_last_epg_load";
inline constexpr const char* liveOrder = "ondavia_live_cat_order";

inline std::string logInReply(const std::string& expiry, const std::string& connections = R"("2")") {
    return R"({"user_info":{"auth":1,"exp_date":)" + expiry + R"(,"max_connections":)" + connections +
           R"(},"server_info":{}})";
}

/// The root view's logic before a scripted provider, at a time that stands still.
class ContentViewModelTest : public SyncFixture {
protected:
    explicit ContentViewModelTest(const StoreOptions& options = {})
        : SyncFixture(options) {
        provider.script("", {body(logInReply("null"))});
    }

    GuideEnvironment guide() { return {*store, makeCurlURLSession, folder.path() / "cache", guideWorkers}; }

    void load() { resultOf(refresh.loadContent()); }
    /// Stored rows of all kinds, as a synchronisation `age` ago has left them, and a guide of this minute.
    void cacheCatalogue(std::chrono::microseconds age = std::chrono::minutes(1)) {
        storeEarlierCatalogue();
        Channel live;
        live.id = "main_l";
        live.type = "live";
        live.groupTitle = "News";
        store->mainContext().insert(live);
        live.id = "main_l2";
        live.groupTitle = "Art";
        store->mainContext().insert(live);
        store->mainContext().save();
        defaults.setStringArray(liveOrder, {"News", "Art"});
        defaults.setDate(lastSync, now - age);
        defaults.setDate(lastGuideLoad, now);
    }
    [[nodiscard]] bool logsIn() const { return provider.requestCount("") > 0; }
    /// Whether loading the cached catalogue starts a refresh, which then runs to its end.
    bool loadRefreshes() {
        scriptSmallCatalogue();
        provider.script("", {body(logInReply("null"))});
        load();
        scheduler.runPending();
        const Date before = *defaults.dateForKey(lastSync);
        // A refresh begins with a request, at once.
        if (waitForTransfers(std::chrono::milliseconds(0)) && !logsIn()) {
            return false;
        }
        EXPECT_TRUE(waitUntil([&] { return defaults.dateForKey(lastSync) != before || before == now; }));
        EXPECT_TRUE(waitUntil([&] { return appState.loadingMessage().empty(); }));
        return true;
    }

    Date now{std::chrono::seconds(1'700'000'000)};
    CountedThreads guideWorkers;
    LibraryRefresh refresh{environment(), guide(), [this] { return now; }};
    ContentViewModel content{appState, refresh};
};

} // namespace ondavia::testing
