#pragma once

#include <QQmlComponent>
#include <QUrl>
#include <QVariantMap>

#include <memory>
#include <stdexcept>

namespace ondavia {

[[nodiscard]] inline QUrl pageAddress(const char* name) {
    return {QStringLiteral("qrc:/qt/qml/Ondavia/Shell/") + QLatin1String(name)};
}

/// What a page of the shell makes, in the caller's hands. Raises std::runtime_error.
template<class Type> std::unique_ptr<Type> makePage(QQmlComponent& page, const QVariantMap& properties) {
    std::unique_ptr<QObject> object(page.createWithInitialProperties(properties));
    if (qobject_cast<Type*>(object.get()) == nullptr) {
        throw std::runtime_error("the window cannot be opened: " + page.errorString().toStdString());
    }
    return std::unique_ptr<Type>(static_cast<Type*>(object.release()));
}

} // namespace ondavia
