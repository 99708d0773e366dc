#include "screens/shell/StartFailure.h"

#include "base/Redaction.h"
#include "store/StoreError.h"
#include "style/Texts.h"

#include <optional>
#include <system_error>

namespace ondavia {
namespace {

/// The store's name for a failure of a file, whoever raised it; absent for any other failure.
std::optional<StoreFailure> failureOf(const std::exception& error) {
    if (const auto* storeError = dynamic_cast<const StoreError*>(&error)) {
        return storeError->failure();
    }
    if (const auto* systemError = dynamic_cast<const std::system_error*>(&error)) {
        return storeFailureForSystem(systemError->code().value());
    }
    return std::nullopt;
}

QString adviceFor(StoreFailure failure) {
    switch (failure) {
    case StoreFailure::Full:
        return textFor("start.full", "Não há espaço no disco. Liberta algum e tenta de novo.");
    case StoreFailure::NewerSchema:
        return textFor("start.newer", "Os teus dados foram escritos por uma versão mais recente da Ondavia. "
                                      "Instala essa versão.");
    case StoreFailure::Damaged:
        return textFor("start.damaged", "Os teus dados estão danificados, e outra Ondavia aberta não deixa "
                                        "recuperá-los. Fecha-a e tenta de novo.");
    case StoreFailure::Busy:
        return textFor("start.busy", "Outra Ondavia está a usar a biblioteca. Fecha-a e tenta de novo.");
    case StoreFailure::Inaccessible:
        return textFor("start.inaccessible",
                       "A pasta dos teus dados não pode ser lida ou escrita. Verifica as "
                       "permissões dela e tenta de novo.");
    case StoreFailure::NotOwner:
    case StoreFailure::Other:
        break;
    }
    return textFor("start.other", "Tenta de novo. Se não resultar, o texto abaixo diz o que aconteceu.");
}

} // namespace

StartFailure describeStartFailure(const std::exception& error) {
    const auto failure = failureOf(error);
    return {failure ? textFor("start.failed", "A Ondavia não consegue abrir a tua biblioteca")
                    : textFor("start.failedElsewhere", "A Ondavia não consegue arrancar"),
            adviceFor(failure.value_or(StoreFailure::Other)),
            QString::fromStdString(maskSecrets(error.what()))};
}

} // namespace ondavia
