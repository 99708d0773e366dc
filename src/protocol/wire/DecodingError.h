#pragma once

#include "base/Redaction.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ondavia {

/// Where a reply stopped making sense.
struct DecodingFailure final {
    /// Such as "get_vod_streams"; empty when unknown, or for the log-in.
    std::string action;
    /// 0-based row of a list.
    std::optional<std::int64_t> row;
    /// Within the row or reply, such as "episodes[2][0].id"; empty for the value as a whole.
    std::string keyPath;
    std::string expected;
    /// Kind of the value found with a short excerpt, secrets masked.
    std::string found;
};

/// A reply that isn't the JSON it should be. A reply is one whole: whatever was decoded from it before
/// the error is to be dropped. `what()` is one line without secrets.
class DecodingError final : public std::runtime_error {
public:
    explicit DecodingError(DecodingFailure failure);

    [[nodiscard]] const std::string& action() const { return m_failure->action; }
    [[nodiscard]] std::optional<std::int64_t> row() const { return m_failure->row; }
    [[nodiscard]] const std::string& keyPath() const { return m_failure->keyPath; }
    [[nodiscard]] const std::string& expected() const { return m_failure->expected; }
    [[nodiscard]] const std::string& found() const { return m_failure->found; }

private:
    /// Shared, so that copying the exception cannot throw.
    std::shared_ptr<const DecodingFailure> m_failure;
};

/// The first 40 bytes or so of `text` with "..." for the rest, secrets masked.
[[nodiscard]] std::string beginning(std::string_view text);

/// The first 40 bytes or so of `text` in quotation marks, secrets masked, on one line. `end` says whether
/// `text` is itself a piece of a longer one.
[[nodiscard]] std::string excerpt(std::string_view text, TextEnd end = TextEnd::Whole);

} // namespace ondavia
