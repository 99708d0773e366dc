#include "screens/FailureWindow.h"

#include "screens/Pages.h"
#include "screens/QmlModules.h"
#include "screens/shell/StartFailure.h"
#include "style/Texts.h"

#include <QQmlEngine>
#include <QQuickWindow>

namespace ondavia {

FailureWindow::FailureWindow(const std::exception& error, const std::string& language)
    : m_engine(std::make_unique<QQmlEngine>()) {
    provideScreens(*m_engine);
    installLanguage(language);
    const StartFailure failure = describeStartFailure(error);
    QQmlComponent page(m_engine.get(), pageAddress("FailureWindow.qml"));
    m_window = makePage<QQuickWindow>(page, {{QStringLiteral("heading"), failure.title},
                                             {QStringLiteral("advice"), failure.advice},
                                             {QStringLiteral("detail"), failure.detail}});
    connect(m_window.get(), SIGNAL(retryRequested()), this, SLOT(retry()));
}

FailureWindow::~FailureWindow() = default;

void FailureWindow::retry() {
    m_wantsRetry = true;
    m_window->close();
}

} // namespace ondavia
