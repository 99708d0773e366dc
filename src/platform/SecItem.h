#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace ondavia {

/// Status of a secure item operation: 0 for success.
using OSStatus = std::int32_t;
inline constexpr OSStatus errSecSuccess = 0;
inline constexpr OSStatus errSecNotAvailable = -25291;
inline constexpr OSStatus errSecDuplicateItem = -25299;
inline constexpr OSStatus errSecItemNotFound = -25300;

/// What names one generic password item.
struct SecItemQuery final {
    /// kSecAttrService
    std::string service;
    /// kSecAttrAccount
    std::string account;
};

/// The secure item store. On Linux the Secret Service of the session (libsecret), or memory for this run
/// where none answers, or a file of mode 0600 where the user asked for that with ONDAVIA_VAULT=file.
/// All calls are synchronous and may come from any thread. Values are never logged.
class SecItemStore {
public:
    virtual ~SecItemStore() = default;
    /// Adds an item that can be read after the first unlock and stays on this device.
    /// errSecDuplicateItem when it exists.
    virtual OSStatus SecItemAdd(const SecItemQuery& item, const std::string& data) = 0;
    /// The one matching item's data; `status` tells why there is none.
    virtual std::optional<std::string> SecItemCopyMatching(const SecItemQuery& item, OSStatus& status) = 0;
    /// errSecItemNotFound when there is no such item.
    virtual OSStatus SecItemDelete(const SecItemQuery& item) = 0;
    /// Runs `changes`, which belong together: when it returns errSecSuccess, the store keeps all of them,
    /// and otherwise, or where it cannot keep them, every item is as it was before. The status of that.
    /// Within `changes` another call of this only runs its own.
    virtual OSStatus changeTogether(const std::function<OSStatus()>& changes) = 0;
    /// Whether what is added now is there at the next start, as far as is known.
    [[nodiscard]] virtual bool remembers() const = 0;
    /// Whether a call may keep its caller waiting, be it for a user who is asked for a password.
    [[nodiscard]] virtual bool keepsWaiting() const { return false; }
    /// Ends the call that is under way and lets every later one fail at once. What was changed in part may
    /// still be put back after that; called again, this ends that too. Never waits.
    virtual void giveUp() {}
};

} // namespace ondavia
