#include "base/FileReplacement.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace ondavia {

namespace fs = std::filesystem;

namespace {

void check(bool succeeded, const fs::path& file) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(),
                                file.filename().string() + " cannot be written");
    }
}

template<class Call> auto untilUninterrupted(Call&& call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

class Descriptor final {
public:
    explicit Descriptor(int number)
        : m_number(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int number() const { return m_number; }
    /// Some file systems tell only here that there was no room.
    bool close() { return m_number < 0 || ::close(std::exchange(m_number, -1)) == 0; }

private:
    int m_number;
};

void writeThrough(Descriptor& descriptor, std::string_view bytes, const fs::path& file) {
    check(descriptor.number() >= 0, file);
    while (!bytes.empty()) {
        const ssize_t count =
            untilUninterrupted([&] { return ::write(descriptor.number(), bytes.data(), bytes.size()); });
        check(count >= 0, file);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    check(untilUninterrupted([&] { return ::fsync(descriptor.number()); }) == 0, file);
    check(descriptor.close(), file);
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

void syncFolder(const fs::path& file) {
    const Descriptor descriptor(::open(folderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    check(descriptor.number() >= 0, file);
    // EINVAL: this file system does not write folders through.
    check(untilUninterrupted([&] { return ::fsync(descriptor.number()); }) == 0 || errno == EINVAL, file);
}

constexpr std::string_view temporarySuffix = ".XXXXXX";

bool isTemporaryOf(const fs::path& candidate, const fs::path& file) {
    const std::string name = candidate.filename().string();
    const std::string begin = file.filename().string() + ".";
    return name.size() == begin.size() - 1 + temporarySuffix.size() && name.starts_with(begin);
}

fs::path behindLink(const fs::path& file) {
    return fs::is_symlink(file) ? fs::weakly_canonical(file) : file;
}

} // namespace

void removeLeftovers(const fs::path& file, std::chrono::seconds age) {
    const fs::path target = behindLink(file);
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(folderOf(target), ignored)) {
        if (isTemporaryOf(entry.path(), target) &&
            fs::last_write_time(entry.path(), ignored) <= fs::file_time_type::clock::now() - age) {
            fs::remove(entry.path(), ignored);
        }
    }
}

void replaceFile(const fs::path& file, std::string_view bytes) {
    const fs::path target = behindLink(file);
    // Before there is one of this call, so that the room they take is free again.
    removeLeftovers(target, leftoverAge);
    std::string temporary = target.string() + std::string(temporarySuffix);
    Descriptor descriptor(::mkostemp(temporary.data(), O_CLOEXEC));
    try {
        writeThrough(descriptor, bytes, file);
        check(::rename(temporary.c_str(), target.c_str()) == 0, file);
    } catch (...) {
        ::unlink(temporary.c_str());
        throw;
    }
    syncFolder(target);
}

} // namespace ondavia
