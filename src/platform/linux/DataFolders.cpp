#include "platform/linux/DataFolders.h"

#include <QStandardPaths>

#include <cstdlib>

namespace ondavia {
namespace {

namespace fs = std::filesystem;

fs::path userFolder(QStandardPaths::StandardLocation location) {
    return fs::path(QStandardPaths::writableLocation(location).toStdString()) / "ondavia";
}

DataFolders locate() {
    if (const char* root = std::getenv("ONDAVIA_DATA_DIR"); root != nullptr && *root != '\0') {
        const fs::path base = fs::absolute(root);
        return {base / "store", base / "settings", base / "cache", base / "vault"};
    }
    const fs::path data = userFolder(QStandardPaths::GenericDataLocation);
    return {data / "store", userFolder(QStandardPaths::GenericConfigLocation),
            userFolder(QStandardPaths::GenericCacheLocation), data / "vault"};
}

} // namespace

DataFolders DataFolders::fromEnvironment() {
    DataFolders folders = locate();
    for (const auto& folder : {folders.store, folders.settings, folders.cache, folders.vault}) {
        fs::create_directories(folder);
        fs::permissions(folder, fs::perms::owner_all);
    }
    return folders;
}

} // namespace ondavia
