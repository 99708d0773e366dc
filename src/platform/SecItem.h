#pragma once

#include <cstdint>
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
    /// Whether what is added now is there at the next start.
    [[nodiscard]] virtual bool remembers() const = 0;
};

} // namespace ondavia
