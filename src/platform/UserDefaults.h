#pragma once

#include "base/Date.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

/// The settings store: typed values under text keys. A value of another type counts as missing. On Linux
/// one JSON file of mode 0600, replaced atomically at each change and read anew when another process
/// changed it. Any thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;
    [[nodiscard]] virtual std::optional<std::string> stringForKey(std::string_view key) const = 0;
    /// 0 when missing.
    [[nodiscard]] virtual double doubleForKey(std::string_view key) const = 0;
    [[nodiscard]] virtual std::optional<Date> dateForKey(std::string_view key) const = 0;
    [[nodiscard]] virtual std::optional<std::vector<std::string>>
    stringArrayForKey(std::string_view key) const = 0;

    virtual void setString(std::string_view key, const std::string& value) = 0;
    virtual void setDouble(std::string_view key, double value) = 0;
    virtual void setDate(std::string_view key, Date value) = 0;
    virtual void setStringArray(std::string_view key, const std::vector<std::string>& value) = 0;
    virtual void removeObjectForKey(std::string_view key) = 0;
};

} // namespace ondavia
