#include "screens/home/HomeViewModel.h"

#include "screens/texts/Texts.h"
#include "state/AppState.h"

#include <QLocale>

namespace ondavia {

HomeViewModel::HomeViewModel(const AppState& appState, QObject* parent)
    : QObject(parent)
    , m_appState(appState) {
    for (const auto signal : {&AppState::hasCredentialsChanged, &AppState::totalLiveChanged,
                              &AppState::totalMoviesChanged, &AppState::totalSeriesChanged}) {
        connect(&appState, signal, this, &HomeViewModel::changed);
    }
}

bool HomeViewModel::hasAccount() const {
    return m_appState.hasCredentials();
}

bool HomeViewModel::hasCatalogue() const {
    return hasAccount() && m_appState.totalLive() + m_appState.totalMovies() + m_appState.totalSeries() > 0;
}

QString HomeViewModel::title() const {
    if (!hasAccount()) {
        return textFor("home.noProvider", "Nenhum provedor associado");
    }
    return hasCatalogue() ? textFor("home.welcome", "O que vamos ver hoje?")
                          : textFor("home.noCatalogue", "O catálogo ainda está vazio");
}

QString HomeViewModel::message() const {
    if (!hasAccount()) {
        return textFor(
            "home.noProviderMessage",
            "Adiciona a conta do teu provedor para veres os teus canais de televisão e os teus filmes.");
    }
    return hasCatalogue()
               ? textFor("home.welcomeMessage", "O catálogo do teu provedor está pronto.")
               : textFor(
                     "home.noCatalogueMessage",
                     "Não foi possível carregar o catálogo do teu provedor. Verifica a conta e a ligação.");
}

QStringList HomeViewModel::totals() const {
    const QLocale locale;
    return {locale.toString(m_appState.totalLive()), locale.toString(m_appState.totalMovies()),
            locale.toString(m_appState.totalSeries())};
}

} // namespace ondavia
