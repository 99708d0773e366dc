#include "platform/linux/JsonFile.h"

#include "base/AppLogger.h"
#include "base/FileReplacement.h"

#include <QFile>
#include <QJsonDocument>

#include <stdexcept>
#include <sys/stat.h>
#include <utility>

namespace ondavia {

namespace fs = std::filesystem;

namespace {

/// No file of ours comes near it; what is longer is cut, and so counts as damaged.
constexpr qint64 maximumBytes = qint64{16} << 20;

} // namespace

JsonFile::JsonFile(fs::path path, const Logger& log, std::string purpose)
    : m_path(std::move(path))
    , m_log(log)
    , m_purpose(std::move(purpose)) {}

QJsonObject JsonFile::read() const {
    // A pipe would hold the start up, a device would fill the memory.
    const fs::file_status status = fs::status(m_path);
    if (!fs::exists(status)) {
        return {};
    }
    if (!fs::is_regular_file(status)) {
        throw std::runtime_error("this is no file");
    }
    while (true) {
        QFile file(QString::fromStdString(m_path.string()));
        const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.read(maximumBytes) : QByteArray();
        if (file.error() != QFileDevice::NoError) {
            throw std::runtime_error(file.errorString().toStdString());
        }
        const QJsonDocument document = QJsonDocument::fromJson(bytes);
        if (document.isObject()) {
            return document.object();
        }
        if (isStillThere(file)) {
            keepAside();
            return {};
        }
    }
}

/// Whether nobody has put another file in its place since `file` was opened.
bool JsonFile::isStillThere(const QFile& file) const {
    struct stat opened {};
    struct stat present {};
    return ::fstat(file.handle(), &opened) == 0 && ::stat(m_path.c_str(), &present) == 0 &&
           opened.st_dev == present.st_dev && opened.st_ino == present.st_ino;
}

void JsonFile::write(const QJsonObject& object) const {
    replaceFile(m_path, QJsonDocument(object).toJson().toStdString());
}

void JsonFile::remove() const {
    fs::remove(m_path);
    fs::remove(asidePath());
    removeLeftovers(m_path, std::chrono::seconds(0));
}

fs::path JsonFile::asidePath() const {
    return m_path.string() + ".damaged";
}

void JsonFile::keepAside() const {
    const fs::path aside = asidePath();
    std::error_code error;
    fs::rename(m_path, aside, error);
    if (error) {
        throw std::runtime_error("the file is damaged and cannot be moved aside: " + error.message());
    }
    m_log.error("%{public}s: the file was damaged and is kept as %{public}s",
                {m_purpose, aside.filename().string()});
}

} // namespace ondavia
