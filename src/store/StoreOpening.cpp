#include "store/StoreOpening.h"

#include "base/AppLogger.h"
#include "store/Connection.h"
#include "store/FileCheck.h"
#include "store/GenerationFile.h"
#include "store/Schema.h"
#include "store/StoreError.h"
#include "store/UserFile.h"

#include <limits>

namespace ondavia {

namespace fs = std::filesystem;

namespace {

void publishEmptyGeneration(StoreFolder& folder, StoreFile kind, const FolderLock::Section& section) {
    GenerationFile generation(folder, kind, std::numeric_limits<std::int64_t>::max());
    generation.createIndexes();
    generation.publish(section);
}

bool isSound(StoreFile kind, const fs::path& file) {
    if (fs::exists(damageNote(file)) || !fs::exists(file)) {
        return false;
    }
    try {
        checkFile(kind, file, CheckDepth::Quick);
        return true;
    } catch (const StoreError& error) {
        if (error.failure() != StoreFailure::Damaged) {
            throw;
        }
        return false;
    }
}

void openDownloadedFile(StoreFolder& folder, StoreFile kind, const FolderLock::Section& section,
                        OpenReport& report) {
    folder.adoptPlainFile(kind);
    const std::optional<fs::path> file = folder.currentFile(kind);
    if (!file) {
        publishEmptyGeneration(folder, kind, section);
        return;
    }
    if (!isSound(kind, *file)) {
        AppLogger::general.error("%{public}s.db was damaged and starts empty", {schemaOf(kind).stem});
        report.rebuiltFiles.push_back(kind);
        publishEmptyGeneration(folder, kind, section);
    }
}

/// Reading goes on without room, so somebody has to say it.
bool tellFullDisk(const StoreFolder& folder) {
    constexpr std::uintmax_t nothing = 1 << 20;
    std::error_code error;
    const fs::space_info room = fs::space(folder.path(), error);
    const bool isFull = !error && room.available < nothing;
    if (isFull) {
        AppLogger::general.error("the disk is full: nothing new can be kept until there is room on it");
    }
    return isFull;
}

} // namespace

OpenReport openFiles(StoreFolder& folder) {
    const bool isDiskFull = tellFullDisk(folder);
    const FolderLock::Section section(folder.lock());
    const bool alone = folder.lock().join();
    if (alone) {
        folder.deleteAbandonedFiles();
    }
    OpenReport report = openUserFile(folder, alone);
    report.isDiskFull = isDiskFull;
    openDownloadedFile(folder, StoreFile::Catalogue, section, report);
    openDownloadedFile(folder, StoreFile::Guide, section, report);
    folder.lock().share();
    return report;
}

} // namespace ondavia
