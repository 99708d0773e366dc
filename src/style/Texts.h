#pragma once

#include "base/LocalizedText.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <string>

namespace ondavia {

/// The look-up of user-visible texts for QML; key and default stand together there too.
class Texts final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    Q_INVOKABLE [[nodiscard]] QString get(const QString& key, const QString& defaultText) const;
};

/// The look-up for view-models.
[[nodiscard]] QString textFor(std::string_view key, std::string_view defaultText);

/// The catalogue that the application carries for a language code; empty for one that it does not have.
[[nodiscard]] TextCatalogue readTextCatalogue(const std::string& languageCode);

/// Installs the texts of the wanted language, or of the first one of the user's locale that is there when
/// `wanted` is empty, and has numbers written as that language does. Before the first screen.
void installLanguage(const std::string& wanted);

} // namespace ondavia
