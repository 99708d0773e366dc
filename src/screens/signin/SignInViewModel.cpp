#include "screens/signin/SignInViewModel.h"

#include "protocol/XtreamAPIClient.h"
#include "screens/signin/AccountLink.h"
#include "screens/texts/Texts.h"
#include "state/KeychainService.h"

#include <QPointer>

namespace ondavia {

namespace {

struct VerdictText final {
    QString text;
    ToastType type;
};

VerdictText textOf(AccountVerdict verdict) {
    switch (verdict) {
    case AccountVerdict::Accepted:
        return {textFor("signIn.accepted", "A conta funciona."), ToastType::success};
    case AccountVerdict::Expired:
        return {textFor("signIn.expired",
                        "O provedor aceita a conta, mas o prazo dela já passou. É provável que nada toque."),
                ToastType::warning};
    case AccountVerdict::Refused:
        return {
            textFor("signIn.refused", "O provedor recusou a conta. Verifica o utilizador e a palavra-passe."),
            ToastType::error};
    case AccountVerdict::NotThisProtocol:
        return {
            textFor(
                "signIn.notThisProtocol",
                "Este endereço responde, mas não é um provedor compatível. Verifica o endereço e a porta."),
            ToastType::error};
    case AccountVerdict::ServerFailure:
        return {textFor("signIn.serverFailure",
                        "O servidor do provedor está com problemas. Tenta novamente mais tarde."),
                ToastType::error};
    case AccountVerdict::Unreachable:
        return {textFor("signIn.unreachable",
                        "Ninguém responde neste endereço. Verifica o endereço, a porta e a tua ligação."),
                ToastType::error};
    case AccountVerdict::Untrusted:
        return {textFor("signIn.untrusted",
                        "A ligação cifrada com este servidor não é de confiança. Verifica o endereço."),
                ToastType::error};
    case AccountVerdict::BadAddress:
        break;
    }
    return {textFor("signIn.badAddress",
                    "Os dados não formam um endereço válido. Verifica se há espaços ou sinais a mais."),
            ToastType::error};
}

} // namespace

SignInViewModel::SignInViewModel(AppState& appState, const KeychainService& keychain,
                                 URLSessionFactory makeSession, std::function<void()> onSignedIn,
                                 QObject* parent, std::function<Date()> now)
    : QObject(parent)
    , m_appState(appState)
    , m_keychain(keychain)
    , m_makeSession(std::move(makeSession))
    , m_onSignedIn(std::move(onSignedIn))
    , m_now(std::move(now)) {}

void SignInViewModel::setServer(const QString& text) {
    if (const auto link = parseAccountLink(text.toStdString())) {
        setInput(QString::fromStdString(link->server), QString::fromStdString(link->username),
                 QString::fromStdString(link->password));
    } else {
        setInput(text, m_username, m_password);
    }
}

void SignInViewModel::setUsername(const QString& text) {
    setInput(m_server, text, m_password);
}

void SignInViewModel::setPassword(const QString& text) {
    setInput(m_server, m_username, text);
}

bool SignInViewModel::isComplete() const {
    return !m_server.trimmed().isEmpty() && !m_username.isEmpty() && !m_password.isEmpty();
}

bool SignInViewModel::lacksScheme() const {
    const QString address = m_server.trimmed();
    const bool looksWhole = address.contains(QLatin1Char('.')) || address.contains(QLatin1Char(':'));
    // While "http:" is being typed nothing lacks yet.
    return looksWhole && !hasWebScheme(address.toStdString()) &&
           !address.startsWith(QLatin1String("http"), Qt::CaseInsensitive);
}

bool SignInViewModel::remembers() const {
    return m_keychain.remembers();
}

void SignInViewModel::open() {
    setInput(QString::fromStdString(m_appState.server()), QString::fromStdString(m_appState.username()), {});
    setOpen(true);
}

void SignInViewModel::close() {
    setOpen(false);
    setInput({}, {}, {});
}

void SignInViewModel::addScheme() {
    if (lacksScheme()) {
        setInput(QStringLiteral("http://") + m_server.trimmed(), m_username, m_password);
    }
}

void SignInViewModel::test() {
    if (isComplete() && !m_isChecking) {
        setResult(true, {}, ToastType::info);
        // It ends by itself: it holds this object weakly, and its client.
        check(m_generation);
    }
}

void SignInViewModel::signIn() {
    if (!isComplete()) {
        return;
    }
    m_appState.saveCredentials(m_server.trimmed().toStdString(), m_username.toStdString(),
                               m_password.toStdString());
    close();
    m_onSignedIn();
}

void SignInViewModel::setInput(const QString& server, const QString& username, const QString& password) {
    if (server == m_server && username == m_username && password == m_password) {
        return;
    }
    m_server = server;
    m_username = username;
    m_password = password;
    ++m_generation;
    setResult(false, {}, ToastType::info);
    Q_EMIT inputChanged();
}

void SignInViewModel::setResult(bool isChecking, const QString& text, ToastType type) {
    m_isChecking = isChecking;
    m_resultText = text;
    m_resultType = type;
    Q_EMIT resultChanged();
}

void SignInViewModel::setOpen(bool open) {
    if (m_isOpen != open) {
        m_isOpen = open;
        Q_EMIT isOpenChanged();
    }
}

QCoro::Task<void> SignInViewModel::check(std::uint64_t generation) {
    const QPointer<SignInViewModel> self(this);
    const Date now = m_now();
    const AccountVerdict verdict = co_await checkAccount(
        std::make_shared<XtreamAPIClient>(m_server.toStdString(), m_username.toStdString(),
                                          m_password.toStdString(), m_makeSession),
        now);
    if (self && generation == m_generation) {
        const VerdictText result = textOf(verdict);
        setResult(false, result.text, result.type);
    }
}

} // namespace ondavia
