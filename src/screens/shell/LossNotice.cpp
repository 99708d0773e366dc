#include "screens/shell/LossNotice.h"

#include "store/OpenReport.h"
#include "style/Texts.h"

#include <QStringList>

namespace ondavia {

namespace {

QStringList userLoss(const OpenReport& report) {
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
        sentences << textFor("loss.saved", "Registos recuperados: %L1 dele, %L2 da cópia de segurança.")
                         .arg(report.salvagedRows)
                         .arg(report.backupRows);
        sentences << textFor("loss.check", "Pode faltar algum, ou voltar um que tinhas apagado.");
    }
    if (report.damagedUserFile) {
        sentences << textFor("loss.kept", "O ficheiro danificado ficou guardado como %1.")
                         .arg(QString::fromStdString(report.damagedUserFile->filename().string()));
    }
    return sentences;
}

QStringList downloadLoss(const OpenReport& report) {
    QStringList sentences;
    for (const StoreFile file : report.rebuiltFiles) {
        sentences << (file == StoreFile::Guide
                          ? textFor("loss.guide",
                                    "O guia guardado estava danificado e volta a ser carregado.")
                          : textFor("loss.catalogue",
                                    "O catálogo guardado estava danificado e volta a ser carregado."));
    }
    return sentences;
}

} // namespace

QString lossNotice(const OpenReport& report) {
    return (userLoss(report) + downloadLoss(report)).join(QLatin1Char(' '));
}

} // namespace ondavia
