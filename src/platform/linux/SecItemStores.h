#pragma once

#include "platform/SecItem.h"

#include <filesystem>
#include <memory>

namespace ondavia {

/// The store that this run uses: a file vault in `vaultFolder` when ONDAVIA_VAULT is "file"; otherwise
/// the Secret Service, or memory with a log line when none answers on the session bus, which the first call
/// finds out.
[[nodiscard]] std::unique_ptr<SecItemStore> makeSecItemStore(const std::filesystem::path& vaultFolder);

class SessionItemStore : public SecItemStore {
public:
    /// Whether the service answers. Takes as long as it likes, unless given up.
    virtual bool connect() = 0;
};

/// Items of the session's Secret Service.
[[nodiscard]] std::unique_ptr<SessionItemStore> makeSecretServiceStore();

/// Items that live as long as the object.
[[nodiscard]] std::unique_ptr<SecItemStore> makeMemoryStore();

/// Items in one file of mode 0600 in `folder`, in plain text: for machines without a keyring, by the
/// user's own choice.
[[nodiscard]] std::unique_ptr<SecItemStore> makeFileVault(const std::filesystem::path& folder);

} // namespace ondavia
