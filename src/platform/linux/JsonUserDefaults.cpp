#include "platform/linux/JsonUserDefaults.h"

#include "base/AppLogger.h"

#include <QJsonArray>
#include <QLockFile>

#include <cmath>
#include <functional>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace ondavia {
namespace {

constexpr auto dateKey = QLatin1String("date");

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Inode and time of change tell one atomic replacement from the next.
std::pair<std::uint64_t, std::int64_t> stampOf(const std::filesystem::path& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) {
        return {};
    }
    return {status.st_ino,
            static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec};
}

} // namespace

JsonUserDefaults::JsonUserDefaults(std::filesystem::path file)
    : m_file(std::move(file), AppLogger::general, "settings") {
    readIfChanged();
}

std::optional<std::string> JsonUserDefaults::stringForKey(std::string_view key) const {
    const QJsonValue found = value(key);
    return found.isString() ? std::optional(found.toString().toStdString()) : std::nullopt;
}

double JsonUserDefaults::doubleForKey(std::string_view key) const {
    return value(key).toDouble(0);
}

std::optional<Date> JsonUserDefaults::dateForKey(std::string_view key) const {
    const QJsonValue seconds = value(key).toObject().value(dateKey);
    // Beyond this no count of microseconds fits; such a date was never written here.
    constexpr double latest = 9e12;
    if (!seconds.isDouble() || std::abs(seconds.toDouble()) > latest) {
        return std::nullopt;
    }
    return Date(std::chrono::microseconds(std::llround(seconds.toDouble() * 1e6)));
}

std::optional<std::vector<std::string>> JsonUserDefaults::stringArrayForKey(std::string_view key) const {
    const QJsonValue found = value(key);
    if (!found.isArray()) {
        return std::nullopt;
    }
    std::vector<std::string> texts;
    for (const QJsonValue& element : found.toArray()) {
        if (!element.isString()) {
            return std::nullopt;
        }
        texts.push_back(element.toString().toStdString());
    }
    return texts;
}

void JsonUserDefaults::setString(std::string_view key, const std::string& value) {
    change([&](QJsonObject& values) { values[toQString(key)] = QString::fromStdString(value); });
}

void JsonUserDefaults::setDouble(std::string_view key, double value) {
    change([&](QJsonObject& values) { values[toQString(key)] = value; });
}

void JsonUserDefaults::setDate(std::string_view key, Date value) {
    change([&](QJsonObject& values) {
        values[toQString(key)] = QJsonObject{{dateKey, secondsSince1970(value)}};
    });
}

void JsonUserDefaults::setStringArray(std::string_view key, const std::vector<std::string>& value) {
    QJsonArray texts;
    for (const auto& text : value) {
        texts.append(QString::fromStdString(text));
    }
    change([&](QJsonObject& values) { values[toQString(key)] = texts; });
}

void JsonUserDefaults::removeObjectForKey(std::string_view key) {
    change([&](QJsonObject& values) { values.remove(toQString(key)); });
}

QJsonValue JsonUserDefaults::value(std::string_view key) const {
    const std::lock_guard guard(m_mutex);
    readIfChanged();
    return m_values.value(toQString(key));
}

void JsonUserDefaults::change(const std::function<void(QJsonObject&)>& edit) {
    const std::lock_guard guard(m_mutex);
    constexpr int lockTimeout = 2000;
    QLockFile lock(QString::fromStdString(m_file.path().string() + ".lock"));
    // Any other failure to lock is one of the folder's, which the write will tell in its own words.
    if (!lock.tryLock(lockTimeout) && lock.error() == QLockFile::LockFailedError) {
        AppLogger::general.error("settings: another process holds the lock, writing without it");
    }
    readIfChanged();
    edit(m_values);
    if (m_isUnread) {
        AppLogger::general.error("settings: not written over a file that cannot be read");
        return;
    }
    try {
        m_file.write(m_values);
    } catch (const std::system_error& error) {
        AppLogger::general.error("settings: %s", {error.what()});
        return;
    }
    m_stamp = stampOf(m_file.path());
}

void JsonUserDefaults::readIfChanged() const {
    const auto stamp = stampOf(m_file.path());
    if (stamp != m_stamp || m_isUnread) {
        m_stamp = stamp;
        read();
    }
}

void JsonUserDefaults::read() const {
    const bool wasUnread = std::exchange(m_isUnread, false);
    try {
        m_values = m_file.read();
    } catch (const std::runtime_error& error) {
        m_isUnread = true;
        if (!wasUnread) {
            AppLogger::general.error("settings: cannot be read: %s", {error.what()});
        }
    }
}

} // namespace ondavia
