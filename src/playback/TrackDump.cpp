#include "playback/TrackDump.h"

#include "base/AppLogger.h"
#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace ondavia {
namespace {

constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr auto smallest = std::numeric_limits<std::int64_t>::min();

std::int64_t wholePart(double number) {
    if (std::isnan(number)) {
        return 0;
    }
    // As a double, `largest` is the first number beyond the range.
    if (number >= static_cast<double>(largest)) {
        return largest;
    }
    return number <= static_cast<double>(smallest) ? smallest : static_cast<std::int64_t>(number);
}

/// A key of one stream's dictionary; absent when it is missing or no text.
std::optional<std::string> text(const QVariantMap& stream, const char* key) {
    const QVariant value = stream.value(QString::fromLatin1(key));
    return value.typeId() == QMetaType::QString ? std::optional(value.toString().toStdString())
                                                : std::nullopt;
}

std::int64_t number(const QVariantMap& stream, const char* key, std::int64_t otherwise) {
    return parseMetaInt(stream.value(QString::fromLatin1(key))).value_or(otherwise);
}

/// The file's streams; none when "streams" is anything but a list of dictionaries.
std::vector<QVariantMap> streamsOf(const QVariantMap& mediaMeta) {
    const QVariant value = mediaMeta.value(QStringLiteral("streams"));
    if (value.typeId() != QMetaType::QVariantList) {
        return {};
    }
    std::vector<QVariantMap> streams;
    for (const QVariant& stream : value.toList()) {
        if (stream.typeId() != QMetaType::QVariantMap) {
            return {};
        }
        streams.push_back(stream.toMap());
    }
    return streams;
}

std::string detailOf(const QVariantMap& stream, const std::string& type) {
    if (type == "video") {
        return std::to_string(number(stream, "width", 0)) + "x" + std::to_string(number(stream, "height", 0));
    }
    if (type == "audio") {
        return std::to_string(number(stream, "sample_rate", 0)) + "Hz";
    }
    if (type == "timedtext") {
        return "lang=" + text(stream, "language").value_or("") +
               " title=" + text(stream, "title").value_or("");
    }
    return {};
}

void logStream(const QVariantMap& stream) {
    const std::string type = text(stream, "type").value_or("?");
    AppLogger::player.debug("  [%ld] type=%s codec=%s profile=%s %s bitrate=%ld",
                            {number(stream, "stream_idx", -1), type, text(stream, "codec_name").value_or("?"),
                             text(stream, "codec_profile").value_or(""), detailOf(stream, type),
                             number(stream, "bitrate", 0)});
}

} // namespace

std::optional<std::int64_t> parseMetaInt(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::QString:
        return parseDecimalInteger(value.toString().toStdString());
    case QMetaType::Double:
    case QMetaType::Float:
        return wholePart(value.toDouble());
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return static_cast<std::int64_t>(std::min(value.toULongLong(), static_cast<qulonglong>(largest)));
    case QMetaType::Bool:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return value.toLongLong();
    default:
        return std::nullopt;
    }
}

void logTrackDump(const FSMonitor& monitor) {
    const auto streams = streamsOf(monitor.mediaMeta);
    AppLogger::player.debug("==== First frame track dump ====");
    AppLogger::player.debug("Active video stream index: %ld", {number(monitor.videoMeta, "stream_idx", -1)});
    AppLogger::player.debug("Active audio stream index: %ld", {number(monitor.audioMeta, "stream_idx", -1)});
    AppLogger::player.debug("Active subtitle stream index: %ld",
                            {number(monitor.subtitleMeta, "stream_idx", -1)});
    AppLogger::player.debug("Stream count: %ld", {streams.size()});
    for (const auto& stream : streams) {
        logStream(stream);
    }
    AppLogger::player.debug("================================");
}

} // namespace ondavia
