#pragma once

#include "store/FolderLock.h"

#include <filesystem>
#include <optional>
#include <string>

namespace ondavia {

/// Whose rows the downloaded files of a store may hold: a text of the application's, absent in a store in
/// which nobody has said so yet. It is the target of a symbolic link, `owner`, since a link is exchanged in
/// one step and needs no room of its own on a full device. Any thread, and whatever process. Raises
/// StoreError.
[[nodiscard]] std::optional<std::string> ownerOf(const std::filesystem::path& folder);

/// Raises StoreError.
void writeOwner(const std::filesystem::path& folder, const std::string& owner,
                const FolderLock::Section& section);

/// Raises StoreError of the kind NotOwner when the rows may only be somebody else's.
void requireOwner(const std::filesystem::path& folder, const std::string& owner);

} // namespace ondavia
