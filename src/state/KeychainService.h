#pragma once

#include <optional>
#include <string>

namespace ondavia {

class SecItemStore;
class UserDefaults;

/// The provider account.
struct Credentials final {
    std::string server;
    std::string username;
    std::string password;

    bool operator==(const Credentials&) const = default;
};

/// Keeps the provider account in the secure item store, so that the password never rests in the settings
/// file, and moves an account that an earlier version left there. Calls are synchronous and take as long as
/// the store does; any thread, one at a time, but for the last three. Logs keys and status numbers, never
/// values.
class KeychainService final {
public:
    static constexpr const char* service = "com.ondavia.app";
    static constexpr const char* serverKey = "ondavia_server";
    static constexpr const char* usernameKey = "ondavia_username";
    static constexpr const char* passwordKey = "ondavia_password";

    /// Both must outlive the object.
    KeychainService(SecItemStore& items, UserDefaults& defaults)
        : m_items(items)
        , m_defaults(defaults) {}

    /// Moves the three values out of the settings store unless the secure store holds all of them. They
    /// leave the settings store even if a write failed: a password must not stay there, and the user can
    /// sign in again.
    void migrateFromUserDefaultsIfNeeded();
    /// The account, or absent when any of the three is. An empty text counts as present.
    [[nodiscard]] std::optional<Credentials> loadCredentials();
    /// Replaces the account as a whole: where the store refuses a part of it, the account of before stays.
    /// Whether the store took it.
    bool saveCredentials(const Credentials& credentials);
    /// Deletes what there is of an account; whether nothing of it is left.
    bool removeCredentials();

    /// Replaces the item under `key`; whether the store took it. The item of before stays where it did not.
    bool set(const std::string& value, const std::string& key);
    [[nodiscard]] std::optional<std::string> get(const std::string& key);
    /// Whether the item is gone; one that never was counts as gone.
    bool remove(const std::string& key);

    // At once, on any thread:

    /// Whether the store keeps items for the next start.
    [[nodiscard]] bool remembers() const;
    /// Whether the store may keep its caller waiting.
    [[nodiscard]] bool keepsWaiting() const;
    /// Whoever waits for the store waits no longer, and it remembers nothing more. Called again, this ends
    /// also what it was putting back.
    void giveUp();

private:
    SecItemStore& m_items;
    UserDefaults& m_defaults;
};

} // namespace ondavia
