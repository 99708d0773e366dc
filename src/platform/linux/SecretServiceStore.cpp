// libsecret's headers have struct members named "signals": nothing of Qt comes before them.
#include <libsecret/secret.h>

#include "base/AppLogger.h"
#include "platform/linux/SecItemStores.h"

#include <map>
#include <mutex>
#include <utility>

namespace ondavia {
namespace {

const SecretSchema& schema() {
    static const SecretSchema value = {"com.ondavia.GenericPassword",
                                       SECRET_SCHEMA_NONE,
                                       {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                        {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                        {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
                                       0,
                                       nullptr,
                                       nullptr,
                                       nullptr,
                                       nullptr,
                                       nullptr,
                                       nullptr,
                                       nullptr};
    return value;
}

/// The status for an error, which is logged and freed: GLib's texts name services and paths, no values.
OSStatus statusOf(GError* error) {
    if (error == nullptr) {
        return errSecSuccess;
    }
    AppLogger::keychain.error("Secret Service: %s", {error->message});
    g_error_free(error);
    return errSecNotAvailable;
}

class SecretServiceStore final : public SessionItemStore {
public:
    SecretServiceStore() = default;
    ~SecretServiceStore() override {
        g_object_unref(m_givenUp);
        g_object_unref(m_ended);
    }
    SecretServiceStore(const SecretServiceStore&) = delete;
    SecretServiceStore& operator=(const SecretServiceStore&) = delete;

    bool connect() override {
        GError* error = nullptr;
        SecretService* service = secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, m_givenUp, &error);
        statusOf(error);
        if (service != nullptr) {
            g_object_unref(service);
        }
        return service != nullptr;
    }

    OSStatus SecItemAdd(const SecItemQuery& item, const std::string& data) override {
        const std::lock_guard lock(m_mutex);
        OSStatus status = noteForUndo(item);
        if (status != errSecSuccess) {
            return status;
        }
        if (find(item, m_givenUp, status)) {
            return errSecDuplicateItem;
        }
        if (status != errSecItemNotFound) {
            return status;
        }
        return store(item, data, m_givenUp);
    }

    std::optional<std::string> SecItemCopyMatching(const SecItemQuery& item, OSStatus& status) override {
        return find(item, m_givenUp, status);
    }

    OSStatus SecItemDelete(const SecItemQuery& item) override {
        const std::lock_guard lock(m_mutex);
        const OSStatus status = noteForUndo(item);
        return status == errSecSuccess ? clear(item, m_givenUp) : status;
    }

    OSStatus changeTogether(const std::function<OSStatus()>& changes) override {
        const std::lock_guard lock(m_mutex);
        if (m_undo) {
            return changes();
        }
        m_undo.emplace();
        const OSStatus status = changes();
        const Undo undo = *std::exchange(m_undo, std::nullopt);
        if (status != errSecSuccess) {
            // Also when the keyring was given up in the middle: it may have been slow and not silent.
            putBack(undo);
        }
        return status;
    }

    [[nodiscard]] bool remembers() const override { return g_cancellable_is_cancelled(m_givenUp) == FALSE; }
    [[nodiscard]] bool keepsWaiting() const override { return true; }
    void giveUp() override { g_cancellable_cancel(remembers() ? m_givenUp : m_ended); }

private:
    /// What stood under each name before the first change that belongs together with others.
    using Undo = std::map<std::pair<std::string, std::string>, std::optional<std::string>>;

    /// What cannot be put back is not changed.
    OSStatus noteForUndo(const SecItemQuery& item) {
        if (!m_undo || m_undo->contains({item.service, item.account})) {
            return errSecSuccess;
        }
        OSStatus status = errSecSuccess;
        std::optional<std::string> data = find(item, m_givenUp, status);
        if (status != errSecSuccess && status != errSecItemNotFound) {
            return status;
        }
        m_undo->emplace(std::pair(item.service, item.account), std::move(data));
        return errSecSuccess;
    }

    void putBack(const Undo& undo) const {
        for (const auto& [name, data] : undo) {
            const SecItemQuery item{name.first, name.second};
            OSStatus status = errSecSuccess;
            if (find(item, m_ended, status) == data && (data || status == errSecItemNotFound)) {
                continue;
            }
            clear(item, m_ended);
            if (data && store(item, *data, m_ended) != errSecSuccess) {
                AppLogger::keychain.error("the keyring takes neither the new item nor the one of before");
            }
        }
    }

    static std::optional<std::string> find(const SecItemQuery& item, GCancellable* end, OSStatus& status) {
        GError* error = nullptr;
        gchar* secret = secret_password_lookup_sync(&schema(), end, &error, "service", item.service.c_str(),
                                                    "account", item.account.c_str(), nullptr);
        status = statusOf(error);
        if (secret == nullptr) {
            status = status == errSecSuccess ? errSecItemNotFound : status;
            return std::nullopt;
        }
        std::string data = secret;
        secret_password_free(secret);
        return data;
    }

    static OSStatus store(const SecItemQuery& item, const std::string& data, GCancellable* end) {
        GError* error = nullptr;
        const std::string label = "Ondavia: " + item.account;
        secret_password_store_sync(&schema(), SECRET_COLLECTION_DEFAULT, label.c_str(), data.c_str(), end,
                                   &error, "service", item.service.c_str(), "account", item.account.c_str(),
                                   nullptr);
        return statusOf(error);
    }

    static OSStatus clear(const SecItemQuery& item, GCancellable* end) {
        GError* error = nullptr;
        const gboolean removed =
            secret_password_clear_sync(&schema(), end, &error, "service", item.service.c_str(), "account",
                                       item.account.c_str(), nullptr);
        const OSStatus status = statusOf(error);
        if (status != errSecSuccess || removed == TRUE) {
            return status;
        }
        // A locked keyring that nobody unlocks deletes nothing, without a word.
        return isKept(item, end) ? errSecNotAvailable : errSecItemNotFound;
    }

    /// Whether there is such an item, locked or not.
    static bool isKept(const SecItemQuery& item, GCancellable* end) {
        GError* error = nullptr;
        GHashTable* attributes = secret_attributes_build(&schema(), "service", item.service.c_str(),
                                                         "account", item.account.c_str(), nullptr);
        GList* items =
            secret_service_search_sync(nullptr, &schema(), attributes, SECRET_SEARCH_ALL, end, &error);
        g_hash_table_unref(attributes);
        const bool isFound = items != nullptr;
        g_list_free_full(items, g_object_unref);
        return isFound || statusOf(error) != errSecSuccess;
    }

    /// Cancelled where the keyring is not to be asked for anything new any more.
    GCancellable* m_givenUp = g_cancellable_new();
    /// Cancelled where nothing is to be put back either.
    GCancellable* m_ended = g_cancellable_new();
    std::recursive_mutex m_mutex;
    std::optional<Undo> m_undo;
};

} // namespace

std::unique_ptr<SessionItemStore> makeSecretServiceStore() {
    return std::make_unique<SecretServiceStore>();
}

} // namespace ondavia
