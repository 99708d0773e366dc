#include "store/StoreFolder.h"

#include "base/Date.h"
#include "base/Text.h"
#include "store/Connection.h"
#include "store/Schema.h"
#include "store/StoreError.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace ondavia {

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t generationCount = 1000;

[[noreturn]] void raise(const fs::path& file, std::string_view text, const std::error_code& error) {
    throw storeErrorForSystem(error.value(), file.filename().string(), text);
}

fs::path makePrivateFolder(fs::path path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (!error) {
        fs::permissions(path, fs::perms::owner_all, error);
    }
    if (error) {
        raise(path, "the folder cannot be made", error);
    }
    return path;
}

bool isGenerationOf(const fs::path& file, StoreFile kind) {
    const std::string stem = std::string(schemaOf(kind).stem);
    const std::string name = file.filename().string();
    return kind != StoreFile::User && (name.starts_with(stem + "-") || name.starts_with(stem + ".link-"));
}

std::string timeText() {
    return std::to_string(currentDate().time_since_epoch().count());
}

} // namespace

StoreFolder::StoreFolder(fs::path path)
    : m_path(makePrivateFolder(std::move(path)))
    , m_lock(m_path) {}

std::optional<fs::path> StoreFolder::currentFile(StoreFile kind) const {
    if (kind == StoreFile::User) {
        return userFile();
    }
    std::error_code error;
    const fs::path target = fs::read_symlink(linkPath(kind), error);
    return error ? std::nullopt : std::optional(m_path / target.filename());
}

fs::path StoreFolder::createGeneration(StoreFile kind) {
    const std::lock_guard lock(m_creating);
    fs::path file = nextGeneration(kind);
    while (!createPrivateFile(file)) {
        file = nextGeneration(kind);
    }
    return file;
}

void StoreFolder::publish(StoreFile kind, const fs::path& generation) {
    const std::optional<fs::path> previous = currentFile(kind);
    link(kind, generation);
    if (previous && *previous != generation) {
        deleteDatabase(*previous);
    }
}

void StoreFolder::adoptPlainFile(StoreFile kind) {
    const fs::path plain = linkPath(kind);
    std::error_code error;
    if (!fs::is_regular_file(fs::symlink_status(plain, error))) {
        return;
    }
    const fs::path generation = nextGeneration(kind);
    const fs::path log = plain.string() + "-wal";
    if (fs::exists(log, error)) {
        fs::rename(log, generation.string() + "-wal", error);
    }
    fs::rename(plain, generation, error);
    if (error) {
        raise(plain, "the file cannot be renamed", error);
    }
    link(kind, generation);
}

void StoreFolder::deleteAbandonedFiles() {
    for (const StoreFile kind : {StoreFile::Catalogue, StoreFile::Guide}) {
        const std::string current = currentFile(kind).value_or(fs::path()).filename().string();
        std::error_code error;
        for (const fs::directory_entry& entry : fs::directory_iterator(m_path, error)) {
            const std::string name = entry.path().filename().string();
            if (isGenerationOf(entry.path(), kind) && (current.empty() || !name.starts_with(current))) {
                fs::remove(entry.path(), error);
            }
        }
    }
}

fs::path StoreFolder::linkPath(StoreFile kind) const {
    return m_path / (std::string(schemaOf(kind).stem) + ".db");
}

fs::path StoreFolder::nextGeneration(StoreFile kind) const {
    const std::optional<fs::path> current = currentFile(kind);
    std::int64_t number = current ? (generationNumber(*current) + 1) % generationCount : 0;
    // Two may be in the making at once, and neither is to have the other's keys.
    for (const std::set<std::int64_t> taken = generationNumbers(kind); taken.contains(number);) {
        number = (number + 1) % generationCount;
    }
    // The time keeps a name from ever coming back: a connection knows by the name alone that it is stale.
    return m_path /
           (std::string(schemaOf(kind).stem) + "-" + std::to_string(number) + "-" + timeText() + ".db");
}

std::set<std::int64_t> StoreFolder::generationNumbers(StoreFile kind) const {
    const std::string prefix = std::string(schemaOf(kind).stem) + "-";
    std::set<std::int64_t> numbers;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_path, error)) {
        if (entry.path().filename().string().starts_with(prefix)) {
            numbers.insert(generationNumber(entry.path()));
        }
    }
    return numbers;
}

void StoreFolder::link(StoreFile kind, const fs::path& generation) const {
    const fs::path temporary = m_path / (std::string(schemaOf(kind).stem) + ".link-" +
                                         std::to_string(::getpid()) + "-" + timeText());
    std::error_code error;
    fs::create_symlink(generation.filename(), temporary, error);
    if (!error) {
        fs::rename(temporary, linkPath(kind), error);
    }
    if (error) {
        raise(linkPath(kind), "the file cannot be exchanged", error);
    }
}

void deleteDatabase(const fs::path& file) {
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
        ::unlink((file.string() + suffix).c_str());
    }
    ::unlink(damageNote(file).c_str());
}

std::int64_t generationNumber(const fs::path& file) {
    const std::string name = file.filename().string();
    const std::size_t begin = name.find('-') + 1;
    const std::string_view digits = std::string_view(name).substr(begin, name.find('-', begin) - begin);
    return parseDecimalInteger(digits).value_or(0);
}

bool createPrivateFile(const fs::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0 && errno != EEXIST) {
        throw storeErrorForSystem(errno, file.filename().string(), "the file cannot be made");
    }
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    return descriptor >= 0;
}

} // namespace ondavia
