#include "state/KeychainService.h"

#include "base/AppLogger.h"
#include "base/Text.h"
#include "platform/SecItem.h"
#include "platform/UserDefaults.h"

namespace ondavia {

void KeychainService::migrateFromUserDefaultsIfNeeded() {
    if (get(serverKey) && get(usernameKey) && get(passwordKey)) {
        return;
    }
    const auto server = m_defaults.stringForKey(serverKey);
    const auto username = m_defaults.stringForKey(usernameKey);
    const auto password = m_defaults.stringForKey(passwordKey);
    if (!server || !username || !password) {
        return;
    }
    set(*server, serverKey);
    set(*username, usernameKey);
    set(*password, passwordKey);
    for (const char* key : {serverKey, usernameKey, passwordKey}) {
        m_defaults.removeObjectForKey(key);
    }
}

std::optional<Credentials> KeychainService::loadCredentials() {
    // One after the other: a keyring that does not answer keeps its caller waiting each time.
    auto server = get(serverKey);
    auto username = server ? get(usernameKey) : std::nullopt;
    auto password = username ? get(passwordKey) : std::nullopt;
    if (!password) {
        return std::nullopt;
    }
    return Credentials{std::move(*server), std::move(*username), std::move(*password)};
}

bool KeychainService::set(const std::string& value, const std::string& key) {
    if (!isValidUtf8(value)) {
        return false;
    }
    remove(key);
    const OSStatus status = m_items.SecItemAdd({service, key}, value);
    if (status != errSecSuccess) {
        AppLogger::keychain.error("SecItemAdd failed for key=%s with OSStatus: %d", {key, status});
    }
    return status == errSecSuccess;
}

std::optional<std::string> KeychainService::get(const std::string& key) {
    OSStatus status = errSecSuccess;
    auto data = m_items.SecItemCopyMatching({service, key}, status);
    if (status != errSecSuccess || !data || !isValidUtf8(*data)) {
        return std::nullopt;
    }
    return data;
}

bool KeychainService::remove(const std::string& key) {
    const OSStatus status = m_items.SecItemDelete({service, key});
    if (status == errSecSuccess || status == errSecItemNotFound) {
        return true;
    }
    AppLogger::keychain.error("SecItemDelete failed for key=%s with OSStatus: %d", {key, status});
    return false;
}

bool KeychainService::remembers() const {
    return m_items.remembers();
}

} // namespace ondavia
