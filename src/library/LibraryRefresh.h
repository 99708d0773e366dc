#pragma once

#include "base/Date.h"
#include "guide/EPGService.h"
#include "library/DataSyncService.h"

#include <QObject>
#include <qcoro/qcorotask.h>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace ondavia {

struct CategoryItem;
struct XtreamAuthResponse;

/// Brings catalogue and guide up to date and keeps the times of that: what a start or a sign-in loads, what
/// is due, and what somebody asks for. What it does for an account ends with that account: as soon as the
/// state or another process has changed to another one or to none, nothing of it is shown or stored any
/// more. Main thread.
class LibraryRefresh final : public QObject {
    Q_OBJECT

public:
    /// What the environments refer to must outlive the object. `now` is the clock that intervals are
    /// measured by.
    LibraryRefresh(SyncEnvironment environment, GuideEnvironment guide,
                   std::function<Date()> now = currentDate);
    ~LibraryRefresh() override;

    /// Shows cached rows at once, and has in the background what is due; without rows, loads them behind the
    /// overlay. Like the next three it raises nothing: failures become a toast, or a log line where the user
    /// need not know.
    QCoro::Task<void> loadContent();
    /// Logs in and synchronises where the user waits for it.
    QCoro::Task<void> performSync(bool showLoading);
    /// Logs in and synchronises without a word, then sees to the guide.
    QCoro::Task<void> backgroundSync();
    QCoro::Task<void> loadEPGIfNeeded(std::shared_ptr<XtreamAPIClient> client);
    /// Ends the load behind the overlay and lowers that; what was there stays, unless the new catalogue has
    /// just taken its place. Without one, does nothing.
    void leaveLoading();

    /// Synchronises with a client that has logged in, and keeps the time. Raises what
    /// `DataSyncService::syncAll` raises.
    QCoro::Task<void> synchronise(std::shared_ptr<XtreamAPIClient> client);
    /// Loads the guide, due or not, and keeps the time. Raises what `EPGService::loadEPG` raises.
    QCoro::Task<void> loadGuide(std::shared_ptr<XtreamAPIClient> client);

    /// Puts what a log-in tells into the state. False, with a toast, for an account that is not accepted.
    bool takeAccount(const XtreamAuthResponse& reply);

    /// Ends what is under way for the account, deletes every row of the library and signs out. The rows
    /// cannot come back, by whatever process. Raises StoreError when they could not all be deleted; the
    /// account is gone all the same.
    void signOut();

    /// Ends what is under way; nothing may be asked for afterwards. For the end of the process.
    void end();

private:
    [[nodiscard]] bool isRefreshDue() const;
    void runLater(std::function<QCoro::Task<void>()> task);
    void loadCategoriesFromCache();
    void lowerOverlay();
    void claimLibrary();
    void forgetDamagedGuide();
    [[nodiscard]] bool wasSignedOutElsewhere() const;
    void changeAccount();
    void abandonRuns();

    SyncEnvironment m_environment;
    GuideEnvironment m_guide;
    std::function<Date()> m_now;
    /// Stopped when the account changes or the first load is left, and a new one then.
    std::stop_source m_account;
    bool m_showsOverlay = false;
};

/// The category rows for the names of a stored catalogue: in the saved order, without the names that it
/// does not hold; in plain ascending order when none is saved.
[[nodiscard]] std::vector<CategoryItem>
orderedCategories(const std::vector<std::string>& groupTitles,
                  const std::optional<std::vector<std::string>>& savedOrder);

} // namespace ondavia
