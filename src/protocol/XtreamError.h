#pragma once

#include <exception>
#include <string>

namespace ondavia {

/// What a provider's reply can be refused for. Failures of the transport and of the decoder are raised as
/// their own types.
class XtreamError final : public std::exception {
public:
    enum class Case { httpError, decodingError, invalidURL, authFailed, expired };

    [[nodiscard]] static XtreamError httpError(int statusCode);
    [[nodiscard]] static XtreamError decodingError(const std::exception& error);
    [[nodiscard]] static XtreamError invalidURL();
    [[nodiscard]] static XtreamError authFailed();
    [[nodiscard]] static XtreamError expired();

    [[nodiscard]] Case kind() const { return m_kind; }
    /// The HTTP status of `httpError`; 0 in the other cases.
    [[nodiscard]] int statusCode() const { return m_statusCode; }
    /// For the user, in the user's language.
    [[nodiscard]] const char* what() const noexcept override { return m_description.c_str(); }

private:
    XtreamError(Case kind, int statusCode, std::string description);

    Case m_kind;
    int m_statusCode;
    std::string m_description;
};

} // namespace ondavia
