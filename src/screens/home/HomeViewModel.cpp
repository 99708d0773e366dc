#include "screens/home/HomeViewModel.h"

#include "state/AppState.h"
#include "style/Texts.h"

#include <QLocale>

namespace ondavia {

HomeViewModel::HomeViewModel(AppState& appState, HomeActions actions, QObject* parent)
    : QObject(parent)
    , m_appState(appState)
    , m_actions(std::move(actions)) {
    for (const auto signal :
         {&AppState::hasCredentialsChanged, &AppState::isAwaitingAccountChanged, &AppState::isLoadingChanged,
          &AppState::totalLiveChanged, &AppState::totalMoviesChanged, &AppState::totalSeriesChanged}) {
        connect(&appState, signal, this, &HomeViewModel::changed);
    }
}

void HomeViewModel::openLive() {
    m_appState.setSelectedTab(AppTab::live);
}

void HomeViewModel::openMovies() {
    m_appState.setSelectedTab(AppTab::movies);
}

void HomeViewModel::openSeries() {
    m_appState.setSelectedTab(AppTab::series);
}

bool HomeViewModel::hasAccount() const {
    return m_appState.hasCredentials();
}

bool HomeViewModel::isAwaitingAccount() const {
    return !hasAccount() && m_appState.isAwaitingAccount();
}

bool HomeViewModel::hasCatalogue() const {
    return hasAccount() && m_appState.totalLive() + m_appState.totalMovies() + m_appState.totalSeries() > 0;
}

bool HomeViewModel::lacksCatalogue() const {
    return hasAccount() && !hasCatalogue() && !m_appState.isLoading();
}

QString HomeViewModel::title() const {
    if (isAwaitingAccount()) {
        return textFor("home.awaitingAccount", "A procurar a tua conta...");
    }
    if (!hasAccount()) {
        return textFor("home.noProvider", "Nenhum provedor associado");
    }
    return lacksCatalogue() ? textFor("home.noCatalogue", "O catálogo ainda está vazio")
                            : textFor("home.welcome", "O que vamos ver hoje?");
}

QString HomeViewModel::message() const {
    if (isAwaitingAccount()) {
        return textFor("home.awaitingAccountMessage",
                       "O porta-chaves deste sistema ainda não respondeu. Pode estar à espera que o "
                       "desbloqueies.");
    }
    if (!hasAccount()) {
        return textFor(
            "home.noProviderMessage",
            "Adiciona a conta do teu provedor para veres os teus canais de televisão e os teus filmes.");
    }
    if (lacksCatalogue()) {
        return textFor("home.noCatalogueMessage",
                       "O catálogo do teu provedor ainda não foi carregado. Tenta novamente, ou verifica a "
                       "conta e a ligação.");
    }
    return hasCatalogue() ? textFor("home.welcomeMessage", "O catálogo do teu provedor está pronto.")
                          : textFor("home.loadingMessage", "O catálogo do teu provedor está a caminho.");
}

QStringList HomeViewModel::totals() const {
    const QLocale locale;
    return {locale.toString(m_appState.totalLive()), locale.toString(m_appState.totalMovies()),
            locale.toString(m_appState.totalSeries())};
}

} // namespace ondavia
