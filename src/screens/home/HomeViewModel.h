#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <qqmlregistration.h>

namespace ondavia {

class AppState;

/// The first page: a welcome for who has no account yet, otherwise what the catalogue holds. Main thread.
class HomeViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool hasAccount READ hasAccount NOTIFY changed)
    Q_PROPERTY(bool hasCatalogue READ hasCatalogue NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    /// Live channels, films, series, in the user's way of writing numbers.
    Q_PROPERTY(QStringList totals READ totals NOTIFY changed)

public:
    /// `appState` must outlive the object.
    explicit HomeViewModel(const AppState& appState, QObject* parent = nullptr);

    [[nodiscard]] bool hasAccount() const;
    [[nodiscard]] bool hasCatalogue() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString message() const;
    [[nodiscard]] QStringList totals() const;

    Q_SIGNAL void changed();

private:
    const AppState& m_appState;
};

} // namespace ondavia
