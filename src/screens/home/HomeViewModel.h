#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <qqmlregistration.h>

#include <functional>

namespace ondavia {

class AppState;

/// What the first page leads to beyond its own reach.
struct HomeActions final {
    std::function<void()> addProvider;
    std::function<void()> load;
    std::function<void()> search;
};

/// The first page: a welcome for who has no account yet, otherwise what the catalogue holds. Main thread.
class HomeViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool hasAccount READ hasAccount NOTIFY changed)
    /// Whether there is an account is not known yet: the keyring has not answered.
    Q_PROPERTY(bool isAwaitingAccount READ isAwaitingAccount NOTIFY changed)
    Q_PROPERTY(bool hasCatalogue READ hasCatalogue NOTIFY changed)
    /// There is an account, no catalogue, and none on its way.
    Q_PROPERTY(bool lacksCatalogue READ lacksCatalogue NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    /// Live channels, films, series, in the interface language's way of writing numbers.
    Q_PROPERTY(QStringList totals READ totals NOTIFY changed)

public:
    /// `appState` must outlive the object.
    HomeViewModel(AppState& appState, HomeActions actions, QObject* parent = nullptr);

    [[nodiscard]] bool hasAccount() const;
    [[nodiscard]] bool isAwaitingAccount() const;
    [[nodiscard]] bool hasCatalogue() const;
    [[nodiscard]] bool lacksCatalogue() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString message() const;
    [[nodiscard]] QStringList totals() const;

    /// Leads to the sign-in step.
    Q_INVOKABLE void addProvider() { m_actions.addProvider(); }
    /// Loads the catalogue again.
    Q_INVOKABLE void load() { m_actions.load(); }
    Q_INVOKABLE void search() { m_actions.search(); }
    Q_INVOKABLE void openLive();
    Q_INVOKABLE void openMovies();
    Q_INVOKABLE void openSeries();

    Q_SIGNAL void changed();

private:
    AppState& m_appState;
    HomeActions m_actions;
};

} // namespace ondavia
