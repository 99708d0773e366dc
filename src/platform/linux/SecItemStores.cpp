#include "platform/linux/SecItemStores.h"

#include "base/AppLogger.h"
#include "platform/linux/JsonFile.h"

#include <QScopeGuard>

#include <atomic>
#include <cstdlib>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace ondavia {
namespace {

using Items = std::map<std::pair<std::string, std::string>, std::string>;

/// Items that are read and kept as a whole: there are three.
class WholeStore : public SecItemStore {
public:
    OSStatus SecItemAdd(const SecItemQuery& item, const std::string& data) final {
        return changeTogether([&] {
            const bool isNew = m_items.try_emplace({item.service, item.account}, data).second;
            return isNew ? errSecSuccess : errSecDuplicateItem;
        });
    }

    std::optional<std::string> SecItemCopyMatching(const SecItemQuery& item, OSStatus& status) final {
        std::optional<std::string> data;
        status = changeTogether([&] {
            const auto found = m_items.find({item.service, item.account});
            if (found == m_items.end()) {
                return errSecItemNotFound;
            }
            data = found->second;
            return errSecSuccess;
        });
        return data;
    }

    OSStatus SecItemDelete(const SecItemQuery& item) final {
        return changeTogether([&] {
            return m_items.erase({item.service, item.account}) > 0 ? errSecSuccess : errSecItemNotFound;
        });
    }

    OSStatus changeTogether(const std::function<OSStatus()>& changes) final {
        const std::lock_guard lock(m_mutex);
        if (std::exchange(m_isChanging, true)) {
            return changes();
        }
        const auto changed = qScopeGuard([this] { m_isChanging = false; });
        try {
            return changeAndKeep(changes);
        } catch (const std::runtime_error& error) {
            AppLogger::keychain.error("vault: %s", {error.what()});
            return errSecNotAvailable;
        }
    }

private:
    /// Replaces `items`, which are those of the last time, by those that are there. Raises
    /// std::runtime_error.
    virtual void read(Items& items) const = 0;
    /// Raises std::runtime_error; what was kept before is then still there.
    virtual void keep(const Items& items) const = 0;

    OSStatus changeAndKeep(const std::function<OSStatus()>& changes) {
        read(m_items);
        const Items before = m_items;
        auto undone = qScopeGuard([&] { m_items = before; });
        const OSStatus status = changes();
        if (status == errSecSuccess && m_items != before) {
            keep(m_items);
        }
        if (status == errSecSuccess) {
            undone.dismiss();
        }
        return status;
    }

    std::recursive_mutex m_mutex;
    Items m_items;
    bool m_isChanging = false;
};

class MemoryStore final : public WholeStore {
public:
    [[nodiscard]] bool remembers() const override { return false; }

private:
    void read(Items& /*items*/) const override {}
    void keep(const Items& /*items*/) const override {}
};

/// {service: {account: data}} in one file, which is replaced in one step.
class FileVault final : public WholeStore {
public:
    explicit FileVault(const std::filesystem::path& folder)
        : m_file(folder / "vault.json", AppLogger::keychain, "vault") {}

    [[nodiscard]] bool remembers() const override { return true; }

private:
    void read(Items& items) const override {
        items.clear();
        const QJsonObject vault = m_file.read();
        for (auto service = vault.begin(); service != vault.end(); ++service) {
            const QJsonObject accounts = service.value().toObject();
            for (auto account = accounts.begin(); account != accounts.end(); ++account) {
                items[{service.key().toStdString(), account.key().toStdString()}] =
                    account.value().toString().toStdString();
            }
        }
    }

    void keep(const Items& items) const override {
        // What is to be forgotten is forgotten even where no room is left for a smaller file.
        if (items.empty()) {
            m_file.remove();
            return;
        }
        QJsonObject vault;
        for (const auto& [name, data] : items) {
            const QString service = QString::fromStdString(name.first);
            QJsonObject accounts = vault.value(service).toObject();
            accounts[QString::fromStdString(name.second)] = QString::fromStdString(data);
            vault[service] = accounts;
        }
        m_file.write(vault);
    }

    JsonFile m_file;
};

/// The session's Secret Service, or memory where none answers.
class SessionStore final : public SecItemStore {
public:
    OSStatus SecItemAdd(const SecItemQuery& item, const std::string& data) override {
        return chosen().SecItemAdd(item, data);
    }
    std::optional<std::string> SecItemCopyMatching(const SecItemQuery& item, OSStatus& status) override {
        return chosen().SecItemCopyMatching(item, status);
    }
    OSStatus SecItemDelete(const SecItemQuery& item) override { return chosen().SecItemDelete(item); }
    OSStatus changeTogether(const std::function<OSStatus()>& changes) override {
        return chosen().changeTogether(changes);
    }
    [[nodiscard]] bool remembers() const override { return m_service->remembers() && !m_isForgetful; }
    [[nodiscard]] bool keepsWaiting() const override { return true; }
    void giveUp() override { m_service->giveUp(); }

private:
    SecItemStore& chosen() {
        std::call_once(m_asked, [this] {
            m_isForgetful = !m_service->connect();
            if (m_isForgetful) {
                AppLogger::keychain.error(
                    "no Secret Service answers; the account is kept in memory for this run only");
            }
        });
        return m_isForgetful ? *m_memory : *m_service;
    }

    std::unique_ptr<SessionItemStore> m_service = makeSecretServiceStore();
    std::unique_ptr<SecItemStore> m_memory = makeMemoryStore();
    std::once_flag m_asked;
    std::atomic_bool m_isForgetful = false;
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
    return std::make_unique<SessionStore>();
}

} // namespace ondavia
