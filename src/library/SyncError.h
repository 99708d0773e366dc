#pragma once

#include <exception>
#include <string>

namespace ondavia {

/// Why a synchronisation ended without a catalogue.
class SyncError final : public std::exception {
public:
    enum class Case { noConnection, emptyResponse };

    explicit SyncError(Case errorCase);

    [[nodiscard]] Case errorCase() const { return m_case; }
    /// The description for the user, in the user's language.
    [[nodiscard]] const char* what() const noexcept override { return m_description.c_str(); }

private:
    Case m_case;
    std::string m_description;
};

/// A category list that names one id twice. No map from ids to names follows from it, so the run ends
/// before anything is published or written.
class DuplicateCategoryError final : public std::exception {
public:
    DuplicateCategoryError(const std::string& action, const std::string& categoryId);

    [[nodiscard]] const char* what() const noexcept override { return m_description.c_str(); }

private:
    std::string m_description;
};

} // namespace ondavia
