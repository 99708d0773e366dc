#pragma once

#include "state/AppState.h"
#include "style/NoticeKind.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <qqmlregistration.h>

namespace ondavia {

class LibraryRefresh;

/// What the root view shows over its pages, and when it has the library loaded. Main thread.
class ContentViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(QString loadingMessage READ loadingMessage NOTIFY loadingMessageChanged)
    /// A text, which may be empty; undefined when there is no toast.
    Q_PROPERTY(QVariant toastMessage READ toastMessage NOTIFY toastChanged)
    /// A `NoticeKind::Kind`.
    Q_PROPERTY(int toastKind READ toastKind NOTIFY toastChanged)
    Q_PROPERTY(bool hasCredentials READ hasCredentials NOTIFY hasCredentialsChanged)
    Q_PROPERTY(Tab selectedTab READ selectedTab WRITE setSelectedTab NOTIFY selectedTabChanged)

public:
    /// The tabs as QML can name them: with capital letters.
    enum Tab {
        Home = static_cast<int>(AppTab::home),
        Live = static_cast<int>(AppTab::live),
        Movies = static_cast<int>(AppTab::movies),
        Series = static_cast<int>(AppTab::series),
        Favorites = static_cast<int>(AppTab::favorites)
    };
    Q_ENUM(Tab)

    /// Both must outlive the object.
    ContentViewModel(AppState& state, LibraryRefresh& refresh);

    [[nodiscard]] bool isLoading() const;
    [[nodiscard]] QString loadingMessage() const;
    [[nodiscard]] QVariant toastMessage() const;
    [[nodiscard]] NoticeKind::Kind toastKind() const;
    [[nodiscard]] bool hasCredentials() const;
    [[nodiscard]] Tab selectedTab() const;
    void setSelectedTab(Tab tab);

    /// The first appearance of the root view: loads when there is an account, now or as soon as the
    /// keyring brings it.
    Q_INVOKABLE void start();
    /// The sign-in step has saved an account: loads as at a start with a stored one.
    Q_INVOKABLE void signedIn();
    /// Ends the load that the user waits for, and lowers the overlay; what was there stays.
    void leaveLoading();
    /// The toast's time is over.
    Q_INVOKABLE void dismissToast();

    Q_SIGNAL void isLoadingChanged();
    Q_SIGNAL void loadingMessageChanged();
    Q_SIGNAL void toastChanged();
    Q_SIGNAL void hasCredentialsChanged();
    Q_SIGNAL void selectedTabChanged();

private:
    AppState& m_state;
    LibraryRefresh& m_refresh;
    bool m_hasStarted = false;
};

} // namespace ondavia
