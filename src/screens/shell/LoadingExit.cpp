#include "screens/shell/LoadingExit.h"

#include "state/AppState.h"

namespace ondavia {

LoadingExit::LoadingExit(const AppState& appState, Scheduler& scheduler, std::function<void()> endLoad,
                         QObject* parent)
    : QObject(parent)
    , m_appState(appState)
    , m_scheduler(scheduler)
    , m_endLoad(std::move(endLoad)) {
    connect(&appState, &AppState::isLoadingChanged, this, &LoadingExit::loadingChanged);
    loadingChanged();
}

void LoadingExit::take() {
    if (m_isOffered) {
        m_endLoad();
    }
}

void LoadingExit::loadingChanged() {
    setOffered(false);
    m_timer = m_appState.isLoading() ? m_scheduler.once(secondsUntilOffered, [this] { setOffered(true); })
                                     : nullptr;
}

void LoadingExit::setOffered(bool offered) {
    if (m_isOffered != offered) {
        m_isOffered = offered;
        Q_EMIT isOfferedChanged();
    }
}

} // namespace ondavia
