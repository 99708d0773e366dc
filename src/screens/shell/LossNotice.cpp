#include "screens/shell/LossNotice.h"

#include "store/OpenReport.h"
#include "style/Texts.h"

#include <QStringList>

namespace ondavia {

QString lossNotice(const OpenReport& report) {
    if (!report.isUserFileRestored) {
        return {};
    }
    QStringList sentences;
    sentences << (report.damagedUserFile
                      ? textFor("loss.damaged", "O ficheiro dos favoritos e do histórico estava danificado.")
                      : textFor("loss.gone", "O ficheiro dos favoritos e do histórico desapareceu."));
    if (report.salvagedRows + report.backupRows == 0) {
        sentences << textFor("loss.nothingSaved", "Não foi possível recuperar nada.");
    } else {
        sentences << textFor("loss.saved", "Registos recuperados: %1 dele, %2 da cópia de segurança.")
                         .arg(report.salvagedRows)
                         .arg(report.backupRows);
        sentences << textFor("loss.check", "Pode faltar algum, ou voltar um que tinhas apagado.");
    }
    if (report.damagedUserFile) {
        sentences << textFor("loss.kept", "O ficheiro danificado ficou guardado como %1.")
                         .arg(QString::fromStdString(report.damagedUserFile->filename().string()));
    }
    return sentences.join(QLatin1Char(' '));
}

} // namespace ondavia
