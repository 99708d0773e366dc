#include "library/SyncError.h"

#include "base/LocalizedText.h"
#include "protocol/wire/DecodingError.h"

namespace ondavia {
namespace {

std::string description(SyncError::Case errorCase) {
    switch (errorCase) {
    case SyncError::Case::noConnection:
        return localizedText("error.noConnection", "Sem ligacao a internet");
    case SyncError::Case::emptyResponse:
        break;
    }
    return localizedText("error.emptyResponse",
                         "Servidor devolveu resposta vazia — catalogo anterior preservado");
}

} // namespace

SyncError::SyncError(Case errorCase)
    : m_case(errorCase)
    , m_description(description(errorCase)) {}

DuplicateCategoryError::DuplicateCategoryError(const std::string& action, const std::string& categoryId)
    : m_description(action + ": the category id " + excerpt(categoryId) + " stands twice") {}

} // namespace ondavia
