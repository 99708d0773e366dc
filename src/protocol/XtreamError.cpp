#include "protocol/XtreamError.h"

#include "base/LocalizedText.h"

namespace ondavia {

XtreamError::XtreamError(Case kind, int statusCode, std::string description)
    : m_kind(kind)
    , m_statusCode(statusCode)
    , m_description(std::move(description)) {}

XtreamError XtreamError::httpError(int statusCode) {
    return {Case::httpError, statusCode, "Erro HTTP " + std::to_string(statusCode)};
}

XtreamError XtreamError::decodingError(const std::exception& error) {
    return {Case::decodingError, 0, std::string("Erro de dados: ") + error.what()};
}

XtreamError XtreamError::invalidURL() {
    return {Case::invalidURL, 0, localizedText("error.invalidURL", "URL invalido")};
}

XtreamError XtreamError::authFailed() {
    return {Case::authFailed, 0, localizedText("error.authFailed", "Autenticacao falhou")};
}

XtreamError XtreamError::expired() {
    return {Case::expired, 0, localizedText("error.accountExpired", "Conta expirada")};
}

} // namespace ondavia
