#include "style/Texts.h"

#include "base/AppLogger.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <vector>

namespace ondavia {

namespace {

/// How numbers are written in a language: as where the user lives, if that is spoken there.
QLocale localeFor(const std::string& language) {
    const QLocale own = QLocale::system();
    const QLocale spoken(QString::fromStdString(language));
    if (own.language() == spoken.language()) {
        return own;
    }
    // Portuguese alone would mean Brazil's.
    return spoken.language() == QLocale::Portuguese ? QLocale(QLocale::Portuguese, QLocale::Portugal)
                                                    : spoken;
}

} // namespace

QString Texts::get(const QString& key, const QString& defaultText) const {
    return textFor(key.toStdString(), defaultText.toStdString());
}

QString textFor(std::string_view key, std::string_view defaultText) {
    return QString::fromStdString(localizedText(key, defaultText));
}

TextCatalogue readTextCatalogue(const std::string& languageCode) {
    QFile file(QStringLiteral(":/ondavia/texts/%1.json").arg(QString::fromStdString(languageCode)));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QJsonParseError problem;
    const QJsonObject entries = QJsonDocument::fromJson(file.readAll(), &problem).object();
    if (problem.error != QJsonParseError::NoError) {
        AppLogger::general.error("The texts of language %{public}s are broken: %{public}s",
                                 {languageCode, problem.errorString().toStdString()});
    }
    TextCatalogue catalogue;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        catalogue.emplace(entry.key().toStdString(), entry.value().toString().toStdString());
    }
    return catalogue;
}

void installLanguage(const std::string& wanted) {
    std::vector<std::string> preferred;
    if (!wanted.empty()) {
        preferred.push_back(wanted);
    } else {
        for (const QString& locale : QLocale::system().uiLanguages()) {
            preferred.push_back(locale.toStdString());
        }
    }
    // Portuguese has no catalogue: its texts are the defaults, and what a reader of any other language gets.
    std::string language = chooseLanguage(preferred, {"pt", "en", "es", "fr"});
    if (language.empty()) {
        language = "pt";
    }
    installTextCatalogue(readTextCatalogue(language));
    QLocale::setDefault(localeFor(language));
}

} // namespace ondavia
