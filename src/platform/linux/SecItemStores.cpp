#include "platform/linux/SecItemStores.h"

#include "base/AppLogger.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <cstdlib>
#include <map>
#include <mutex>
#include <string_view>

namespace ondavia {
namespace {

class MemoryStore final : public SecItemStore {
public:
    OSStatus SecItemAdd(const SecItemQuery& item, const std::string& data) override {
        const std::lock_guard lock(m_mutex);
        return m_items.try_emplace({item.service, item.account}, data).second ? errSecSuccess
                                                                              : errSecDuplicateItem;
    }

    std::optional<std::string> SecItemCopyMatching(const SecItemQuery& item, OSStatus& status) override {
        const std::lock_guard lock(m_mutex);
        const auto found = m_items.find({item.service, item.account});
        status = found == m_items.end() ? errSecItemNotFound : errSecSuccess;
        return found == m_items.end() ? std::nullopt : std::optional(found->second);
    }

    OSStatus SecItemDelete(const SecItemQuery& item) override {
        const std::lock_guard lock(m_mutex);
        return m_items.erase({item.service, item.account}) > 0 ? errSecSuccess : errSecItemNotFound;
    }

    [[nodiscard]] bool remembers() const override { return false; }

private:
    std::mutex m_mutex;
    std::map<std::pair<std::string, std::string>, std::string> m_items;
};

/// {service: {account: data}} in one file, read and replaced whole at each call: there are three items.
class FileVault final : public SecItemStore {
public:
    explicit FileVault(const std::filesystem::path& folder)
        : m_file(QString::fromStdString((folder / "vault.json").string())) {}

    OSStatus SecItemAdd(const SecItemQuery& item, const std::string& data) override {
        const std::lock_guard lock(m_mutex);
        QJsonObject vault = read();
        QJsonObject service = vault.value(QString::fromStdString(item.service)).toObject();
        const QString account = QString::fromStdString(item.account);
        if (service.contains(account)) {
            return errSecDuplicateItem;
        }
        service[account] = QString::fromStdString(data);
        vault[QString::fromStdString(item.service)] = service;
        return write(vault);
    }

    std::optional<std::string> SecItemCopyMatching(const SecItemQuery& item, OSStatus& status) override {
        const std::lock_guard lock(m_mutex);
        const QJsonValue data = read()
                                    .value(QString::fromStdString(item.service))
                                    .toObject()
                                    .value(QString::fromStdString(item.account));
        status = data.isString() ? errSecSuccess : errSecItemNotFound;
        return data.isString() ? std::optional(data.toString().toStdString()) : std::nullopt;
    }

    OSStatus SecItemDelete(const SecItemQuery& item) override {
        const std::lock_guard lock(m_mutex);
        QJsonObject vault = read();
        QJsonObject service = vault.value(QString::fromStdString(item.service)).toObject();
        const QString account = QString::fromStdString(item.account);
        if (!service.contains(account)) {
            return errSecItemNotFound;
        }
        service.remove(account);
        vault[QString::fromStdString(item.service)] = service;
        return write(vault);
    }

    [[nodiscard]] bool remembers() const override { return true; }

private:
    [[nodiscard]] QJsonObject read() const {
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                              : QJsonObject();
    }

    OSStatus write(const QJsonObject& vault) const {
        QSaveFile file(m_file);
        const bool written = file.open(QIODevice::WriteOnly) &&
                             file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) &&
                             file.write(QJsonDocument(vault).toJson()) >= 0 && file.commit();
        return written ? errSecSuccess : errSecNotAvailable;
    }

    std::mutex m_mutex;
    QString m_file;
};

} // namespace

std::unique_ptr<SecItemStore> makeMemoryStore() {
    return std::make_unique<MemoryStore>();
}

std::unique_ptr<SecItemStore> makeFileVault(const std::filesystem::path& folder) {
    return std::make_unique<FileVault>(folder);
}

std::unique_ptr<SecItemStore> makeSecItemStore(const std::filesystem::path& vaultFolder) {
    if (const char* vault = std::getenv("ONDAVIA_VAULT");
        vault != nullptr && std::string_view(vault) == "file") {
        return makeFileVault(vaultFolder);
    }
    if (auto service = makeSecretServiceStore()) {
        return service;
    }
    AppLogger::keychain.error("no Secret Service answers; the account is kept in memory for this run only");
    return makeMemoryStore();
}

} // namespace ondavia
