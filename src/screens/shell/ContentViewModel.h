#pragma once

#include "base/Date.h"
#include "guide/EPGService.h"
#include "library/DataSyncService.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <qcoro/qcorotask.h>
#include <qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

struct CategoryItem;

/// The logic of the root view: whether the start shows cached data at once or blocks on a full load,
/// whether a refresh is due, and what the user sees while that happens and when it fails. Nothing is
/// raised: failures become a toast, or a log line where the user need not know. Main thread.
class ContentViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(QString loadingMessage READ loadingMessage NOTIFY loadingMessageChanged)
    /// A text, which may be empty; undefined when there is no toast.
    Q_PROPERTY(QVariant toastMessage READ toastMessage NOTIFY toastChanged)
    /// A `ToastType`.
    Q_PROPERTY(int toastType READ toastType NOTIFY toastChanged)
    Q_PROPERTY(bool hasCredentials READ hasCredentials NOTIFY hasCredentialsChanged)
    /// An `AppTab`.
    Q_PROPERTY(int selectedTab READ selectedTab WRITE setSelectedTab NOTIFY selectedTabChanged)
    Q_PROPERTY(bool presentsPlayer READ presentsPlayer NOTIFY presentsPlayerChanged)

public:
    /// What the environments refer to must outlive the object. `now` is the clock that intervals are
    /// measured by.
    ContentViewModel(SyncEnvironment environment, GuideEnvironment guide,
                     std::function<Date()> now = currentDate);

    [[nodiscard]] bool isLoading() const;
    [[nodiscard]] QString loadingMessage() const;
    [[nodiscard]] QVariant toastMessage() const;
    [[nodiscard]] int toastType() const;
    [[nodiscard]] bool hasCredentials() const;
    [[nodiscard]] int selectedTab() const;
    void setSelectedTab(int tab);
    [[nodiscard]] bool presentsPlayer() const;

    /// The first appearance of the root view: loads when there is an account.
    Q_INVOKABLE void start();
    /// The sign-in step has saved an account: loads as at a start with a stored one.
    Q_INVOKABLE void signedIn();
    /// The toast's time is over.
    Q_INVOKABLE void dismissToast();
    Q_INVOKABLE void playerDismissed();

    QCoro::Task<void> loadContent();
    QCoro::Task<void> performSync(bool showLoading);
    QCoro::Task<void> backgroundSync();
    QCoro::Task<void> loadEPGIfNeeded(std::shared_ptr<XtreamAPIClient> client);

    Q_SIGNAL void isLoadingChanged();
    Q_SIGNAL void loadingMessageChanged();
    Q_SIGNAL void toastChanged();
    Q_SIGNAL void hasCredentialsChanged();
    Q_SIGNAL void selectedTabChanged();
    Q_SIGNAL void presentsPlayerChanged();

private:
    [[nodiscard]] bool isRefreshDue() const;
    void runLater(std::function<QCoro::Task<void>()> task);
    void loadCategoriesFromCache();
    void endLoading(bool showLoading);

    SyncEnvironment m_environment;
    GuideEnvironment m_guide;
    std::function<Date()> m_now;
};

/// The category rows for the names of a stored catalogue: in the saved order, without the names that it
/// does not hold; in plain ascending order when none is saved.
[[nodiscard]] std::vector<CategoryItem>
orderedCategories(const std::vector<std::string>& groupTitles,
                  const std::optional<std::vector<std::string>>& savedOrder);

} // namespace ondavia
