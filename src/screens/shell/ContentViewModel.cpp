#include "screens/shell/ContentViewModel.h"

#include "library/LibraryRefresh.h"

namespace ondavia {

ContentViewModel::ContentViewModel(AppState& state, LibraryRefresh& refresh)
    : m_state(state)
    , m_refresh(refresh) {
    connect(&state, &AppState::isLoadingChanged, this, &ContentViewModel::isLoadingChanged);
    connect(&state, &AppState::loadingMessageChanged, this, &ContentViewModel::loadingMessageChanged);
    connect(&state, &AppState::toastMessageChanged, this, &ContentViewModel::toastChanged);
    connect(&state, &AppState::toastTypeChanged, this, &ContentViewModel::toastChanged);
    connect(&state, &AppState::hasCredentialsChanged, this, &ContentViewModel::hasCredentialsChanged);
    connect(&state, &AppState::selectedTabChanged, this, &ContentViewModel::selectedTabChanged);
    connect(&state, &AppState::storedAccountCame, this, [this] {
        if (m_hasStarted) {
            start();
        }
    });
}

bool ContentViewModel::isLoading() const {
    return m_state.isLoading();
}

QString ContentViewModel::loadingMessage() const {
    return QString::fromStdString(m_state.loadingMessage());
}

QVariant ContentViewModel::toastMessage() const {
    const auto& message = m_state.toastMessage();
    return message ? QVariant(QString::fromStdString(*message)) : QVariant();
}

NoticeKind::Kind ContentViewModel::toastKind() const {
    switch (m_state.toastType()) {
    case ToastType::success:
        return NoticeKind::Success;
    case ToastType::warning:
        return NoticeKind::Warning;
    case ToastType::error:
        return NoticeKind::Error;
    case ToastType::info:
        break;
    }
    return NoticeKind::Info;
}

bool ContentViewModel::hasCredentials() const {
    return m_state.hasCredentials();
}

ContentViewModel::Tab ContentViewModel::selectedTab() const {
    return static_cast<Tab>(m_state.selectedTab());
}

void ContentViewModel::setSelectedTab(Tab tab) {
    m_state.setSelectedTab(static_cast<AppTab>(tab));
}

void ContentViewModel::start() {
    m_hasStarted = true;
    if (hasCredentials()) {
        // It reports by itself what the user must know.
        m_refresh.loadContent();
    }
}

void ContentViewModel::signedIn() {
    start();
}

void ContentViewModel::leaveLoading() {
    m_refresh.leaveLoading();
}

void ContentViewModel::dismissToast() {
    m_state.setToastMessage(std::nullopt);
}

} // namespace ondavia
