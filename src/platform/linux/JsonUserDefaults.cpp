#include "platform/linux/JsonUserDefaults.h"

#include "base/AppLogger.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLockFile>
#include <QSaveFile>

#include <cmath>
#include <functional>
#include <sys/stat.h>
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
    : m_file(std::move(file)) {
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
    readIfChanged();
    return m_values.value(toQString(key));
}

void JsonUserDefaults::change(const std::function<void(QJsonObject&)>& edit) {
    constexpr int lockTimeout = 2000;
    QLockFile lock(QString::fromStdString(m_file.string() + ".lock"));
    if (!lock.tryLock(lockTimeout)) {
        AppLogger::general.error("settings: another process holds the lock, writing without it");
    }
    readIfChanged();
    edit(m_values);
    if (m_isUnread) {
        AppLogger::general.error("settings: not written over a file that cannot be read");
        return;
    }
    QSaveFile file(QString::fromStdString(m_file.string()));
    const bool written = file.open(QIODevice::WriteOnly) &&
                         file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) &&
                         file.write(QJsonDocument(m_values).toJson()) >= 0 && file.commit();
    if (!written) {
        AppLogger::general.error("settings: cannot be written: %s", {file.errorString().toStdString()});
        return;
    }
    m_stamp = stampOf(m_file);
}

void JsonUserDefaults::readIfChanged() const {
    const auto stamp = stampOf(m_file);
    if (stamp != m_stamp || m_isUnread) {
        m_stamp = stamp;
        read();
    }
}

void JsonUserDefaults::read() const {
    QFile file(QString::fromStdString(m_file.string()));
    const bool wasUnread = std::exchange(m_isUnread, false);
    if (!file.exists()) {
        m_values = {};
        return;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        m_isUnread = true;
        if (!wasUnread) {
            AppLogger::general.error("settings: cannot be read: %s", {file.errorString().toStdString()});
        }
        return;
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject()) {
        keepDamagedFileAside();
    }
    m_values = document.object();
}

void JsonUserDefaults::keepDamagedFileAside() const {
    const std::filesystem::path aside = m_file.string() + ".damaged";
    std::error_code error;
    std::filesystem::rename(m_file, aside, error);
    AppLogger::general.error("settings: the file is damaged and was %s",
                             {error ? "left as it is" : "kept aside"});
}

} // namespace ondavia
