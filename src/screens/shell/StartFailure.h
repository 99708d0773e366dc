#pragma once

#include <QString>

#include <exception>

namespace ondavia {

/// Why the application cannot start, for whoever sits before it.
struct StartFailure final {
    QString title;
    /// What can be done about it.
    QString advice;
    /// The error in its own words, without secrets.
    QString detail;
};

[[nodiscard]] StartFailure describeStartFailure(const std::exception& error);

} // namespace ondavia
