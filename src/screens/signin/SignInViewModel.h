#pragma once

#include "platform/URLSession.h"
#include "screens/signin/AccountCheck.h"
#include "state/AppState.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <cstdint>
#include <functional>

namespace ondavia {

class KeychainService;

/// The sign-in step: collects server, user name and password, asks the provider about them when told to,
/// and hands them over. Main thread. No text of it ever holds the password but `password` itself.
class SignInViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    /// Writing a provider's whole link here fills all three.
    Q_PROPERTY(QString server READ server WRITE setServer NOTIFY inputChanged)
    Q_PROPERTY(QString username READ username WRITE setUsername NOTIFY inputChanged)
    Q_PROPERTY(QString password READ password WRITE setPassword NOTIFY inputChanged)
    /// None of the three is empty.
    Q_PROPERTY(bool isComplete READ isComplete NOTIFY inputChanged)
    /// The address looks whole but for its scheme, which `addScheme` puts in front.
    Q_PROPERTY(bool lacksScheme READ lacksScheme NOTIFY inputChanged)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY resultChanged)
    /// What the last test found, in words; empty before one and after the next change of an input.
    Q_PROPERTY(QString resultText READ resultText NOTIFY resultChanged)
    /// A `ToastType`.
    Q_PROPERTY(int resultType READ resultType NOTIFY resultChanged)
    /// Whether the account is still there at the next start.
    Q_PROPERTY(bool remembers READ remembers NOTIFY isOpenChanged)

public:
    /// All must outlive the object. `now` is the clock that an expiry is measured by.
    SignInViewModel(AppState& appState, const KeychainService& keychain, URLSessionFactory makeSession,
                    std::function<void()> onSignedIn, QObject* parent = nullptr,
                    std::function<Date()> now = currentDate);

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    [[nodiscard]] QString server() const { return m_server; }
    [[nodiscard]] QString username() const { return m_username; }
    [[nodiscard]] QString password() const { return m_password; }
    void setServer(const QString& text);
    void setUsername(const QString& text);
    void setPassword(const QString& text);
    [[nodiscard]] bool isComplete() const;
    [[nodiscard]] bool lacksScheme() const;
    [[nodiscard]] bool isChecking() const { return m_isChecking; }
    [[nodiscard]] QString resultText() const { return m_resultText; }
    [[nodiscard]] int resultType() const { return static_cast<int>(m_resultType); }
    [[nodiscard]] bool remembers() const;

    /// Shows the step with the account that there is, if any, but without its password.
    Q_INVOKABLE void open();
    /// Leaves the step; what was typed is forgotten.
    Q_INVOKABLE void close();
    Q_INVOKABLE void addScheme();
    /// Asks the provider. An input that changes meanwhile makes the answer void.
    Q_INVOKABLE void test();
    /// Saves the account, leaves the step and has the catalogue loaded.
    Q_INVOKABLE void signIn();

    Q_SIGNAL void isOpenChanged();
    Q_SIGNAL void inputChanged();
    Q_SIGNAL void resultChanged();

private:
    void setInput(const QString& server, const QString& username, const QString& password);
    void setResult(bool isChecking, const QString& text, ToastType type);
    void setOpen(bool open);
    QCoro::Task<void> check(std::uint64_t generation);

    AppState& m_appState;
    const KeychainService& m_keychain;
    URLSessionFactory m_makeSession;
    std::function<void()> m_onSignedIn;
    std::function<Date()> m_now;
    bool m_isOpen = false;
    QString m_server;
    QString m_username;
    QString m_password;
    bool m_isChecking = false;
    QString m_resultText;
    ToastType m_resultType = ToastType::info;
    /// Grows with every change of an input: an answer to an older question is dropped.
    std::uint64_t m_generation = 0;
};

} // namespace ondavia
