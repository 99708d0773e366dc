#pragma once

#include "platform/UserDefaults.h"
#include "platform/linux/JsonFile.h"

#include <mutex>

namespace ondavia {

/// The settings store as one JSON object in a file of mode 0600. Each change replaces the file
/// atomically, under a lock that other processes respect; what another process wrote is read anew before
/// each answer. A change that cannot be written is told by an error line and holds for this run. Dates are
/// seconds since 1970 under a key of their own type: {"date": seconds}.
class JsonUserDefaults final : public UserDefaults {
public:
    explicit JsonUserDefaults(std::filesystem::path file);

    [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const override;
    [[nodiscard]] double doubleForKey(std::string_view key) const override;
    [[nodiscard]] std::optional<Date> dateForKey(std::string_view key) const override;
    [[nodiscard]] std::optional<std::vector<std::string>>
    stringArrayForKey(std::string_view key) const override;

    void setString(std::string_view key, const std::string& value) override;
    void setDouble(std::string_view key, double value) override;
    void setDate(std::string_view key, Date value) override;
    void setStringArray(std::string_view key, const std::vector<std::string>& value) override;
    void removeObjectForKey(std::string_view key) override;

private:
    [[nodiscard]] QJsonValue value(std::string_view key) const;
    void change(const std::function<void(QJsonObject&)>& edit);
    void readIfChanged() const;
    void read() const;

    mutable std::mutex m_mutex;
    JsonFile m_file;
    mutable QJsonObject m_values;
    mutable std::pair<std::uint64_t, std::int64_t> m_stamp{};
    /// The file is there and cannot be opened: what it holds must not be written over.
    mutable bool m_isUnread = false;
};

} // namespace ondavia
