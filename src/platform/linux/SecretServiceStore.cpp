// libsecret's headers have struct members named "signals": nothing of Qt comes before them.
#include <libsecret/secret.h>

#include "base/AppLogger.h"
#include "platform/linux/SecItemStores.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace ondavia {
namespace {

/// How long one call may take before it counts as failed: a keyring that asks for its password must not
/// keep the window from opening for ever.
constexpr std::chrono::seconds patience{20};

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

/// Cancels a call that outlasts our patience.
class Deadline final {
public:
    Deadline()
        : m_cancellable(g_cancellable_new()) {
        m_thread = std::jthread([this](const std::stop_token& stop) {
            std::unique_lock lock(m_mutex);
            if (!m_ended.wait_for(lock, stop, patience, [] { return false; }) && !stop.stop_requested()) {
                g_cancellable_cancel(m_cancellable);
            }
        });
    }
    ~Deadline() {
        m_thread.request_stop();
        m_thread.join();
        g_object_unref(m_cancellable);
    }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

    operator GCancellable*() { return m_cancellable; }

private:
    GCancellable* m_cancellable;
    std::mutex m_mutex;
    std::condition_variable_any m_ended;
    std::jthread m_thread;
};

/// The status for an error, which is logged and freed: GLib's texts name services and paths, no values.
OSStatus statusOf(GError* error) {
    if (error == nullptr) {
        return errSecSuccess;
    }
    AppLogger::keychain.error("Secret Service: %s", {error->message});
    g_error_free(error);
    return errSecNotAvailable;
}

class SecretServiceStore final : public SecItemStore {
public:
    OSStatus SecItemAdd(const SecItemQuery& item, const std::string& data) override {
        OSStatus status = errSecSuccess;
        if (SecItemCopyMatching(item, status)) {
            return errSecDuplicateItem;
        }
        if (status != errSecItemNotFound) {
            return status;
        }
        GError* error = nullptr;
        Deadline deadline;
        const std::string label = "Ondavia: " + item.account;
        secret_password_store_sync(&schema(), SECRET_COLLECTION_DEFAULT, label.c_str(), data.c_str(),
                                   deadline, &error, "service", item.service.c_str(), "account",
                                   item.account.c_str(), nullptr);
        return statusOf(error);
    }

    std::optional<std::string> SecItemCopyMatching(const SecItemQuery& item, OSStatus& status) override {
        GError* error = nullptr;
        Deadline deadline;
        gchar* secret =
            secret_password_lookup_sync(&schema(), deadline, &error, "service", item.service.c_str(),
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

    OSStatus SecItemDelete(const SecItemQuery& item) override {
        GError* error = nullptr;
        Deadline deadline;
        const gboolean removed =
            secret_password_clear_sync(&schema(), deadline, &error, "service", item.service.c_str(),
                                       "account", item.account.c_str(), nullptr);
        const OSStatus status = statusOf(error);
        return status == errSecSuccess && removed == FALSE ? errSecItemNotFound : status;
    }

    [[nodiscard]] bool remembers() const override { return true; }
};

} // namespace

std::unique_ptr<SecItemStore> makeSecretServiceStore() {
    GError* error = nullptr;
    Deadline deadline;
    SecretService* service = secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, deadline, &error);
    if (service == nullptr) {
        statusOf(error);
        return nullptr;
    }
    g_object_unref(service);
    return std::make_unique<SecretServiceStore>();
}

} // namespace ondavia
