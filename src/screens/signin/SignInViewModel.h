#pragma once

#include "platform/URLSession.h"
#include "screens/signin/AccountCheck.h"
#include "style/NoticeKind.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <cstdint>
#include <functional>

namespace ondavia {

class AppState;
class KeychainService;

/// The sign-in step: collects server, user name and password, asks the provider about them, and hands them
/// over. An account that the provider refuses, or an address where no provider is, keeps the step open;
/// where the provider could not be asked, or says that the account's term is over, the account can be saved
/// all the same. Main thread. No text of it ever holds the password but `password` itself.
class SignInViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    Q_PROPERTY(QString server READ server WRITE setServer NOTIFY inputChanged)
    Q_PROPERTY(QString username READ username WRITE setUsername NOTIFY inputChanged)
    Q_PROPERTY(QString password READ password WRITE setPassword NOTIFY inputChanged)
    /// None of the three is empty.
    Q_PROPERTY(bool isComplete READ isComplete NOTIFY inputChanged)
    /// The address looks whole but for its scheme, which `addScheme` puts in front.
    Q_PROPERTY(bool lacksScheme READ lacksScheme NOTIFY inputChanged)
    /// The address begins with a scheme that is not taken for one.
    Q_PROPERTY(bool hasSchemeInCapitals READ hasSchemeInCapitals NOTIFY inputChanged)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY resultChanged)
    /// What the last check found, in words; empty before one and after the next change of an input.
    Q_PROPERTY(QString resultText READ resultText NOTIFY resultChanged)
    /// A `NoticeKind::Kind`.
    Q_PROPERTY(int resultKind READ resultKind NOTIFY resultChanged)
    /// The last check was meant to sign in, and left open whether the account is any good.
    Q_PROPERTY(bool canSaveAnyway READ canSaveAnyway NOTIFY resultChanged)
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
    [[nodiscard]] bool hasSchemeInCapitals() const;
    [[nodiscard]] bool isChecking() const { return m_isChecking; }
    [[nodiscard]] QString resultText() const { return m_resultText; }
    [[nodiscard]] NoticeKind::Kind resultKind() const { return m_resultKind; }
    [[nodiscard]] bool canSaveAnyway() const { return m_canSaveAnyway; }
    [[nodiscard]] bool remembers() const;

    /// Shows the step with the account that there is, if any, but without its password.
    Q_INVOKABLE void open();
    /// Leaves the step; what was typed is forgotten.
    Q_INVOKABLE void close();
    /// The text of the server's field after an edit. A provider's whole link that came at once, as by
    /// pasting, fills all three fields; one that is being typed stays as it is.
    Q_INVOKABLE void editServer(const QString& text);
    /// The server's field is left: a link in it fills all three fields.
    Q_INVOKABLE void readLink();
    Q_INVOKABLE void addScheme();
    /// Asks the provider. An input that changes meanwhile makes the answer void, here and below.
    Q_INVOKABLE void test();
    /// Asks the provider; once it has accepted the account, saves it, leaves the step and has the catalogue
    /// loaded.
    Q_INVOKABLE void signIn();
    /// Does so without asking, where `canSaveAnyway`.
    Q_INVOKABLE void saveAnyway();

    Q_SIGNAL void isOpenChanged();
    Q_SIGNAL void inputChanged();
    Q_SIGNAL void resultChanged();

private:
    enum class CheckPurpose { Test, SignIn };

    void setInput(const QString& server, const QString& username, const QString& password);
    void clearResult();
    void setOpen(bool open);
    void beginCheck(CheckPurpose purpose);
    QCoro::Task<void> check(CheckPurpose purpose, std::uint64_t generation);
    void finishCheck(CheckPurpose purpose, AccountVerdict verdict);
    void save();

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
    NoticeKind::Kind m_resultKind = NoticeKind::Info;
    bool m_canSaveAnyway = false;
    /// Grows with every change of an input: an answer to an older question is dropped.
    std::uint64_t m_generation = 0;
};

} // namespace ondavia
