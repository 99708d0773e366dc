#include "state/KeychainService.h"

#include "base/AppLogger.h"
#include "base/Redaction.h"
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
    saveCredentials({*server, *username, *password});
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
    registerSecret(*username);
    registerSecret(*password);
    return Credentials{std::move(*server), std::move(*username), std::move(*password)};
}

bool KeychainService::saveCredentials(const Credentials& credentials) {
    registerSecret(credentials.username);
    registerSecret(credentials.password);
    bool isTaken = true;
    const OSStatus status = m_items.changeTogether([&] {
        isTaken = set(credentials.server, serverKey);
        isTaken = set(credentials.username, usernameKey) && isTaken;
        isTaken = set(credentials.password, passwordKey) && isTaken;
        return isTaken ? errSecSuccess : errSecNotAvailable;
    });
    if (isTaken && status != errSecSuccess) {
        AppLogger::keychain.error("the account cannot be kept, OSStatus: %d", {status});
    }
    return status == errSecSuccess;
}

bool KeychainService::removeCredentials() {
    bool isGone = true;
    const OSStatus status = m_items.changeTogether([&] {
        for (const char* key : {serverKey, usernameKey, passwordKey}) {
            isGone = remove(key) && isGone;
        }
        // A part that cannot be deleted is no reason to bring the others back.
        return errSecSuccess;
    });
    if (isGone && status != errSecSuccess) {
        AppLogger::keychain.error("the account cannot be deleted, OSStatus: %d", {status});
    }
    return isGone && status == errSecSuccess;
}

bool KeychainService::set(const std::string& value, const std::string& key) {
    if (!isValidUtf8(value)) {
        return false;
    }
    const OSStatus status = m_items.changeTogether([&] {
        remove(key);
        return m_items.SecItemAdd({service, key}, value);
    });
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

bool KeychainService::keepsWaiting() const {
    return m_items.keepsWaiting();
}

void KeychainService::giveUp() {
    m_items.giveUp();
}

} // namespace ondavia
