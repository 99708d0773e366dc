#include "app/QtMessages.h"

#include "base/AppLogger.h"

#include <QtGlobal>

namespace ondavia {

void routeQtMessages() {
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& message) {
        const std::string text = message.toStdString();
        if (type == QtDebugMsg || type == QtInfoMsg) {
            AppLogger::general.debug("Qt: %s", {text});
        } else {
            AppLogger::general.error("Qt: %s", {text});
        }
    });
}

} // namespace ondavia
