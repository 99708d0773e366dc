#include "screens/signin/SignInViewModel.h"

#include "protocol/ServerAddress.h"
#include "screens/signin/AccountLink.h"
#include "state/AppState.h"
#include "state/KeychainService.h"
#include "style/Texts.h"

#include <QPointer>

#include <algorithm>

namespace ondavia {

namespace {

struct VerdictText final {
    QString text;
    NoticeKind::Kind kind;
};

VerdictText textOf(AccountVerdict verdict) {
    switch (verdict) {
    case AccountVerdict::Accepted:
        return {textFor("signIn.accepted", "A conta funciona."), NoticeKind::Success};
    case AccountVerdict::Expired:
        return {textFor("signIn.expired",
                        "O provedor aceita a conta, mas o prazo dela já passou. É provável que nada toque."),
                NoticeKind::Warning};
    case AccountVerdict::Refused:
        return {
            textFor("signIn.refused", "O provedor recusou a conta. Verifica o utilizador e a palavra-passe."),
            NoticeKind::Error};
    case AccountVerdict::NotThisProtocol:
        return {
            textFor(
                "signIn.notThisProtocol",
                "Este endereço responde, mas não é um provedor compatível. Verifica o endereço e a porta."),
            NoticeKind::Error};
    case AccountVerdict::ServerFailure:
        return {textFor("signIn.serverFailure",
                        "O servidor do provedor está com problemas. Tenta novamente mais tarde."),
                NoticeKind::Error};
    case AccountVerdict::Unreachable:
        return {textFor("signIn.unreachable",
                        "Ninguém responde neste endereço. Verifica o endereço, a porta e a tua ligação."),
                NoticeKind::Error};
    case AccountVerdict::Untrusted:
        return {textFor("signIn.untrusted",
                        "A ligação cifrada com este servidor não é de confiança. Verifica o endereço."),
                NoticeKind::Error};
    case AccountVerdict::NotAsked:
        return {textFor("signIn.notAsked", "A conta não pôde ser verificada agora. Tenta novamente."),
                NoticeKind::Error};
    case AccountVerdict::BadAddress:
        break;
    }
    return {textFor("signIn.badAddress",
                    "Os dados não formam um endereço válido. Verifica se há espaços ou sinais a mais."),
            NoticeKind::Error};
}

/// Whether the account may be good for all that a check found.
bool leavesOpen(AccountVerdict verdict) {
    switch (verdict) {
    case AccountVerdict::Expired:
    case AccountVerdict::ServerFailure:
    case AccountVerdict::Unreachable:
    case AccountVerdict::Untrusted:
    case AccountVerdict::NotAsked:
        return true;
    case AccountVerdict::Accepted:
    case AccountVerdict::Refused:
    case AccountVerdict::NotThisProtocol:
    case AccountVerdict::BadAddress:
        break;
    }
    return false;
}

/// How many characters one edit put in.
qsizetype insertedLength(const QString& before, const QString& after) {
    const qsizetype shorter = std::min(before.size(), after.size());
    qsizetype front = 0;
    while (front < shorter && before[front] == after[front]) {
        ++front;
    }
    qsizetype back = 0;
    while (back < shorter - front && before[before.size() - 1 - back] == after[after.size() - 1 - back]) {
        ++back;
    }
    return after.size() - front - back;
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
    setInput(text, m_username, m_password);
}

void SignInViewModel::setUsername(const QString& text) {
    setInput(m_server, text, m_password);
}

void SignInViewModel::setPassword(const QString& text) {
    setInput(m_server, m_username, text);
}

bool SignInViewModel::isComplete() const {
    // A link that stands in the field is read when a button is pressed.
    const bool isLink = parseAccountLink(m_server.toStdString()).has_value();
    return isLink || (!m_server.trimmed().isEmpty() && !m_username.isEmpty() && !m_password.isEmpty());
}

bool SignInViewModel::lacksScheme() const {
    const QString address = m_server.trimmed();
    const bool looksWhole = address.contains(QLatin1Char('.')) || address.contains(QLatin1Char(':'));
    // While "http:" is being typed nothing lacks yet.
    return looksWhole && !hasWebScheme(address.toStdString()) &&
           !address.startsWith(QLatin1String("http"), Qt::CaseInsensitive);
}

bool SignInViewModel::hasSchemeInCapitals() const {
    return ondavia::hasSchemeInCapitals(m_server.toStdString());
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

void SignInViewModel::editServer(const QString& text) {
    const bool isPasted = insertedLength(m_server, text) > 1;
    setServer(text);
    if (isPasted) {
        readLink();
    }
}

void SignInViewModel::readLink() {
    if (const auto link = parseAccountLink(m_server.toStdString())) {
        setInput(QString::fromStdString(link->server), QString::fromStdString(link->username),
                 QString::fromStdString(link->password));
    }
}

void SignInViewModel::addScheme() {
    if (lacksScheme()) {
        setInput(QStringLiteral("http://") + m_server.trimmed(), m_username, m_password);
    }
}

void SignInViewModel::test() {
    beginCheck(CheckPurpose::Test);
}

void SignInViewModel::signIn() {
    beginCheck(CheckPurpose::SignIn);
}

void SignInViewModel::saveAnyway() {
    if (m_canSaveAnyway) {
        save();
    }
}

void SignInViewModel::setInput(const QString& server, const QString& username, const QString& password) {
    if (server == m_server && username == m_username && password == m_password) {
        return;
    }
    m_server = server;
    m_username = username;
    m_password = password;
    ++m_generation;
    clearResult();
    Q_EMIT inputChanged();
}

void SignInViewModel::clearResult() {
    m_isChecking = false;
    m_resultText.clear();
    m_canSaveAnyway = false;
    Q_EMIT resultChanged();
}

void SignInViewModel::setOpen(bool open) {
    if (m_isOpen != open) {
        m_isOpen = open;
        Q_EMIT isOpenChanged();
    }
}

void SignInViewModel::beginCheck(CheckPurpose purpose) {
    readLink();
    if (isComplete() && !m_isChecking) {
        clearResult();
        m_isChecking = true;
        Q_EMIT resultChanged();
        // It ends by itself: it holds this object weakly.
        check(purpose, m_generation);
    }
}

QCoro::Task<void> SignInViewModel::check(CheckPurpose purpose, std::uint64_t generation) {
    const QPointer<SignInViewModel> self(this);
    TypedAccount account{m_server.toStdString(), m_username.toStdString(), m_password.toStdString()};
    const Date now = m_now();
    const AccountVerdict verdict = co_await checkAccount(std::move(account), m_makeSession, now);
    if (self && generation == m_generation) {
        finishCheck(purpose, verdict);
    }
}

void SignInViewModel::finishCheck(CheckPurpose purpose, AccountVerdict verdict) {
    if (purpose == CheckPurpose::SignIn && verdict == AccountVerdict::Accepted) {
        save();
        return;
    }
    const VerdictText result = textOf(verdict);
    m_isChecking = false;
    m_resultText = result.text;
    m_resultKind = result.kind;
    m_canSaveAnyway = purpose == CheckPurpose::SignIn && leavesOpen(verdict);
    Q_EMIT resultChanged();
}

void SignInViewModel::save() {
    m_appState.saveCredentials(m_server.trimmed().toStdString(), m_username.toStdString(),
                               m_password.toStdString());
    close();
    m_onSignedIn();
}

} // namespace ondavia
