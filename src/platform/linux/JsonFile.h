#pragma once

#include <QJsonObject>

#include <filesystem>
#include <string>

class QFile;

namespace ondavia {

class Logger;

/// One JSON object in a file of mode 0600, which is read and replaced whole. Any thread, one at a time.
class JsonFile final {
public:
    /// `purpose` is what the log lines call the file.
    JsonFile(std::filesystem::path path, const Logger& log, std::string purpose);

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

    /// Empty when there is no file. One that holds no JSON object is kept aside as `<name>.damaged`, with an
    /// error line, and counts as none; so does one of more than 16 MiB. Raises std::runtime_error when
    /// something is there that can neither be read nor be moved: it must not be written over then.
    [[nodiscard]] QJsonObject read() const;

    /// Raises std::system_error; the file is then as it was.
    void write(const QJsonObject& object) const;

    /// Removes the file, one that was kept aside, and what replacements left that were killed. Raises
    /// std::system_error.
    void remove() const;

private:
    [[nodiscard]] std::filesystem::path asidePath() const;
    [[nodiscard]] bool isStillThere(const QFile& file) const;
    void keepAside() const;

    std::filesystem::path m_path;
    const Logger& m_log;
    std::string m_purpose;
};

} // namespace ondavia
